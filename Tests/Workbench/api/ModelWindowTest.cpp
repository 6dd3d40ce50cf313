#include "Workbench/api/ModelWindow.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <numbers>
#include <tuple>

#include "BM.hpp"

namespace workbench {
namespace {

using testing::DoubleEq;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

Box3 BoxOf(const Vec3& from, const Vec3& to) {
    Box3 box;
    box.Add(from);
    box.Add(to);
    return box;
}

const Box3 house = BoxOf({0, 0, 0}, {10, 8, 6});

API_3DProjectionInfo Perspective(const Vec3& camera, const Vec3& target, double viewCone) {
    API_3DProjectionInfo info = {};
    info.isPersp = true;
    info.u.persp.pos = {camera.x, camera.y};
    info.u.persp.cameraZ = camera.z;
    info.u.persp.target = {target.x, target.y};
    info.u.persp.targetZ = target.z;
    info.u.persp.viewCone = viewCone;
    return info;
}

API_3DProjectionInfo Axonometry(const API_Tranmat& matrix) {
    API_3DProjectionInfo info = {};
    info.u.axono.tranmat = matrix;
    return info;
}

API_Tranmat Rows(const Vec3& right, const Vec3& up, const Vec3& depth) {
    return {{right.x, right.y, right.z, 0, up.x, up.y, up.z, 0, depth.x, depth.y, depth.z, 0}};
}

class ModelWindowTest : public testing::Test {
  protected:
    ModelWindowTest() {
        window.SetSize({800, 600});
        window.Reset(house);
    }
    ~ModelWindowTest() override { EXPECT_EQ(hostkit::LiveHandles(), 0); }

    // An elevation: 40 pixels for a metre, the point (5, any, 2) in the middle.
    void LookFromTheFront() {
        Camera camera;
        camera.perspective = false;
        camera.across = 20;
        camera.middleX = 5;
        camera.middleY = 2;
        window.SetCamera(camera);
    }

