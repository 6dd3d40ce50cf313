#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "Workbench/view/Boxes.hpp"
#include "Workbench/view/Pictures.hpp"
#include "Workbench/view/View3D.hpp"

namespace workbench {
namespace {

constexpr QSize size(320, 240);
constexpr std::array<float, 4> red{0.9F, 0.1F, 0.1F, 1};
constexpr std::array<float, 4> blue{0.1F, 0.1F, 0.9F, 1};
constexpr std::array<float, 4> glass{0.1F, 0.1F, 0.9F, 0.4F};
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// From the south-east, above.
Camera Perspective(const Vec3& offset = {}) {
    return {offset + Vec3{5, -8, 7}, offset + Vec3{1, 1, 1}, 50};
}

Camera Parallel(const Vec3& offset = {}) {
    Camera camera = Perspective(offset);
    const CameraAxes axes = AxesOf(camera);
    camera.perspective = false;
    camera.right = axes.right;
    camera.up = axes.up;
    camera.middleX = Dot(axes.right, offset + Vec3{1, 1, 1});
    camera.middleY = Dot(axes.up, offset + Vec3{1, 1, 1});
    camera.across = 9;
    return camera;
}

Camera Sheared(const Vec3& offset = {}) {
    Camera camera = Parallel(offset);
    camera.up = camera.up * 1.3 + camera.right * 0.4;
    camera.middleY = Dot(camera.up, offset + Vec3{1, 1, 1});
    return camera;
}

Plane Moved(Plane plane, const Vec3& offset) {
    plane.distance += Dot(plane.normal, offset);
    return plane;
}

class View3DCutTest : public testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(view.Error(), ""); }

    // Of these elements alone.
    QImage PictureOf(const std::vector<ElementMeshPtr>& elements, const Camera& camera,
                     const std::vector<Plane>& planes, Quality quality = Quality::Still) {
        view.Clear();
        view.Add(elements);
        view.Cut(planes);
        return view.Render(camera, size, quality);
    }

    View3D view;
};

// A cut box looks like one that was built smaller, near and far; its edges do so, too, but for those between
// two faces of cuts.
TEST_F(View3DCutTest, ACutBodyLooksLikeASmallerOne) {
    const double slope = std::sqrt(0.5);
    const struct {
        const char* situation;
        std::vector<Plane> planes;
        Vec3 from;
        Vec3 to;
    } cases[] = {
        {"none", {}, {0, 0, 0}, {2, 2, 2}},
        {"from above", {{{0, 0, 1}, 1}}, {0, 0, 0}, {2, 2, 1}},
        {"from below", {{{0, 0, -1}, -0.5}}, {0, 0, 0.5}, {2, 2, 2}},
        {"a corner", {{{0, -1, 0}, -0.5}, {{0, 0, 1}, 1.25}}, {0, 0.5, 0}, {2, 2, 1.25}},
        {"all around",
         {{{1, 0, 0}, 1.5},
          {{-1, 0, 0}, -0.5},
          {{0, 1, 0}, 1.5},
          {{0, -1, 0}, -0.5},
          {{0, 0, 1}, 1.5},
          {{0, 0, -1}, -0.5}},
         {0.5, 0.5, 0.5},
         {1.5, 1.5, 1.5}},
        {"a seventh plane",
         {{{0, 0, 1}, 9},
          {{0, 0, 1}, 9},
          {{0, 0, 1}, 9},
          {{0, 0, 1}, 9},
          {{0, 0, 1}, 9},
          {{0, 0, 1}, 9},
          {{0, 0, 1}, 1}},
         {0, 0, 0},
         {2, 2, 2}},
        {"twice the same plane", {{{0, 0, 1}, 1}, {{0, 0, 1}, 1}}, {0, 0, 0}, {2, 2, 1}},
        {"in the face on top", {{{0, 0, 1}, 2}}, {0, 0, 0}, {2, 2, 2}},
        {"a normal of another length", {{{0, 0, 4}, 4}}, {0, 0, 0}, {2, 2, 1}},
        {"planes that are none", {{{0, 0, 0}, -1}, {{nan, 0, 1}, 1}, {{0, 0, 1}, nan}}, {0, 0, 0}, {2, 2, 2}},
        {"beside", {{{slope, slope, 0}, 50}}, {0, 0, 0}, {2, 2, 2}},
    };
    for (const Vec3& offset : {Vec3{}, Vec3{1e6, -2e6, 0}, Vec3{1e7, 1e7, 50}})
        for (const Camera& camera : {Perspective(offset), Parallel(offset), Sheared(offset)})
            for (const auto& test : cases) {
                SCOPED_TRACE(testing::Message() << test.situation << ", perspective " << camera.perspective
                                                << ", at " << offset.x);
                std::vector<Plane> planes = test.planes;
                for (Plane& plane : planes)
                    plane.distance += Dot(plane.normal, offset);
                const Quality quality = planes.size() > 1 ? Quality::Moving : Quality::Still;
                const QImage expected =
                    PictureOf({MakeBox(1, offset + test.from, offset + test.to, red)}, camera, {}, quality);
                const QImage seen =
                    PictureOf({MakeBox(1, offset, offset + Vec3{2, 2, 2}, red)}, camera, planes, quality);
                EXPECT_LE(Differences(seen, expected, 60), 12u);
            }
}

