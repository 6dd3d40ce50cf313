// The windows onto the model and what steers them, on a screen that nobody sees.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QMenu>
#include <QMouseEvent>
#include <QSlider>
#include <QTabBar>

#include "ACAPinc.h"
#include "HostKit/DG/RecordingDriver.hpp"
#include "Workbench/HeadlessApplication.hpp"
#include "Workbench/desktop/CentralArea.hpp"
#include "Workbench/desktop/CutPanel.hpp"
#include "Workbench/desktop/OffscreenApplication.hpp"
#include "Workbench/desktop/ViewMenu.hpp"
#include "Workbench/step/StepTexts.hpp"

namespace workbench {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Cuts = CutPanel::Cuts;

TEST(CutsTest, PlanesComeBackFromTheirAxes) {
    const Plane oblique{{0.6, 0.8, 0}, 2};
    const std::vector<Plane> cases[] = {
        {},
        {{{1, 0, 0}, 3}},
        {{{-1, 0, 0}, 3}, {{0, -1, 0}, -4}, {{0, 0, 1}, -5}},
        {{{0, 0, 1}, 2}, oblique},
        {{{0, 0, 1}, 2}, {{0, 0, -1}, 1}},  // a slice: the second is one of the others
        {oblique, oblique}};
    for (const auto& planes : cases)
        EXPECT_EQ(Cuts::Of(planes).Planes(), planes) << planes.size();

    const Cuts cuts = Cuts::Of({oblique, {{0, -1, 0}, -4}, {{0, 1, 0}, 9}});
    EXPECT_FALSE(cuts.axes[0].on);
    EXPECT_TRUE(cuts.axes[1].on);
    EXPECT_TRUE(cuts.axes[1].flipped);
    EXPECT_EQ(cuts.axes[1].position, 4) << "where it is, whichever side is cut away";
    EXPECT_FALSE(cuts.axes[2].on);
    EXPECT_THAT(cuts.oblique, ElementsAre(oblique, Plane{{0, 1, 0}, 9}));
    EXPECT_EQ(Cuts::Of(cuts.Planes()).Planes(), cuts.Planes()) << "the same one stays on the axis";
}

TEST(CutsTest, RoundingDoesNotMakeAPlaneOblique) {
    const Plane turnedThereAndBack{{1 - 1e-16, 3e-11, -2e-11}, 4};
    EXPECT_TRUE(Cuts::Of({turnedThereAndBack}).axes[0].on);
    EXPECT_FALSE(Cuts::Of({{{0.9999995, 0.001, 0}, 4}}).axes[0].on);
}

class WindowsTest : public HeadlessApplicationTest {
  protected:
    void SetUp() override {
        HeadlessApplicationTest::SetUp();
        area = std::make_unique<CentralArea>(*application);
        cutPanel = std::make_unique<CutPanel>(*application);
        menu = std::make_unique<QMenu>();
        new ViewMenu(menu.get(), *application, *area);
        area->resize(900, 700);
        area->show();
        QApplication::processEvents();
    }

    void TearDown() override {
        menu.reset();
        cutPanel.reset();
        area.reset();
        HeadlessApplicationTest::TearDown();
    }

    void OpenSample() {
        HeadlessApplicationTest::OpenSample();
        QApplication::processEvents();
    }

    QAction& Action(const QString& text) const {
        for (QAction* action : menu->actions())
            if (action->text().remove('&') == text) return *action;
        throw std::invalid_argument("no such action: " + text.toStdString());
    }
    template <typename Control>
    static Control& PartOf(const QWidget& widget) {
        return *widget.findChild<Control*>();
    }
    QSlider& Slider(const QString& axis) const {
        for (QSlider* slider : cutPanel->findChildren<QSlider*>())
            if (slider->accessibleName() == axis) return *slider;
        throw std::invalid_argument("no such slider: " + axis.toStdString());
    }
    QAbstractButton& CutButton(const QString& text, int at = 0) const {
        for (QAbstractButton* button : cutPanel->findChildren<QAbstractButton*>())
            if (button->text() == text && at-- == 0) return *button;
        throw std::invalid_argument("no such button: " + text.toStdString());
    }

    const Element& Named(const std::string& name) const {
        for (const Element& element : application->OpenProject().Elements())
            if (element.name == name) return element;
        throw std::invalid_argument("no element is named " + name);
    }

    static void Click(QWidget& widget, QPointF at, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        for (const auto& [type, held] : {std::pair(QEvent::MouseButtonPress, Qt::LeftButton),
                                         std::pair(QEvent::MouseButtonRelease, Qt::NoButton)}) {
            QMouseEvent event(type, at, widget.mapToGlobal(at), Qt::LeftButton, held, modifiers);
            QApplication::sendEvent(&widget, &event);
        }
    }

