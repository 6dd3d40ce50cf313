#include "Workbench/api/ElementStates.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Workbench/step/StepTexts.hpp"
#include "Workbench/view/Boxes.hpp"

namespace workbench {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Chosen = std::vector<const Element*>;

// Five walls: records 10 to 14.
class ElementStatesTest : public testing::Test {
  protected:
    ElementStatesTest() {
        std::string data;
        for (int id = 10; id < 15; ++id)
            data +=
                "#" + std::to_string(id) + "=IFCWALL('wall" + std::to_string(id) + "',$,'W',$,$,$,$,$,$);\n";
        project = std::make_shared<Project>(step::Document::FromBytes(step::StepFile(data)), "/House.ifc");
        states.Reset(*project);
        for (const Element& element : project->Elements())
            walls.push_back(&element);
    }

    void AddShape(std::uint64_t record) { states.AddShape(MakeBox(record, {0, 0, 0}, {1, 1, 1}, {})); }

    std::shared_ptr<const Project> project;
    ElementStates states;
    Chosen walls;
};

TEST_F(ElementStatesTest, SelectionKeepsItsOrderAndHoldsEachOnce) {
    states.Select(Chosen{walls[3], walls[0], walls[3], walls[4]});
    states.Select(Chosen{walls[0], walls[1]});
    EXPECT_THAT(states.Selection(), ElementsAre(walls[3], walls[0], walls[4], walls[1]));
    states.Deselect(Chosen{walls[4], walls[2], walls[3], walls[4]});
    EXPECT_THAT(states.Selection(), ElementsAre(walls[0], walls[1]));
    states.Select(Chosen{walls[3]});
    EXPECT_THAT(states.Selection(), ElementsAre(walls[0], walls[1], walls[3]));
    EXPECT_THAT(states.SelectedRecords(), UnorderedElementsAre(10, 11, 13));
    states.DeselectAll();
    EXPECT_THAT(states.Selection(), IsEmpty());
    states.Select(Chosen{walls[1]});
    EXPECT_THAT(states.Selection(), ElementsAre(walls[1])) << "may be selected again";
}

TEST_F(ElementStatesTest, VisibilityIsCountedOnceForEach) {
    states.ShowOnly(Chosen{walls[1], walls[1], walls[2]});
    EXPECT_EQ(states.ShownCount(), 2U);
    EXPECT_THAT(states.ShownRecords().value(), UnorderedElementsAre(11, 12));
    states.SetShown(Chosen{walls[0], walls[1], walls[0]}, true);
    states.SetShown(Chosen{walls[2], walls[2], walls[4]}, false);
    EXPECT_THAT(states.ShownRecords().value(), UnorderedElementsAre(10, 11));
    states.SetShown(walls, true);
    EXPECT_EQ(states.ShownRecords(), std::nullopt);
    states.ShowOnly({});
    EXPECT_EQ(states.ShownCount(), 0U);
    EXPECT_THAT(states.ShownRecords().value(), IsEmpty());
    states.ShowAll();
    EXPECT_EQ(states.ShownCount(), 5U);
    EXPECT_EQ(states.ShownRecords(), std::nullopt);
}

TEST_F(ElementStatesTest, WithoutAShapeAnElementIsNotInThe3DWindow) {
    AddShape(10);
    AddShape(12);
    AddShape(999);  // terrain: drawn, but no element
    EXPECT_EQ(states.ShownCount(), 5U) << "the others' may still come";
    states.SetShown(Chosen{walls[4]}, false);
    EXPECT_THAT(states.ShownRecords().value(), UnorderedElementsAre(10, 11, 12, 13)) << "its own, too";

    states.ShapesAreKnown();
    EXPECT_EQ(states.ShownCount(), 2U);
    EXPECT_FALSE(states.IsShown(*walls[1]));
    EXPECT_EQ(states.ShownRecords(), std::nullopt) << "everything that is drawn is shown";
    states.SetShown(Chosen{walls[2]}, false);
    EXPECT_THAT(states.ShownRecords().value(), UnorderedElementsAre(10));
    states.Select(walls);
    EXPECT_THAT(states.SelectedRecords(), UnorderedElementsAre(10, 12));
    EXPECT_EQ(states.Selection().size(), 5U);
}

}  // namespace
}  // namespace workbench
