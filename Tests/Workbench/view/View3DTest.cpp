#include "Workbench/view/View3D.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <future>
#include <iterator>
#include <limits>

#include "Workbench/view/Boxes.hpp"
#include "Workbench/view/Pictures.hpp"

namespace workbench {
namespace {

constexpr QSize size(320, 240);
constexpr std::array<float, 4> red{0.9F, 0.1F, 0.1F, 1};
constexpr std::array<float, 4> blue{0.1F, 0.1F, 0.9F, 1};
constexpr std::array<float, 4> glass{0.1F, 0.1F, 0.9F, 0.3F};

// A red box to the left, a blue one to the right, seen from the south.
std::vector<ElementMeshPtr> TwoBoxes(const Vec3& offset = {}, const std::array<float, 4>& right = blue) {
    return {MakeBox(11, offset + Vec3{-3, 0, 0}, offset + Vec3{-1, 2, 2}, red),
            MakeBox(12, offset + Vec3{1, 0, 0}, offset + Vec3{3, 2, 2}, right)};
}

Camera FromSouth(const Vec3& offset = {}) {
    return {offset + Vec3{0, -9, 1}, offset + Vec3{0, 0, 1}, 60};
}

constexpr QPoint onRed(100, 120);
constexpr QPoint onBlue(220, 120);
constexpr QPoint onNothing(160, 20);

// Half from above, sheared when asked to.
Camera Axonometry(const Vec3& offset, double shear) {
    Camera camera = FromSouth(offset);
    camera.perspective = false;
    camera.right = Vec3{0.9, 0.3, 0};
    camera.up = Vec3{-0.15, 0.5, 0.8} + camera.right * shear;
    const Vec3 middle = offset + Vec3{0, 1, 1};
    camera.middleX = Dot(camera.right, middle);
    camera.middleY = Dot(camera.up, middle);
    camera.across = 8;
    return camera;
}

class View3DTest : public testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(view.Error(), ""); }

    View3D view;
};

TEST_F(View3DTest, DrawsWhatItPicks) {
    Camera slanted = FromSouth();
    slanted.position = {4, -8, 5};
    const Plane half{{0, 0, 1}, 1.2};
    const Plane front{{0.6, -0.8, 0}, -0.1};
    const struct {
        const char* situation;
        Camera camera;
        std::vector<Plane> planes;
    } cases[] = {
        {"perspective", slanted, {}},
        {"parallel", Axonometry({}, 0), {}},
        {"sheared", Axonometry({}, 0.7), {}},
        {"perspective, cut", slanted, {half, front}},
        {"parallel, cut", Axonometry({}, 0), {half, front}},
        {"sheared, cut", Axonometry({}, 0.7), {half, front}},
    };
    view.Add(TwoBoxes());
    for (const auto& test : cases) {
        SCOPED_TRACE(test.situation);
        view.Cut(test.planes);
        const QImage image = view.Render(test.camera, size, Quality::Moving);
        std::size_t disagreeing = 0;
        std::size_t reds = 0;
        std::size_t blues = 0;
        for (int y = 0; y < size.height(); y += 4)
            for (int x = 0; x < size.width(); x += 4) {
                const auto record = view.Pick(test.camera, size, QPointF(x + 0.5, y + 0.5));
                const char expected = !record ? '-' : *record == 11 ? 'r' : 'b';
                reds += expected == 'r' ? 1 : 0;
                blues += expected == 'b' ? 1 : 0;
                disagreeing += Hue(image.pixel(x, y)) != expected ? 1 : 0;
            }
        EXPECT_GT(reds, 60u);
        EXPECT_GT(blues, 60u);
        EXPECT_LE(disagreeing, 8u);  // pixels cut by an edge
        EXPECT_EQ(Differences(image, view.Render(test.camera, size, Quality::Moving)), 0u);
    }
}

