// What the 3D window's pictures honour, where they are saved, and large models.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>

#include "ACAPinc.h"
#include "HostKit/DG/RecordingDriver.hpp"
#include "Workbench/HeadlessApplication.hpp"
#include "Workbench/api/Application.hpp"
#include "Workbench/step/StepTexts.hpp"

namespace workbench {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

class DisplayTest : public HeadlessApplicationTest {
  protected:
    void SetUp() override {
        HeadlessApplicationTest::SetUp();
        std::filesystem::create_directory(folder / "pictures");
    }

    void OpenSample() {
        HeadlessApplicationTest::OpenSample();
        application->ChangeView([](ModelWindow& window) { window.SetSize({320, 200}); });
    }

    const Element& Named(const std::string& name) const {
        for (const Element& element : application->OpenProject().Elements())
            if (element.name == name) return element;
        throw std::invalid_argument("no element is named " + name);
    }

    /// The picture's file; a null image when the host refused.
    QImage Saved(const std::filesystem::path& file) {
        IO::Location location = hostkit::ToLocation(file);
        API_FileSavePars pars = {};
        pars.fileTypeID = APIFType_PNGFile;
        pars.file = &location;
        API_SavePars_Picture picture = {};
        picture.colorDepth = APIColorDepth_MiCP;
        if (ACAPI_Automate(APIDo_SaveID, &pars, &picture) != NoError) return {};
        return QImage(QString::fromStdString(file.string()));
    }
    QImage Saved() { return Saved(folder / "pictures" / "view.png"); }

    std::vector<std::string> FilesIn(const std::filesystem::path& path) {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path))
            names.push_back(entry.path().filename());
        return names;
    }
};

TEST_F(DisplayTest, APictureHonoursWhatIsHiddenAndCut) {
    OpenSample();
    const Element* slab[] = {&Named("Bodenplatte")};
    const QImage whole = Saved();
    ASSERT_EQ(whole.size(), QSize(320, 200));
    application->ShowOnly(std::span(&slab[0]->guid, 1));
    const QImage onlySlab = Saved();
    application->SetShown(slab, false);
    const QImage empty = Saved();
    EXPECT_NE(onlySlab, whole);
    EXPECT_NE(onlySlab, empty);

    application->ShowAll();
    application->SetShown(slab, false);
    EXPECT_NE(Saved(), whole);
    application->SetShown(slab, true);
    EXPECT_EQ(Saved(), whole);

    const double below = application->ShownBox().min.z - 1;
    const auto cut = [&](double height, bool on) {
        application->ChangeView([&](ModelWindow& window) {
            window.SetPlanes({{{0, 0, 1}, height}});
            window.SetCutting(on);
        });
        return Saved();
    };
    EXPECT_EQ(cut(below, true), empty);
    EXPECT_EQ(cut(below, false), whole) << "the plane is kept, but off";
    const QImage half = cut(1.5, true);
    EXPECT_NE(half, whole);
    EXPECT_NE(half, empty);
}

TEST_F(DisplayTest, APictureThatCannotBeWrittenLeavesNothingBehind) {
    OpenSample();
    const std::filesystem::path pictures = folder / "pictures";
    std::filesystem::create_directory(pictures / "taken.png");
    EXPECT_TRUE(Saved(pictures / "taken.png").isNull());
    EXPECT_TRUE(Saved(folder / "missing" / "view.png").isNull());
    EXPECT_FALSE(std::filesystem::exists(folder / "missing"));

    step::WriteFile(pictures / "old.png", "as it was");
    application->SetDrawsPlan([](bool) { return QImage(); });
    ASSERT_TRUE(application->BringToFront({FrontWindow::Kind::plan}));
    EXPECT_TRUE(Saved(pictures / "old.png").isNull());
    EXPECT_EQ(step::FileBytes(pictures / "old.png"), "as it was");
    EXPECT_THAT(FilesIn(pictures), UnorderedElementsAre("taken.png", "old.png"));
}

TEST_F(DisplayTest, TheSurveyPointIsTheOpenModels) {
    const auto survey = [] {
        API_Tranmat matrix = {};
        EXPECT_EQ(ACAPI_Environment(APIEnv_GetSurveyPointTransformationID, &matrix), NoError);
        return std::vector(std::begin(matrix.tmx), std::end(matrix.tmx));
    };
    EXPECT_THAT(survey(), ElementsAre(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0));
    OpenSample();
    // The map's X axis is turned by 15 degrees against the model's.
    const double cosine = 0.9659258;
    const double sine = -0.2588190;
    const double expected[] = {cosine, -sine, 0, 356512.25, sine, cosine, 0, 5645310.5, 0, 0, 1, 53.4};
    EXPECT_THAT(survey(), testing::Pointwise(testing::DoubleNear(1e-6), expected));
}

TEST_F(DisplayTest, ZoomingToWhatHasNoShapeIsRefused) {
    OpenSample();
    GS::Array<API_Guid> shapeless;
    for (const Element& element : application->OpenProject().Elements())
        if (!application->BoundsOf(element)) shapeless.Push(element.guid);
    ASSERT_FALSE(shapeless.IsEmpty());
    const Camera before = application->Window3D().CurrentCamera();
    ASSERT_TRUE(application->BringToFront({FrontWindow::Kind::plan}));
    EXPECT_EQ(ACAPI_Automate(APIDo_ZoomToElementsID, &shapeless), APIERR_GENERAL);
    EXPECT_EQ(application->Window3D().CurrentCamera(), before);
    EXPECT_EQ(application->Front().kind, FrontWindow::Kind::plan);
}

TEST(LargeModelTest, OfManyElementsHalfAreSelectedAndHidden) {
    constexpr std::size_t count = 100'000;
    std::string data;
    for (std::size_t id = 1; id <= count; ++id)
        data += "#" + std::to_string(id) + "=IFCWALL('w" + std::to_string(id) + "',$,'W',$,$,$,$,$,$);\n";
    const auto project =
        std::make_shared<Project>(step::Document::FromBytes(step::StepFile(data)), "/House.ifc");
    ElementStates states;
    states.Reset(*project);
    std::vector<const Element*> backwards;
    std::vector<const Element*> even;
    for (auto element = project->Elements().rbegin(); element != project->Elements().rend(); ++element) {
        backwards.push_back(&*element);
        if (element->record % 2 == 0) even.push_back(&*element);
    }
    ASSERT_EQ(backwards.size(), count);

    states.Select(even);
    states.Select(backwards);  // what was there comes first
    ASSERT_EQ(states.Selection().size(), count);
    EXPECT_EQ(states.Selection()[1]->record, count - 2);
    EXPECT_EQ(states.Selection()[count / 2]->record, count - 1);
    states.Deselect(even);
    ASSERT_EQ(states.Selection().size(), count / 2);
    EXPECT_EQ(states.Selection().front()->record, count - 1);
    EXPECT_EQ(states.Selection().back()->record, 1U);

    states.ShowOnly(even);
    states.ShowOnly(states.Selection());
    EXPECT_EQ(states.ShownCount(), count / 2);
    EXPECT_FALSE(states.IsShown(*even.front()));
    states.SetShown(even, true);
    EXPECT_EQ(states.ShownRecords(), std::nullopt);
    states.SetShown(backwards, false);
    EXPECT_EQ(states.ShownCount(), 0U);
}

}  // namespace
}  // namespace workbench