    ModelWindow window;
};

TEST_F(ModelWindowTest, APerspectiveIsRecordedAndComesBackExactly) {
    const Vec3 camera{13.1, 24.3, 10.7};
    const Vec3 target{10.1, 20.3, -1.3};  // 3, 4 and 12 away
    ASSERT_EQ(window.ChangeProjection(Perspective(camera, target, 47.5), house), NoError);
    EXPECT_EQ(window.CurrentCamera().position, camera);
    EXPECT_EQ(window.CurrentCamera().target, target);

    const API_3DProjectionInfo info = window.Projection();
    EXPECT_TRUE(info.isPersp);
    EXPECT_EQ(info.camGuid, APINULLGuid);
    const API_PerspPars& persp = info.u.persp;
    EXPECT_THAT((std::array{persp.pos.x, persp.pos.y, persp.cameraZ}), ElementsAre(13.1, 24.3, 10.7));
    EXPECT_THAT((std::array{persp.target.x, persp.target.y, persp.targetZ}), ElementsAre(10.1, 20.3, -1.3));
    EXPECT_EQ(persp.viewCone, 47.5);
    EXPECT_EQ(persp.rollAngle, 0);
    EXPECT_NEAR(persp.distance, 13, 1e-12);
    EXPECT_NEAR(persp.azimuth, std::atan2(4.0, 3.0) * 180 / std::numbers::pi, 1e-9);

    EXPECT_EQ(window.ChangeProjection(Perspective({0, 0, 10}, {0, 0, 0}, 60), house), NoError)
        << "straight down";
}

TEST_F(ModelWindowTest, WhatShowsNothingIsRefusedAndChangesNothing) {
    API_3DProjectionInfo ofCamera = Perspective({0, 0, 0}, {1, 0, 0}, 60);
    ofCamera.camGuid.timeLow = 1;
    const std::pair<API_3DProjectionInfo, GSErrCode> refused[] = {
        {Perspective({1, 1, 1}, {1, 1, 1}, 60), APIERR_BADPARS},
        {Perspective({0, 0, 0}, {1, 0, 0}, 0), APIERR_BADPARS},
        {Perspective({0, 0, 0}, {1, 0, 0}, 180), APIERR_BADPARS},
        {Perspective({0, 0, 0}, {1, 0, 0}, noNumber), APIERR_BADPARS},
        {Perspective({noNumber, 0, 0}, {1, 0, 0}, 60), APIERR_BADPARS},
        {Perspective({0, 0, 0}, {0, infinite, 0}, 60), APIERR_BADPARS},
        {Axonometry(Rows({1, 0, 0}, {2, 0, 0}, {0, 1, 0})), APIERR_BADPARS},
        {Axonometry(Rows({1, 0, 0}, {0, 0, 0}, {0, 1, 0})), APIERR_BADPARS},
        {Axonometry(Rows({1, 0, noNumber}, {0, 1, 0}, {0, 0, 1})), APIERR_BADPARS},
        {Axonometry(Rows({1, 0, 0}, {0, infinite, 0}, {0, 0, 1})), APIERR_BADPARS},
        {ofCamera, APIERR_REFUSEDPAR}};
    for (const bool perspective : {true, false}) {
        window.SwitchTo(perspective, house);
        const Camera before = window.CurrentCamera();
        for (std::size_t at = 0; at < std::size(refused); ++at) {
            EXPECT_EQ(window.ChangeProjection(refused[at].first, house), refused[at].second) << at;
            EXPECT_EQ(window.CurrentCamera(), before) << at;
        }
    }
}

TEST_F(ModelWindowTest, AnAxonometryComesBackExactlyWithItsInverse) {
    // Stretched and with an arbitrary third row; the inverse is computed by hand.
    const API_Tranmat matrix = Rows({2, 0, 0}, {0, 1, 1}, {0, -1, 1});
    ASSERT_EQ(window.ChangeProjection(Axonometry(matrix), house), NoError);
    const API_AxonoPars axono = window.Projection().u.axono;
    EXPECT_FALSE(window.Projection().isPersp);
    EXPECT_THAT(axono.tranmat.tmx, ElementsAreArray(matrix.tmx));
    EXPECT_THAT(axono.invtranmat.tmx, ElementsAreArray(Rows({0.5, 0, 0}, {0, 0.5, -0.5}, {0, 0.5, 0.5}).tmx));

    const API_Tranmat flat = Rows({0.1, 0.2, 0.3}, {0.3, -0.1, 0.7}, {0.4, 0.1, 1.0});
    ASSERT_EQ(window.ChangeProjection(Axonometry(flat), house), NoError);
    EXPECT_THAT(window.Projection().u.axono.tranmat.tmx, ElementsAreArray(flat.tmx));

    Camera moved = window.CurrentCamera();
    moved.middleX += 3;
    moved.across *= 2;
    window.SetCamera(moved);
    EXPECT_THAT(window.Projection().u.axono.tranmat.tmx, ElementsAreArray(flat.tmx));

    moved.right = {0, 1, 0};
    moved.up = {0, 0, 1};
    window.SetCamera(moved);
    EXPECT_THAT(window.Projection().u.axono.tranmat.tmx,
                ElementsAreArray(Rows({0, 1, 0}, {0, 0, 1}, {1, 0, 0}).tmx));
    EXPECT_EQ(window.Projection().u.axono.azimuth, 0) << "seen from +X";
}

TEST_F(ModelWindowTest, SwitchingKeepsTheCameraOfEachKind) {
    const Camera perspective = window.CurrentCamera();
    window.SwitchTo(false, house);
    const Camera first = window.CurrentCamera();
    EXPECT_FALSE(first.perspective);
    EXPECT_LT(Length(AxesOf(first).forward - AxesOf(perspective).forward), 1e-12);
    EXPECT_EQ(FitCamera(first, house, window.Size()), first) << "fitted";

    ASSERT_EQ(window.ChangeProjection(Axonometry(Rows({1, 0, 0}, {0, 1, 0}, {0, 0, 1})), house), NoError);
    const Camera set = window.CurrentCamera();
    EXPECT_EQ(set.across, first.across) << "another direction keeps the zoom";
    window.SwitchTo(true, house);
    EXPECT_EQ(window.CurrentCamera(), perspective);
    window.SwitchTo(false, house);
    EXPECT_EQ(window.CurrentCamera(), set);
}

TEST_F(ModelWindowTest, TheZoomSaysWhereAPointLiesInThePicture) {
    LookFromTheFront();
    API_3DWindowInfo info = window.Window();
    EXPECT_EQ(info.hSize, 800);
    EXPECT_EQ(info.vSize, 600);
    EXPECT_EQ(info.zoomScaleX, 40);
    EXPECT_EQ(info.zoomScaleY, 40);
    EXPECT_EQ(info.zoomDispX, 200);   // 5 * 40 + 200: the middle
    EXPECT_EQ(info.zoomDispY, -380);  // 2 * 40 - 380

    // (1, any, 4) lies at (1 * 40 + 200, 4 * 40 - 380) upwards, which the picture counts downwards.
    const Ray ray = RayThrough(window.CurrentCamera(), window.Size(), {240, 220});
    EXPECT_NEAR(ray.start.x, 1, 1e-9);
    EXPECT_NEAR(ray.start.z, 4, 1e-9);

    info = {};
    info.setZoom = true;
    info.zoomScaleX = 60;
    info.zoomScaleY = 100;  // 80 in the mean
    ASSERT_EQ(window.ChangeWindow(info), NoError);
    EXPECT_EQ(window.CurrentCamera().across, 10);
    EXPECT_EQ(window.CurrentCamera().middleX, 5);
    EXPECT_EQ(window.CurrentCamera().middleY, -3.75);
    EXPECT_EQ(window.Window().zoomScaleX, 80);
    EXPECT_EQ(window.Window().zoomDispX, 0);
    EXPECT_EQ(window.Window().zoomDispY, 0);
}

TEST_F(ModelWindowTest, AZoomThatIsNoneIsRefused) {
    LookFromTheFront();
    const Camera before = window.CurrentCamera();
    using Info = API_3DWindowInfo;
    const std::function<void(Info&)> faults[] = {
        [](Info& info) { info.zoomScaleX = infinite; }, [](Info& info) { info.zoomScaleY = noNumber; },
        [](Info& info) { info.zoomScaleX = -1; },       [](Info& info) { info.zoomScaleX = -200; },
        [](Info& info) { info.zoomDispX = noNumber; },  [](Info& info) { info.zoomDispY = infinite; }};
    for (std::size_t at = 0; at < std::size(faults); ++at) {
        Info info = {};
        info.setZoom = true;
        info.zoomScaleX = info.zoomScaleY = 1;
        faults[at](info);
        EXPECT_EQ(window.ChangeWindow(info), APIERR_BADPARS) << at;
        info.setZoom = false;
        EXPECT_EQ(window.ChangeWindow(info), NoError) << at << ": nothing is to be set";
        EXPECT_EQ(window.CurrentCamera(), before) << at;
    }
}

TEST_F(ModelWindowTest, TheZoomOfAPerspectiveIsThatAtItsTarget) {
    LookFromTheFront();
    const Camera axonometry = window.CurrentCamera();
    ASSERT_EQ(window.ChangeProjection(Perspective({0, -10, 3}, {0, 0, 3}, 90), house), NoError);
    API_3DWindowInfo info = window.Window();
    EXPECT_THAT(info.zoomScaleX, DoubleEq(40));  // 20 metres across 800 pixels
    EXPECT_EQ(info.zoomDispX, 400);
    EXPECT_EQ(info.zoomDispY, -300);

    const Camera before = window.CurrentCamera();
    info.setZoom = true;
    info.zoomScaleX = info.zoomScaleY = 7;
    EXPECT_EQ(window.ChangeWindow(info), NoError);
    EXPECT_EQ(window.CurrentCamera(), before);
    window.SwitchTo(false, house);
    EXPECT_EQ(window.CurrentCamera(), axonometry) << "nor is the other kind's";

    window.SetSize({40000, 600});
    EXPECT_EQ(window.Window().hSize, 32767);
    window.SetSize({0, 600});
    EXPECT_EQ(window.Size(), QSize(40000, 600)) << "a window without extent has none to tell";
}

using Planes = std::vector<std::array<double, 4>>;

class CuttingPlanesTest : public ModelWindowTest {
  protected:
    static API_3DCutPlanesInfo Record(const Planes& planes) {
        API_3DCutPlanesInfo info = {};
        info.nShapes = static_cast<short>(planes.size());
        if (planes.empty()) return info;
        info.shapes = reinterpret_cast<API_3DCutShapeType**>(BMAllocateHandle(
            static_cast<GSSize>(planes.size() * sizeof(API_3DCutShapeType)), ALLOCATE_CLEAR, 0));
        for (std::size_t at = 0; at < planes.size(); ++at) {
            API_3DCutShapeType& shape = (*info.shapes)[at];
            shape.cutPen = 3;
            shape.cutMater = 11;
            std::tie(shape.pa, shape.pb, shape.pc, shape.pd) = std::tuple_cat(planes[at]);
        }
        return info;
    }