TEST_F(View3DTest, PicksTheNearestVisibleElement) {
    view.Add(TwoBoxes());
    view.Add(std::vector{MakeBox(13, {-6, 5, 0}, {6, 6, 2}, red)});  // behind both
    const struct {
        const char* situation;
        std::optional<std::unordered_set<std::uint64_t>> shown;
        QPoint point;
        std::optional<std::uint64_t> expected;
    } cases[] = {
        {"all", std::nullopt, onRed, 11},
        {"all", std::nullopt, onBlue, 12},
        {"between the boxes", std::nullopt, {160, 120}, 13},
        {"beside", std::nullopt, onNothing, std::nullopt},
        {"front hidden", {{12, 13}}, onRed, 13},
        {"nothing shown", {std::unordered_set<std::uint64_t>{}}, onBlue, std::nullopt},
        {"unknown record", {{99}}, onBlue, std::nullopt},
    };
    for (const auto& test : cases) {
        view.ShowOnly(test.shown);
        EXPECT_EQ(view.Pick(FromSouth(), size, test.point), test.expected) << test.situation;
    }
    view.ShowOnly(std::nullopt);
    const auto point = view.PointAt(FromSouth(), size, onRed);
    ASSERT_TRUE(point);
    EXPECT_NEAR(point->y, 0, 1e-6);
    // From inside a box its walls are seen.
    EXPECT_EQ(view.Pick({{-2, 1, 1}, {-2, 2, 1}, 60}, size, {160, 120}), 11u);
}

TEST_F(View3DTest, StatesChangeThePictureAndSurviveLaterElements) {
    view.Select({12, 77});
    view.ShowOnly(std::unordered_set<std::uint64_t>{12});
    EXPECT_EQ(view.Count(), 0u);
    EXPECT_TRUE(view.Bounds().Empty());
    const QImage empty = view.Render(FromSouth(), size);

    view.Add(TwoBoxes());  // both states were set before
    QImage image = view.Render(FromSouth(), size);
    EXPECT_EQ(image.pixel(onRed), empty.pixel(onRed));
    EXPECT_EQ(Hue(image.pixel(onBlue)), 'g');
    EXPECT_EQ(view.VisibleCount(), 1u);
    EXPECT_EQ(view.Bounds().min, (Vec3{1, 0, 0}));
    EXPECT_EQ(view.BoundsOf(11)->min, (Vec3{-3, 0, 0}));
    EXPECT_FALSE(view.BoundsOf(13));

    view.ShowOnly(std::nullopt);
    view.Select({});
    image = view.Render(FromSouth(), size);
    EXPECT_EQ(Hue(image.pixel(onRed)), 'r');
    EXPECT_EQ(Hue(image.pixel(onBlue)), 'b');

    view.Add(std::vector{MakeBox(12, {1, 0, 0}, {3, 2, 2}, red)});  // the same element anew
    EXPECT_EQ(view.Count(), 2u);
    EXPECT_EQ(Hue(view.Render(FromSouth(), size).pixel(onBlue)), 'r');

    view.Clear();
    EXPECT_EQ(view.Count(), 0u);
    EXPECT_EQ(Differences(view.Render(FromSouth(), size), empty), 0u);
}

TEST_F(View3DTest, RemovedElementsAreGoneUntilTheyAreAddedAgain) {
    view.Add(TwoBoxes());
    view.Select({11});
    const QImage before = view.Render(FromSouth(), size);
    view.Remove({11, 99});
    EXPECT_EQ(view.Count(), 1u);
    EXPECT_EQ(view.Bounds().min, (Vec3{1, 0, 0}));
    EXPECT_FALSE(view.BoundsOf(11));
    EXPECT_FALSE(view.Pick(FromSouth(), size, onRed));
    EXPECT_EQ(view.Pick(FromSouth(), size, onBlue), 12u);
    const QImage without = view.Render(FromSouth(), size);
    EXPECT_EQ(Hue(without.pixel(onRed)), '-');
    EXPECT_EQ(without.pixel(onBlue), before.pixel(onBlue));
    view.Add(TwoBoxes());
    EXPECT_EQ(Differences(view.Render(FromSouth(), size), before), 0u) << "still selected";
}

TEST_F(View3DTest, GlassLetsThroughWhatIsBehind) {
    view.Add(TwoBoxes({}, glass));
    const QImage without = view.Render(FromSouth(), size);
    view.Add(std::vector{MakeBox(13, {-6, 5, 0}, {6, 6, 2}, red)});
    const QImage with = view.Render(FromSouth(), size);
    EXPECT_GT(qBlue(without.pixel(onBlue)), qBlue(with.pixel(onBlue)) + 50);
    EXPECT_EQ(with.pixel(onRed), without.pixel(onRed));
}

TEST_F(View3DTest, StillPicturesHaveEdges) {
    view.Add(std::vector{MakeBox(1, {-2, 0, 0}, {2, 2, 2}, {1, 1, 1, 1})});
    const auto darkest = [](const QImage& image) {
        int least = 255;
        for (int x = 0; x < image.width(); ++x)
            least = std::min(least, qGray(image.pixel(x, 120)));
        return least;
    };
    EXPECT_LT(darkest(view.Render(FromSouth(), size, Quality::Still)),
              darkest(view.Render(FromSouth(), size, Quality::Moving)) - 40);
}

