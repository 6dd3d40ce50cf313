#include "Workbench/view/PlanWidget.hpp"

#include <gmock/gmock.h>
#include <stdlib.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include "Workbench/view/Boxes.hpp"

namespace workbench {
namespace {

using testing::ElementsAre;

class PlanWidgetTest : public testing::Test {
  protected:
    PlanWidgetTest() {
        if (qApp == nullptr) {
            setenv("QT_QPA_PLATFORM", "offscreen", 0);
            application = std::make_unique<QApplication>(argumentCount, arguments.data());
        }
        widget = std::make_unique<PlanWidget>();
        widget->resize(500, 400);
        widget->SetDrawing(DrawPlan(std::vector{red, white}, 0));
        QObject::connect(widget.get(), &PlanWidget::elementClicked,
                         [this](quint64 record, Qt::KeyboardModifiers modifiers) {
                             clicked.push_back(record);
                             held = modifiers;
                         });
    }

    QPointF PixelOf(QPointF metres) const {
        const QRectF shown = widget->Shown();
        return {(metres.x() - shown.left()) / shown.width() * widget->width(),
                (shown.bottom() - metres.y()) / shown.height() * widget->height()};
    }

    QColor ColourAt(QPointF metres) {
        return widget->grab().toImage().pixelColor((PixelOf(metres) * widget->devicePixelRatioF()).toPoint());
    }