    static void Kill(API_3DCutPlanesInfo& info) {
        auto* handle = reinterpret_cast<GSHandle>(info.shapes);
        BMKillHandle(&handle);
    }

    // What the record says about the planes.
    Planes Recorded() {
        API_3DCutPlanesInfo info = {};
        EXPECT_EQ(window.CuttingPlanes(info), NoError);
        EXPECT_EQ(info.shapes == nullptr, info.nShapes == 0);
        Planes planes;
        for (short at = 0; at < info.nShapes; ++at) {
            const API_3DCutShapeType& shape = (*info.shapes)[at];
            EXPECT_EQ(shape.cutPen, 3);
            EXPECT_EQ(shape.cutMater, 11);
            planes.push_back({shape.pa, shape.pb, shape.pc, shape.pd});
        }
        Kill(info);
        return planes;
    }
};

TEST_F(CuttingPlanesTest, PlanesAreKeptAsGivenWhileCuttingIsOff) {
    EXPECT_THAT(Recorded(), IsEmpty());
    // A normal of length 2 with its distance as it stands, and two that cut nothing.
    const Planes given{{0, 0, 2, 3}, {0, 0, 0, 0}, {1, 0, 0, 0.1}, {infinite, 0, 0, 1}};
    API_3DCutPlanesInfo info = Record(given);
    info.isCutPlanes = true;
    ASSERT_EQ(window.ChangeCuttingPlanes(info), NoError);
    Kill(info);
    const auto cutting = ElementsAre(Plane{{0, 0, 1}, 3}, Plane{{1, 0, 0}, 0.1});
    EXPECT_TRUE(window.IsCutting());
    EXPECT_THAT(window.Planes(), cutting);
    EXPECT_EQ(Recorded(), given);

    // As the add-on switches them off: what it got with another flag.
    ASSERT_EQ(window.CuttingPlanes(info), NoError);
    EXPECT_TRUE(info.isCutPlanes);
    info.isCutPlanes = false;
    ASSERT_EQ(window.ChangeCuttingPlanes(info), NoError);
    Kill(info);
    EXPECT_FALSE(window.IsCutting());
    EXPECT_EQ(Recorded(), given);
    window.SetCutting(true);
    EXPECT_THAT(window.Planes(), cutting);
}

TEST_F(CuttingPlanesTest, ARecordWithoutItsShapesIsRefused) {
    API_3DCutPlanesInfo good = Record({{1, 0, 0, 4}});
    ASSERT_EQ(window.ChangeCuttingPlanes(good), NoError);
    API_3DCutPlanesInfo missing = good;
    missing.shapes = nullptr;
    API_3DCutPlanesInfo negative = good;
    negative.nShapes = -1;
    API_3DCutPlanesInfo tooShort = good;
    tooShort.nShapes = 2;
    for (const API_3DCutPlanesInfo& info : {missing, negative, tooShort})
        EXPECT_EQ(window.ChangeCuttingPlanes(info), APIERR_BADPARS) << info.nShapes;
    Kill(good);
    EXPECT_EQ(Recorded(), (Planes{{1, 0, 0, 4}}));

    EXPECT_EQ(window.ChangeCuttingPlanes({}), NoError);
    EXPECT_THAT(Recorded(), IsEmpty());
}

}  // namespace
}  // namespace workbench