// Elements of a far site and a stray one at the origin: neither trembles.
TEST_F(View3DTest, FarFromTheOriginThePictureIsTheSame) {
    view.Add(TwoBoxes());
    const QImage near = view.Render(FromSouth(), size);
    const QImage parallel = view.Render(Axonometry({}, 0.3), size);
    for (const double distance : {1e6, 1e7}) {
        const Vec3 offset{distance, -0.5 * distance, 100};
        view.Clear();
        view.Add(std::vector{MakeBox(1, {0, 0, 0}, {1, 1, 1}, red)});
        view.Add(TwoBoxes(offset));
        EXPECT_LE(Differences(parallel, view.Render(Axonometry(offset, 0.3), size)), 10u) << distance;
        view.ShowOnly(std::unordered_set<std::uint64_t>{11, 12});
        EXPECT_LE(Differences(near, view.Render(FromSouth(offset), size)), 10u) << distance;
        EXPECT_EQ(view.Pick(FromSouth(offset), size, onBlue), 12u) << distance;
    }
}

TEST_F(View3DTest, UnusableCamerasShowNothingAndExtremeOnesDoNoHarm) {
    const QImage empty = view.Render(FromSouth(), size);
    view.Add(TwoBoxes());
    view.Cut({{{0, 0, 1}, 1}});
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinite = std::numeric_limits<double>::infinity();
    for (const double value : {nan, infinite, -infinite, 0.0, 1e300, -1e300, 1e-300, 1e150, 1e-30, 1e30})
        for (const auto change : {
                 +[](Camera&camera, double v) { camera.position.x = v; },
                 +[](Camera&camera, double v) {
                     camera.target = Vec3{v, v, v};
                 },
                 +[](Camera&camera, double v) { camera.viewCone = v; },
                 +[](Camera&camera, double v) { camera.right = camera.right * v; },
                 +[](Camera&camera, double v) { camera.up.z = v; },
                 +[](Camera&camera, double v) { camera.up = camera.right * v; },
                 +[](Camera&camera, double v) { camera.middleX = v; },
                 +[](Camera&camera, double v) { camera.across = v; },
             })
            for (Camera camera : {FromSouth(), Axonometry({}, 0)}) {
                change(camera, value);
                const QImage image = view.Render(camera, size, Quality::Moving);
                const auto point = view.PointAt(camera, size, onRed);
                const Camera fitted = FitCamera(camera, view.Bounds(), size);
                EXPECT_EQ(IsUsable(fitted), IsUsable(camera)) << value;
                if (IsUsable(camera)) {
                    EXPECT_TRUE(!point || std::isfinite(Length(*point))) << value;
                } else {
                    EXPECT_EQ(Differences(image, empty), 0u) << value;
                    EXPECT_FALSE(point) << value;
                }
            }
}

TEST_F(View3DTest, RedrawEndsWithTheLatestRequest) {
    view.Add(TwoBoxes());
    std::promise<void> last;
    int frames = 0;
    view.SetOnFrame([&](const QImage& image) {
        ++frames;
        if (image.width() == 199) last.set_value();
    });
    for (int width = 100; width < 200; ++width)
        view.Redraw(FromSouth(), {width, 50}, Quality::Moving);
    last.get_future().wait();
    view.SetOnFrame({});
    EXPECT_LE(frames, 100);

    view.Redraw(FromSouth(), size, Quality::Still);
    EXPECT_FALSE(view.Render(FromSouth(), size).isNull());  // with a redraw pending
}

TEST(View3DThreadTest, OnlyDrawingStartsAThread) {
    const auto threads = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
    };
    const auto before = threads();
    {
        View3D view;
        view.SetOnFrame([](const QImage&) {});
        view.Add(TwoBoxes());
        view.Cut({{{0, 0, 1}, 1}});
        EXPECT_EQ(view.Pick(FromSouth(), size, QPoint(100, 130)), 11u);
        EXPECT_EQ(threads(), before);
        EXPECT_FALSE(view.Render(FromSouth(), size).isNull());
        EXPECT_GT(threads(), before);
    }
}

TEST_F(View3DTest, ImpossibleSizesGiveNoPicture) {
    view.Add(TwoBoxes());
    for (const QSize& impossible : {QSize(0, 100), QSize(100, 0), QSize(-5, 5), QSize(1 << 20, 10)})
        EXPECT_TRUE(view.Render(FromSouth(), impossible).isNull());
    EXPECT_FALSE(view.Render(FromSouth(), {1, 1}).isNull());
}

}  // namespace
}  // namespace workbench