    void Mouse(QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons buttons) {
        QMouseEvent event(type, at, widget->mapToGlobal(at), button, buttons, Qt::ControlModifier);
        QApplication::sendEvent(widget.get(), &event);
    }
    void Drag(Qt::MouseButton button, QPointF from, QPointF to) {
        Mouse(QEvent::MouseButtonPress, from, button, button);
        for (int step = 1; step <= 10; ++step)
            Mouse(QEvent::MouseMove, from + (to - from) * (step / 10.0), Qt::NoButton, button);
        Mouse(QEvent::MouseButtonRelease, to, button, Qt::NoButton);
    }
    void Click(QPointF metres) { Drag(Qt::LeftButton, PixelOf(metres), PixelOf(metres)); }
    void Wheel(QPointF at, int notches) {
        QWheelEvent event(at, widget->mapToGlobal(at), {}, {0, 120 * notches}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(widget.get(), &event);
    }

    static constexpr Vec3 origin{3.5e6, 5.6e6, 0};
    const ElementMeshPtr red = MakeBox(11, origin, origin + Vec3{4, 1, 3}, {0.9F, 0.1F, 0.1F, 1});
    const ElementMeshPtr white = MakeBox(12, origin + Vec3{0, 2, 0}, origin + Vec3{4, 3, 3}, {1, 1, 1, 1});
    const QPointF redMiddle{origin.x + 2, origin.y + 0.5};
    const QPointF whiteMiddle{origin.x + 2, origin.y + 2.5};
    const QPointF between{origin.x + 2, origin.y + 1.5};

    int argumentCount = 1;
    std::string name = "test";
    std::array<char*, 2> arguments{name.data(), nullptr};
    std::unique_ptr<QApplication> application;
    std::unique_ptr<PlanWidget> widget;
    std::vector<std::uint64_t> clicked;
    Qt::KeyboardModifiers held;
};

TEST_F(PlanWidgetTest, PaintsNorthUpOnWhitePaper) {
    EXPECT_LT(PixelOf(whiteMiddle).y(), PixelOf(redMiddle).y());
    EXPECT_EQ(ColourAt(between), QColor(Qt::white));
    const QColor redFill = ColourAt(redMiddle);
    EXPECT_GT(redFill.red(), redFill.green() + 40);
    const QColor whiteFill = ColourAt(whiteMiddle);
    EXPECT_LT(whiteFill.lightness(), 240) << "what is cut stands out from the paper";
    EXPECT_LT(ColourAt({origin.x + 2, origin.y + 1}).lightness(), 160) << "an outline";

    widget->SetSelected({12, 99});
    const QColor selected = ColourAt(whiteMiddle);
    EXPECT_GT(selected.green(), selected.red() + 60);
    EXPECT_EQ(ColourAt(redMiddle), redFill);
}

TEST_F(PlanWidgetTest, AClickPicksAndADragDoesNot) {
    Click(redMiddle);
    EXPECT_EQ(held, Qt::ControlModifier);
    Click(whiteMiddle);
    Click(between);
    const QPointF outline = PixelOf({origin.x + 2, origin.y + 1});
    Drag(Qt::LeftButton, outline - QPointF(0, 3), outline - QPointF(0, 3));
    Drag(Qt::LeftButton, outline - QPointF(0, 6), outline - QPointF(0, 6));
    Drag(Qt::LeftButton, PixelOf(redMiddle), PixelOf(whiteMiddle));
    Drag(Qt::RightButton, PixelOf(redMiddle), PixelOf(redMiddle));
    EXPECT_THAT(clicked, ElementsAre(11, 12, 0, 11, 0));
}

TEST_F(PlanWidgetTest, ThePointUnderThePointerStaysThere) {
    for (const int notches : {3, -7, 40, -200, 1000}) {
        widget->FitTo({origin.x, origin.y, 4, 3});
        const QPointF at = PixelOf(redMiddle);
        const double before = widget->Shown().width();
        Wheel(at, notches);
        EXPECT_EQ(widget->Shown().width() < before, notches > 0);
        EXPECT_NEAR(PixelOf(redMiddle).x(), at.x(), 0.05) << notches;
        EXPECT_NEAR(PixelOf(redMiddle).y(), at.y(), 0.05) << notches;
        EXPECT_FALSE(widget->grab().isNull());
    }
    for (const Qt::MouseButton button : {Qt::MiddleButton, Qt::RightButton}) {
        widget->Fit();
        const QPointF at = PixelOf(redMiddle);
        Drag(button, at, at + QPointF(60, -45));
        EXPECT_NEAR(PixelOf(redMiddle).x(), at.x() + 60, 1e-3);
        EXPECT_NEAR(PixelOf(redMiddle).y(), at.y() - 45, 1e-3);
    }
    EXPECT_TRUE(clicked.empty());
}

TEST_F(PlanWidgetTest, StaysFittedUntilThePictureIsMoved) {
    const QRectF all = widget->Drawing().bounds;
    EXPECT_TRUE(widget->Shown().contains(all));
    EXPECT_LT(widget->Shown().width(), 1.2 * all.width());

    const ElementMeshPtr far = MakeBox(13, origin + Vec3{100, 0, 0}, origin + Vec3{101, 1, 3}, {1, 1, 1, 1});
    widget->SetDrawing(DrawPlan(std::vector{red, far}, 0));
    EXPECT_TRUE(widget->Shown().contains(widget->Drawing().bounds));
    widget->resize(300, 900);
    widget->grab();  // hidden widgets learn of their size here
    EXPECT_TRUE(widget->Shown().contains(widget->Drawing().bounds));

    widget->FitTo(BoundsOf(widget->Drawing(), {13}));
    const QRectF area = widget->Shown();
    EXPECT_TRUE(area.contains(widget->Drawing().elements[1].bounds));
    EXPECT_LT(area.width(), 2);
    widget->SetDrawing({});
    EXPECT_EQ(widget->Shown(), area);
    widget->Fit();
    EXPECT_EQ(widget->Shown(), area) << "nothing to fit";
    widget->FitTo(QRectF(5, 5, 0, 0));
    EXPECT_NEAR(widget->Shown().center().x(), 5, 1e-9);
    EXPECT_LT(widget->Shown().width(), 5);

    Wheel({10, 10}, 1);
    const QRectF moved = widget->Shown();
    widget->SetDrawing(DrawPlan(std::vector{red}, 0));
    EXPECT_EQ(widget->Shown(), moved);
    QKeyEvent key(QEvent::KeyPress, Qt::Key_F, Qt::NoModifier);
    QApplication::sendEvent(widget.get(), &key);
    EXPECT_TRUE(widget->Shown().contains(widget->Drawing().bounds));
}

}  // namespace
}  // namespace workbench
