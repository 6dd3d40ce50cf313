#include <gmock/gmock.h>

#include "AddOn/PlayedHost.hpp"
#include "palette/Viewpoint.hpp"

namespace tests {
namespace {

using Json = nlohmann::ordered_json;

class ViewpointCaptureTest : public PlayedHostTest {
  protected:
    ViewpointCaptureTest() {
        host.projection.isPersp = true;
        LookFrom({0, 0, 1.7}, {10, 0, 1.7});
        KestranePalette::GetInstance().InsertViewpoint("image-1");
    }

    void LookFrom(const API_Coord3D& camera, const API_Coord3D& target) {
        API_PerspPars& persp = host.projection.u.persp;
        persp.pos = {camera.x, camera.y};
        persp.cameraZ = camera.z;
        persp.target = {target.x, target.y};
        persp.targetZ = target.z;
        persp.viewCone = 62.5;
    }

    std::string Capture() { return ToText(GS::DynamicCast<DG::JSValue>(Call("AddViewpoint"))->GetString()); }
    Json CaptureJson() { return Json::parse(Capture()); }
};

TEST_F(ViewpointCaptureTest, TextIsExactlyThis) {
    host.selection = {Guid(1)};
    host.elements[1].shown = false;
    host.planesOn = true;
    host.planes = {{0, 3, 11, 0, 0, 0, 2, 3, {}}};
    EXPECT_EQ(Capture(),
              R"({"cameraType":1,"location":{"x":0,"y":0,"z":1.7},"direction":{"x":1,"y":0,"z":0},)"
              R"("up":{"x":0,"y":0,"z":1},"cameraFactor":62.5,"imageId":"image-1","creatingTool":"Archicad",)"
              R"("selectedGlobalIds":[{"ifcGuid":")" +
                  IfcGuid(1) +
                  R"(","name":"W-001"}],"visibility":0,"visbilityExceptionGlobalIds":[{"ifcGuid":")" +
                  IfcGuid(1) +
                  R"(","name":"W-001"}],"sections":[{"location":{"x":0,"y":0,"z":3},)"
                  R"("normal":{"x":0,"y":0,"z":1}}]})");
}

TEST_F(ViewpointCaptureTest, WithoutAPictureOrAProjectionThereIsNone) {
    const std::uint64_t before = Faults().CallsMade();
    KestranePalette::GetInstance().InsertViewpoint("");
    EXPECT_EQ(Capture(), "");
    EXPECT_EQ(Faults().CallsMade(), before);
    KestranePalette::GetInstance().InsertViewpoint("image-2");
    Faults().FailCall("APIEnv_Get3DProjectionSetsID", 1, APIERR_GENERAL);
    EXPECT_EQ(Capture(), "");
    EXPECT_EQ(CaptureJson().at("imageId"), "image-2");
    EXPECT_EQ(CaptureJson().at("imageId"), "image-2");  // it stays until the next picture
}

TEST_F(ViewpointCaptureTest, CamerasInSurveyCoordinates) {
    // A quarter turn to the left and a shift.
    host.survey = {{0, -1, 0, 1000, 1, 0, 0, 2000, 0, 0, 1, 50}};
    struct Case {
        API_Coord3D camera, target;
        Json location, direction, up;
    };
    const Case cases[] = {{{1, 2, 3},
                           {5, 2, 3},
                           {{"x", 998}, {"y", 2001}, {"z", 53}},
                           {{"x", 0}, {"y", 1}, {"z", 0}},
                           {{"x", 0}, {"y", 0}, {"z", 1}}},
                          {{0, 0, 8},
                           {3, 0, 4},
                           {{"x", 1000}, {"y", 2000}, {"z", 58}},
                           {{"x", 0}, {"y", 0.6}, {"z", -0.8}},
                           {{"x", 0}, {"y", 0.8}, {"z", 0.6}}},
                          // Straight down there is no up.
                          {{0, 0, 8},
                           {0, 0, 0},
                           {{"x", 1000}, {"y", 2000}, {"z", 58}},
                           {{"x", 0}, {"y", 0}, {"z", -1}},
                           {{"x", 0}, {"y", 0}, {"z", 0}}}};
    for (const Case& view : cases) {
        LookFrom(view.camera, view.target);
        const Json viewpoint = CaptureJson();
        for (const char* axis : {"x", "y", "z"}) {
            EXPECT_NEAR(viewpoint.at("location").at(axis), view.location.at(axis).get<double>(), 1e-9);
            EXPECT_NEAR(viewpoint.at("direction").at(axis), view.direction.at(axis).get<double>(), 1e-9);
            EXPECT_NEAR(viewpoint.at("up").at(axis), view.up.at(axis).get<double>(), 1e-9);
        }
    }
    KestranePalette::ACViewpoint viewpoint;
    host.survey = {{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0}};
    LookFrom({0, 0, 0}, {5, 0, 0});
    KestranePalette::GetPerspectViewpoint(host.projection, &viewpoint);
    EXPECT_EQ(viewpoint.side.y, 1);
}