    const ModelWindow& Window() const { return application->Window3D(); }
    void SetPlanes(const std::vector<Plane>& planes) {
        application->ChangeView([&](ModelWindow& window) {
            window.SetPlanes(planes);
            window.SetCutting(true);
        });
    }

    OffscreenApplication qt;
    std::unique_ptr<CentralArea> area;
    std::unique_ptr<CutPanel> cutPanel;
    std::unique_ptr<QMenu> menu;
};

TEST_F(WindowsTest, TheMenuSteersTheApplicationAndFollowsIt) {
    EXPECT_FALSE(Action("Floor Plan").isEnabled()) << "a new model has no storeys";
    EXPECT_FALSE(PartOf<QTabBar>(*area).isTabEnabled(1));
    OpenSample();
    auto& tabs = PartOf<QTabBar>(*area);
    EXPECT_TRUE(Action("3D Window").isChecked());
    EXPECT_TRUE(Action("Perspective").isChecked());

    Action("Axonometry").trigger();
    EXPECT_FALSE(Window().IsPerspective());
    EXPECT_EQ(PartOf<ViewWidget>(*area).CurrentCamera(), Window().CurrentCamera());
    API_3DProjectionInfo projection = {};
    projection.isPersp = true;
    bool onlyMode = true;
    ASSERT_EQ(ACAPI_Environment(APIEnv_Change3DProjectionSetsID, &projection, &onlyMode), NoError);
    queue.RunPending();
    EXPECT_TRUE(Action("Perspective").isChecked());
    EXPECT_FALSE(Action("Axonometry").isChecked());
    EXPECT_EQ(PartOf<ViewWidget>(*area).CurrentCamera(), Window().CurrentCamera());

    Action("Floor Plan").trigger();
    EXPECT_EQ(application->Front().kind, FrontWindow::Kind::plan);
    EXPECT_EQ(tabs.currentIndex(), 1);
    EXPECT_TRUE(PartOf<PlanWidget>(*area).isVisible());
    PartOf<QComboBox>(*area).setCurrentIndex(1);
    EXPECT_EQ(application->Front().storey, 1U);
    EXPECT_TRUE(PartOf<PlanWidget>(*area).isVisible());

    API_WindowInfo window = {};
    window.typeID = APIWind_3DModelID;
    ASSERT_EQ(ACAPI_Automate(APIDo_ChangeWindowID, &window), NoError);
    queue.RunPending();
    EXPECT_TRUE(Action("3D Window").isChecked());
    EXPECT_FALSE(Action("Floor Plan").isChecked());
    EXPECT_EQ(tabs.currentIndex(), 0);
    EXPECT_TRUE(PartOf<ViewWidget>(*area).isVisible());
    tabs.setCurrentIndex(1);
    EXPECT_TRUE(Action("Floor Plan").isChecked());
}

TEST_F(WindowsTest, SelectedElementsAreShownAndHiddenByTheMenu) {
    OpenSample();
    const auto isShown = [&] { return application->IsShown(Named("Bodenplatte")); };
    const std::size_t all = application->ShownCount();
    for (const char* text : {"Zoom to Selection", "Show Selection in 3D", "Hide Selection"})
        EXPECT_FALSE(Action(text).isEnabled()) << text;
    application->Select(std::vector{Named("Bodenplatte").guid});
    Action("Hide Selection").trigger();
    EXPECT_EQ(application->ShownCount(), all - 1);
    EXPECT_FALSE(isShown());
    Action("Floor Plan").trigger();
    Action("Show Selection in 3D").trigger();
    EXPECT_EQ(application->Front().kind, FrontWindow::Kind::model);
    EXPECT_EQ(application->ShownCount(), 1U);
    EXPECT_TRUE(isShown());
    Action("Show All").trigger();
    EXPECT_EQ(application->ShownCount(), all);
}

TEST_F(WindowsTest, CuttingBeginsWithAnUprightPlaneAndKeepsWhatThereIs) {
    OpenSample();
    const Vec3 middle = application->ShownBox().Center();
    EXPECT_FALSE(cutPanel->isVisible());
    Action("Cutting Planes").trigger();
    EXPECT_TRUE(Window().IsCutting());
    EXPECT_TRUE(cutPanel->isVisible());
    EXPECT_TRUE(CutButton("Y").isChecked());
    EXPECT_THAT(Window().Planes(), ElementsAre(Plane{{0, -1, 0}, -middle.y}));

    const Plane oblique{{0.6, 0.8, 0}, 2};
    SetPlanes({oblique});
    for (const bool on : {false, true}) {
        Action("Cutting Planes").trigger();
        EXPECT_EQ(Window().IsCutting(), on);
        EXPECT_EQ(cutPanel->isVisible(), on);
        EXPECT_THAT(Window().Planes(), ElementsAre(oblique));
    }
    application->ChangeView([](ModelWindow& window) { window.SetCutting(false); });
    EXPECT_FALSE(Action("Cutting Planes").isChecked());
}

TEST_F(WindowsTest, ASliderMovesItsPlaneAndNoOther) {
    OpenSample();
    const Box3 box = application->ShownBox();
    const auto heightAt = [&](int step) { return box.min.z + box.Size().z * step / 1000; };
    const Plane oblique{{0.6, 0.8, 0}, 2};
    const Plane second{{0, 0, -1}, -0.5};
    SetPlanes({{{0, 0, 1}, heightAt(500)}, oblique, second});
    EXPECT_EQ(Slider("Z").value(), 500);
    EXPECT_FALSE(CutButton("X").isChecked());
    EXPECT_FALSE(Slider("X").isEnabled());

    for (const int step : {600, 250, 0, 1000}) {
        Slider("Z").setValue(step);
        EXPECT_EQ(Slider("Z").value(), step);
        EXPECT_THAT(Window().Planes(), ElementsAre(Plane{{0, 0, 1}, heightAt(step)}, oblique, second));
    }
    const double off = heightAt(400) + box.Size().z / 3000;  // between two steps of the slider
    SetPlanes({{{0, 0, 1}, off}, oblique, second});
    EXPECT_EQ(Slider("Z").value(), 400);
    CutButton("Other side", 2).click();
    EXPECT_THAT(Window().Planes(), ElementsAre(Plane{{0, 0, -1}, -off}, oblique, second));
    CutButton("X").click();
    EXPECT_THAT(Window().Planes(),
                ElementsAre(Plane{{1, 0, 0}, box.Center().x}, Plane{{0, 0, -1}, -off}, oblique, second));
    CutButton("Remove").click();
    CutButton("Z").click();
    EXPECT_THAT(Window().Planes(), ElementsAre(Plane{{1, 0, 0}, box.Center().x}));
    CutButton("X").click();
    EXPECT_THAT(Window().Planes(), IsEmpty());
    EXPECT_TRUE(cutPanel->isVisible()) << "cutting is on, by no plane";
}

TEST_F(WindowsTest, AClickInThe3DWindowSelectsWhatIsShownThere) {
    OpenSample();
    const Element& slab = Named("Bodenplatte");
    const Element& table = Named("Tisch");
    auto& view = PartOf<ViewWidget>(*area);
    const QPointF middle = QRectF(view.rect()).center();
    const auto lookDownAt = [&](const Element& element) {
        const Vec3 center = application->BoundsOf(element)->Center();
        application->ShowOnly(std::vector{element.guid});
        application->ChangeView([&](ModelWindow& window) {
            window.SetCamera({center + Vec3{0, 0, 30}, center, 60});
        });
    };
    lookDownAt(slab);
    Click(view, middle);
    EXPECT_THAT(application->Selection(), ElementsAre(&slab));
    lookDownAt(table);
    Click(view, middle, Qt::ShiftModifier);
    EXPECT_THAT(application->Selection(), ElementsAre(&slab, &table));
    Click(view, {1, 1}, Qt::ShiftModifier);
    EXPECT_EQ(application->Selection().size(), 2U) << "missed";
    Click(view, middle, Qt::ShiftModifier);
    EXPECT_THAT(application->Selection(), ElementsAre(&slab));
    Click(view, {1, 1});
    EXPECT_THAT(application->Selection(), IsEmpty());

    application->ShowOnly({});
    Click(view, middle);
    EXPECT_THAT(application->Selection(), IsEmpty()) << "what is hidden is not hit";
}

TEST_F(WindowsTest, AClickInTheFloorPlanSelectsWhatItDraws) {
    OpenSample();
    Action("Floor Plan").trigger();
    QApplication::processEvents();
    auto& plan = PartOf<PlanWidget>(*area);
    const auto placeOf = [&](const Element& element) {
        const Vec3 metres = application->BoundsOf(element)->Center();
        const QRectF shown = plan.Shown();
        return QPointF((metres.x - shown.left()) / shown.width() * plan.width(),
                       (shown.bottom() - metres.y) / shown.height() * plan.height());
    };
    std::vector<const Element*> columns;
    for (const Element& element : application->OpenProject().Elements())
        if (element.ifcClass == "IfcColumn" && element.storey == 0) columns.push_back(&element);
    ASSERT_GE(columns.size(), 2U);
    Click(plan, placeOf(*columns[0]));
    Click(plan, placeOf(*columns[1]), Qt::ShiftModifier);
    EXPECT_THAT(application->Selection(), ElementsAre(columns[0], columns[1]));
    const QImage highlighted = application->PicturePlan(true);
    EXPECT_NE(application->PicturePlan(false), highlighted);
    EXPECT_EQ(application->PicturePlan(true), highlighted);

    PartOf<QComboBox>(*area).setCurrentIndex(1);
    Click(plan, placeOf(*columns[0]));
    EXPECT_THAT(application->Selection(), testing::Not(testing::Contains(columns[0]))) << "of another storey";
}

}  // namespace
}  // namespace workbench