TEST_F(View3DCutTest, WhatStandsOnThePlaneIsGoneAndWhatIsInsideShows) {
    const Camera above{{1, 0.9, 9}, {1, 1, 0}, 40};
    const std::vector<ElementMeshPtr> elements{MakeBox(1, {0, 0, 0}, {2, 2, 1}, red),
                                               MakeBox(2, {0, 0, 1}, {2, 2, 2}, blue),
                                               MakeBox(3, {0.8, 0.8, -1}, {1.2, 1.2, 5}, blue)};
    const QImage seen = PictureOf(elements, above, {{{0, 0, 1}, 1}});
    EXPECT_EQ(Hue(seen.pixel(130, 120)), 'r');
    EXPECT_EQ(view.Pick(above, size, {130, 120}), 1u);
    view.Cut({});
    EXPECT_EQ(view.Pick(above, size, {130, 120}), 2u);
}

TEST_F(View3DCutTest, FacesFollowVisibilitySelectionAndLaterElements) {
    const Camera camera = Perspective();
    const Vec3 cutFace{1, 1, 1};
    const QPoint at(160, 120);  // of the camera's target
    view.Cut({{{0, 0, 1}, 1}});
    const QImage empty = view.Render(camera, size);
    view.Add(std::vector{MakeBox(1, {0, 0, 0}, {2, 2, 2}, red)});
    EXPECT_EQ(Hue(view.Render(camera, size).pixel(at)), 'r');

    view.Select({1});
    EXPECT_EQ(Hue(view.Render(camera, size).pixel(at)), 'g');
    view.ShowOnly(std::unordered_set<std::uint64_t>{});
    EXPECT_EQ(Differences(view.Render(camera, size), empty), 0u);
    EXPECT_EQ(view.Pick(camera, size, at), std::nullopt);

    view.Cut({{{0, 0, 1}, 1}, {{1, 0, 0}, 5}});  // while it is hidden
    view.ShowOnly(std::nullopt);
    view.Select({});
    EXPECT_EQ(Hue(view.Render(camera, size).pixel(at)), 'r');
    EXPECT_LT(Length(*view.PointAt(camera, size, at) - cutFace), 1e-6);

    view.Add(std::vector{MakeBox(1, {0, 0, 0}, {2, 2, 2}, glass)});  // the same element anew
    const QImage behindGlass = view.Render(camera, size);
    EXPECT_EQ(Hue(behindGlass.pixel(at)), 'b');
    view.Add(std::vector{MakeBox(2, {-5, 3, 0}, {7, 4, 2}, red)});
    EXPECT_GT(Differences(behindGlass, view.Render(camera, size)), 1000u);
    EXPECT_EQ(view.Pick(camera, size, at), 1u);
}

TEST_F(View3DCutTest, PicksOnFacesOfCutsAndNothingThatIsCutAway) {
    for (const double distance : {0.0, 1e7}) {
        const Vec3 offset{distance, distance, 0};
        view.Clear();
        view.Add(std::vector{MakeBox(1, offset, offset + Vec3{2, 2, 2}, red),
                             MakeBox(2, offset + Vec3{0.5, 0.5, 0.5}, offset + Vec3{1, 1, 3}, blue),
                             MakeBox(3, offset + Vec3{-2, 4, 0}, offset + Vec3{4, 5, 3}, blue)});
        const Plane half = Moved({{0, -1, 0}, -1.5}, offset);
        const Plane beyond = Moved({{0, -1, 0}, -4.5}, offset);
        const Plane slanted = Moved({{0, -std::sqrt(0.5), std::sqrt(0.5)}, 0}, offset);
        Camera south = Parallel(offset);
        south.right = {1, 0, 0};
        south.up = {0, 0, 1};
        south.middleX = offset.x + 1;
        south.middleY = 1;
        const Camera inside{offset + Vec3{1.5, 1.75, 1}, offset + Vec3{1.5, -9, 1}, 50};
        const struct {
            const char* situation;
            Camera camera;
            std::vector<Plane> planes;
            std::optional<std::uint64_t> record;
            double y;
        } cases[] = {
            {"uncut", south, {}, 1, 0},
            {"cut in half", south, {half}, 1, 1.5},
            {"behind a cut that is cut away", south, {half, beyond}, 3, 4.5},
            {"slanted", south, {slanted}, 1, 1},
            {"along the plane", south, {Moved({{0, 0, 1}, 1}, offset)}, std::nullopt, 0},
            {"cut away altogether", south, {Moved({{0, 1, 0}, -1}, offset)}, std::nullopt, 0},
            {"out of the body", inside, {half}, 1, 1.5},
        };
        for (const auto& test : cases) {
            SCOPED_TRACE(testing::Message() << test.situation << " at " << distance);
            view.Cut(test.planes);
            const QPointF at(160, 120);
            EXPECT_EQ(view.Pick(test.camera, size, at), test.record);
            const auto point = view.PointAt(test.camera, size, at);
            ASSERT_EQ(point.has_value(), test.record.has_value());
            if (point) {
                EXPECT_NEAR(point->y - offset.y, test.y, 1e-6);
            }
        }
    }
}

}  // namespace
}  // namespace workbench