TEST_F(ViewpointCaptureTest, AxonometryIsItsMatrixUntransformed) {
    host.survey = {{0, -1, 0, 1000, 1, 0, 0, 2000, 0, 0, 1, 50}};
    host.projection = {};
    host.projection.u.axono.tranmat = {{1, 2, 3, 40, 5, 6, 7, 80, 9, 10, 11, 120}};
    const Json viewpoint = CaptureJson();
    EXPECT_EQ(viewpoint.at("cameraType"), 0);
    EXPECT_EQ(viewpoint.at("cameraFactor"), 0);
    EXPECT_EQ(viewpoint.at("up").dump(), R"({"x":1,"y":2,"z":3})");
    EXPECT_EQ(viewpoint.at("direction").dump(), R"({"x":5,"y":6,"z":7})");
    EXPECT_EQ(viewpoint.at("location").dump(), R"({"x":9,"y":10,"z":11})");
}

TEST_F(ViewpointCaptureTest, VisibilityTakesTheShorterList) {
    host.elements.clear();
    for (UInt32 number = 0; number < 10; ++number)
        host.elements.push_back({Guid(number), APINULLGuid, std::to_string(number), number < 6});
    const auto names = [this] {
        std::string text;
        const Json viewpoint = CaptureJson();
        for (const Json& component : viewpoint.at("visbilityExceptionGlobalIds"))
            text += component.at("name").get<std::string>();
        return text;
    };
    EXPECT_EQ(CaptureJson().at("visibility"), 1);
    EXPECT_EQ(names(), "6789");
    host.elements[0].shown = false;
    EXPECT_EQ(CaptureJson().at("visibility"), 0);
    EXPECT_EQ(names(), "12345");

    Faults().FailCall("ACAPI_Element_GetElemList", 1, APIERR_GENERAL);
    const Json viewpoint = CaptureJson();
    EXPECT_FALSE(viewpoint.contains("visibility"));
    EXPECT_FALSE(viewpoint.contains("visbilityExceptionGlobalIds"));
    EXPECT_TRUE(viewpoint.contains("sections"));
    Faults().FailCall("ACAPI_Element_Filter", 2, APIERR_GENERAL);  // counts as not shown
    EXPECT_EQ(names(), "2345");
}

TEST_F(ViewpointCaptureTest, SectionsInSurveyCoordinatesWhileTheyCut) {
    host.survey = {{0, -1, 0, 1000, 1, 0, 0, 2000, 0, 0, 1, 0}};
    host.planes = {{0, 3, 11, 0, 0, -4, 0, 2.5, {}}, {0, 3, 11, 0, 0, 0, 0, 7, {}}};
    EXPECT_EQ(CaptureJson().at("sections").dump(), "[]");
    host.planesOn = true;
    const Json sections = CaptureJson().at("sections");
    ASSERT_EQ(sections.size(), 2U);
    EXPECT_EQ(sections[0].at("location").dump(), R"({"x":1002.5,"y":2000,"z":0})");
    // Normals take the shift along, as points do, before they are brought to length 1.
    EXPECT_NEAR(sections[0].at("normal").at("x"), 1001 / std::hypot(1001.0, 2000.0), 1e-9);
    EXPECT_NEAR(sections[0].at("normal").at("y"), 2000 / std::hypot(1001.0, 2000.0), 1e-9);
    EXPECT_EQ(sections[1].at("location").dump(), R"({"x":1000,"y":2000,"z":0})");

    Faults().FailCall("APIEnv_Get3DCuttingPlanesID", 1, APIERR_GENERAL);
    EXPECT_EQ(CaptureJson().at("sections").dump(), "[]");
    host.planes.clear();
    EXPECT_EQ(CaptureJson().at("sections").dump(), "[]");
}

}  // namespace
}  // namespace tests
