#include "Workbench/view/ViewWidget.hpp"

#include <gmock/gmock.h>
#include <stdlib.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <chrono>
#include <thread>

#include "Workbench/view/Boxes.hpp"

namespace workbench {
namespace {

using testing::ElementsAre;

class ViewWidgetTest : public testing::Test {
  protected:
    ViewWidgetTest() {
        if (qApp == nullptr) {
            setenv("QT_QPA_PLATFORM", "offscreen", 0);
            application = std::make_unique<QApplication>(argumentCount, arguments.data());
        }
        view = std::make_shared<View3D>();
        view->Add(std::vector{MakeBox(11, {-3, 0, 0}, {3, 2, 2}, {0.9F, 0.1F, 0.1F, 1})});
        widget = std::make_unique<ViewWidget>(view);
        widget->resize(400, 300);
        widget->show();
        widget->SetCamera({{0, -9, 1}, {0, 0, 1}, 60});
        QObject::connect(widget.get(), &ViewWidget::elementClicked,
                         [this](quint64 record, Qt::KeyboardModifiers) { clicked.push_back(record); });
    }

    void Mouse(QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons held) {
        QMouseEvent event(type, at, widget->mapToGlobal(at), button, held, Qt::NoModifier);
        QApplication::sendEvent(widget.get(), &event);
    }

    void Drag(Qt::MouseButton button, QPointF from, QPointF to) {
        Mouse(QEvent::MouseButtonPress, from, button, button);
        for (int step = 1; step <= 10; ++step)
            Mouse(QEvent::MouseMove, from + (to - from) * (step / 10.0), Qt::NoButton, button);
        Mouse(QEvent::MouseButtonRelease, to, button, Qt::NoButton);
    }

    void Click(QPointF at) { Drag(Qt::LeftButton, at, at); }

    std::optional<Vec3> PointAt(QPointF at) const {
        return view->PointAt(widget->CurrentCamera(), widget->size() * widget->devicePixelRatio(),
                             at * widget->devicePixelRatioF());
    }

    int argumentCount = 1;
    std::string name = "test";
    std::array<char*, 2> arguments{name.data(), nullptr};
    std::unique_ptr<QApplication> application;
    std::shared_ptr<View3D> view;
    std::unique_ptr<ViewWidget> widget;
    std::vector<std::uint64_t> clicked;
};

TEST_F(ViewWidgetTest, AClickPicksAndADragDoesNot) {
    Click({200, 150});
    Click({200, 10});
    Drag(Qt::LeftButton, {200, 150}, {260, 170});
    EXPECT_THAT(clicked, ElementsAre(11, 0));
}

TEST_F(ViewWidgetTest, PanAndZoomKeepThePointUnderThePointer) {
    const Vec3 before = *PointAt({180, 140});
    Drag(Qt::MiddleButton, {180, 140}, {230, 160});
    EXPECT_LT(Length(*PointAt({230, 160}) - before), 0.02);

    QWheelEvent wheel({230, 160}, widget->mapToGlobal(QPointF(230, 160)), {}, {0, 360}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    const double distance = Length(widget->CurrentCamera().position - before);
    QApplication::sendEvent(widget.get(), &wheel);
    EXPECT_LT(Length(*PointAt({230, 160}) - before), 0.02);
    EXPECT_LT(Length(widget->CurrentCamera().position - before), 0.7 * distance);
}

TEST_F(ViewWidgetTest, OrbitKeepsTheDistanceAndNeverTurnsOver) {
    const Vec3 pivot = *PointAt({200, 150});
    const double distance = Length(widget->CurrentCamera().position - pivot);
    Drag(Qt::LeftButton, {200, 150}, {380, 160});
    EXPECT_NEAR(Length(widget->CurrentCamera().position - pivot), distance, 1e-6);
    EXPECT_LT(widget->CurrentCamera().position.x, -1);  // the model followed the pointer to the right
    EXPECT_GT(widget->CurrentCamera().position.z, 1);

    for (int round = 0; round < 5; ++round)
        Drag(Qt::LeftButton, {200, 20}, {200, 290});
    const CameraAxes axes = AxesOf(widget->CurrentCamera());
    EXPECT_GT(axes.up.z, 0);
    EXPECT_LT(axes.forward.z, -0.99);
}

TEST_F(ViewWidgetTest, InParallelThePointUnderThePointerStaysWhatItIs) {
    for (const double shear : {0.0, 0.5}) {
        Camera camera;
        camera.perspective = false;
        camera.right = {1, 0, 0};
        camera.up = Vec3{0, 0.4, 0.9} + camera.right * shear;
        camera.middleY = Dot(camera.up, {0, 0, 1});
        camera.across = 12;
        widget->SetCamera(camera);
        const auto placeOf = [&](const Vec3& point) {
            const Camera& now = widget->CurrentCamera();
            return QPointF(200 + 400 * (Dot(now.right, point) - now.middleX) / now.across,
                           150 - 400 * (Dot(now.up, point) - now.middleY) / now.across);
        };
        const auto expectAt = [&](const Vec3& point, QPointF place) {
            EXPECT_LT((placeOf(point) - place).manhattanLength(), 1e-6) << shear;
        };

        const Vec3 pivot = *PointAt({230, 140});
        Drag(Qt::LeftButton, {230, 140}, {330, 165});
        expectAt(pivot, {230, 140});
        EXPECT_GT(AxesOf(widget->CurrentCamera()).forward.x, 0.3);  // seen from the west now
        EXPECT_NEAR(Length(widget->CurrentCamera().right), 1, 1e-9);

        const Vec3 held = *PointAt({210, 150});
        Drag(Qt::RightButton, {210, 150}, {190, 110});
        expectAt(held, {190, 110});

        const double across = widget->CurrentCamera().across;
        QWheelEvent wheel({190, 110}, widget->mapToGlobal(QPointF(190, 110)), {}, {0, 240}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(widget.get(), &wheel);
        expectAt(held, {190, 110});
        EXPECT_NEAR(widget->CurrentCamera().across, across * 0.85 * 0.85, 1e-9);

        for (int round = 0; round < 5; ++round)
            Drag(Qt::LeftButton, {200, 20}, {200, 290});
        EXPECT_LT(AxesOf(widget->CurrentCamera()).forward.z, -0.9);
        EXPECT_TRUE(IsUsable(widget->CurrentCamera()));
    }
}

TEST_F(ViewWidgetTest, FitKeyFramesWhatIsVisible) {
    widget->SetCamera({{500, -900, 1}, {500, 0, 1}, 60});
    QKeyEvent key(QEvent::KeyPress, Qt::Key_F, Qt::NoModifier);
    QApplication::sendEvent(widget.get(), &key);
    EXPECT_NEAR(widget->CurrentCamera().position.x, 0, 0.5);
    EXPECT_GT(widget->CurrentCamera().position.y, -20);
}

TEST_F(ViewWidgetTest, PaintsTheViewsFramesUnderTheHint) {
    QImage painted;
    for (int round = 0; round < 1000; ++round) {
        QApplication::processEvents();
        painted = widget->grab().toImage();
        if (qRed(painted.pixel(200, 150)) > qBlue(painted.pixel(200, 150)) + 60) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    EXPECT_GT(qRed(painted.pixel(200, 150)), qBlue(painted.pixel(200, 150)) + 60);
    widget->SetHint("Shapes: 12 of 110");
    EXPECT_NE(widget->grab().toImage().copy(0, 200, 400, 100), painted.copy(0, 200, 400, 100));
}

}  // namespace
}  // namespace workbench
