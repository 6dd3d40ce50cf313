#include "Workbench/view/View3D.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <future>

#include "Workbench/view/Boxes.hpp"

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

std::size_t Differences(const QImage& a, const QImage& b) {
    std::size_t count = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            count += a.pixel(x, y) != b.pixel(x, y) ? 1 : 0;
    return count;
}

char Hue(QRgb colour) {
    if (qRed(colour) > qGreen(colour) + 60 && qRed(colour) > qBlue(colour) + 60) return 'r';
    if (qGreen(colour) > qRed(colour) + 60 && qGreen(colour) > qBlue(colour) + 30) return 'g';
    if (qBlue(colour) > qRed(colour) + 60) return 'b';
    return '-';
}

class View3DTest : public testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(view.Error(), ""); }

    View3D view;
};

TEST_F(View3DTest, DrawsWhatItPicks) {
    view.Add(TwoBoxes());
    Camera camera = FromSouth();
    camera.position = {4, -8, 5};
    const QImage image = view.Render(camera, size, Quality::Moving);
    std::size_t disagreeing = 0;
    std::size_t hits = 0;
    for (int y = 0; y < size.height(); y += 4)
        for (int x = 0; x < size.width(); x += 4) {
            const auto record = view.Pick(camera, size, QPointF(x + 0.5, y + 0.5));
            const char expected = !record ? '-' : *record == 11 ? 'r' : 'b';
            hits += record ? 1 : 0;
            disagreeing += Hue(image.pixel(x, y)) != expected ? 1 : 0;
        }
    EXPECT_GT(hits, 500u);
    EXPECT_LE(disagreeing, 8u);  // pixels cut by an edge
    EXPECT_EQ(Differences(image, view.Render(camera, size, Quality::Moving)), 0u);
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
    for (const double distance : {1e6, 1e7}) {
        const Vec3 offset{distance, -0.5 * distance, 100};
        view.Clear();
        view.Add(std::vector{MakeBox(1, {0, 0, 0}, {1, 1, 1}, red)});
        view.Add(TwoBoxes(offset));
        view.ShowOnly(std::unordered_set<std::uint64_t>{11, 12});
        const QImage far = view.Render(FromSouth(offset), size);
        EXPECT_LE(Differences(near, far), 10u) << distance;
        EXPECT_EQ(view.Pick(FromSouth(offset), size, onBlue), 12u) << distance;
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

TEST_F(View3DTest, ImpossibleSizesGiveNoPicture) {
    view.Add(TwoBoxes());
    for (const QSize& impossible : {QSize(0, 100), QSize(100, 0), QSize(-5, 5), QSize(1 << 20, 10)})
        EXPECT_TRUE(view.Render(FromSouth(), impossible).isNull());
    EXPECT_FALSE(view.Render(FromSouth(), {1, 1}).isNull());
}

}  // namespace
}  // namespace workbench
