#include <gmock/gmock.h>

#include <cmath>

#include "AddOn/PlayedHost.hpp"
#include "palette/Viewpoint.hpp"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Json = nlohmann::json;

Json Vector(double x, double y, double z) {
    return {{"x", x}, {"y", y}, {"z", z}};
}

Json Perspective() {
    return {{"cameraType", 1},
            {"location", Vector(0, 0, 1.7)},
            {"direction", Vector(1, 0, 0)},
            {"up", Vector(0, 0, 1)},
            {"cameraFactor", 60}};
}

class ViewpointRestoreTest : public PlayedHostTest {
  protected:
    bool Restore(const Json& viewpoint) {
        host.calls.clear();
        return CallForBool("SelectViewpoint", viewpoint);
    }
    std::vector<API_Guid> Shown() const {
        std::vector<API_Guid> shown;
        for (const auto& element : host.elements)
            if (element.shown) shown.push_back(element.guid);
        return shown;
    }
};

TEST_F(ViewpointRestoreTest, PerspectiveSelectionVisibilityAndSectionsInThisOrder) {
    host.front = APIWind_FloorPlanID;
    host.planes.resize(1);
    Json viewpoint = Perspective();
    viewpoint["visibility"] = false;
    viewpoint["visbilityExceptionGlobalIds"] = {IfcGuid(0xF2), IfcGuid(0xEE)};
    viewpoint["selectedGlobalIds"] = {IfcGuid(1)};
    viewpoint["sections"] = {{{"location", Vector(0, 0, 3)}, {"normal", Vector(0, 0, 2)}},
                             {{"location", Vector(1, 2, 3)}, {"normal", Vector(0, 0, 0)}}};
    EXPECT_TRUE(Restore(viewpoint));

    EXPECT_THAT(host.calls, ElementsAre("ChangeProjection3D", "ShowAllIn3D", "ElementsByIfcIdentifier",
                                        "ElementsByIfcIdentifier", "ElementsByIfcIdentifier", "DeselectAll",
                                        "Select", "ShowSelectionIn3D", "DeselectAll", "Select",
                                        "CuttingPlanes", "ChangeCuttingPlanes", "ChangeWindow"));
    EXPECT_TRUE(host.projection.isPersp);
    EXPECT_EQ(host.projection.camGuid, APINULLGuid);
    const API_PerspPars& persp = host.projection.u.persp;
    EXPECT_EQ(persp.viewCone, 60);
    EXPECT_EQ(persp.pos.x, 0);
    EXPECT_EQ(persp.cameraZ, 1.7);
    EXPECT_EQ(persp.target.x, 1);
    EXPECT_EQ(persp.target.y, 0);
    EXPECT_EQ(persp.targetZ, 1.7);
    EXPECT_EQ(persp.rollAngle, 0);
    EXPECT_THAT(Shown(), ElementsAre(Guid(2)));
    EXPECT_THAT(host.selection, ElementsAre(Guid(1)));
    EXPECT_EQ(host.front, APIWind_3DModelID);
    ASSERT_EQ(host.planes.size(), 2U);
    EXPECT_TRUE(host.planesOn);
    const API_3DCutShapeType& plane = host.planes[0];
    EXPECT_EQ(std::vector<int>({plane.cutStatus, plane.cutPen, plane.cutMater, plane.filler_1}),
              std::vector<int>({0, 3, 11, 0}));
    EXPECT_EQ(std::vector<double>({plane.pa, plane.pb, plane.pc, plane.pd}),
              std::vector<double>({0, 0, 1, 3}));
    EXPECT_EQ(host.planes[1].pd, 0);
}

TEST_F(ViewpointRestoreTest, SectionsOfAnyLength) {
    KestranePalette::ACViewpoint viewpoint;
    viewpoint.sections = {{{0, 0, 3}, {0, 0, 2}}, {{5, 0, 0}, {0, 0, 0}}};
    EXPECT_EQ(KestranePalette::SetSections(viewpoint), NoError);
    ASSERT_EQ(host.planes.size(), 2U);
    EXPECT_EQ(host.planes[0].pc, 2);
    EXPECT_EQ(host.planes[0].pd, 3);
    EXPECT_EQ(host.planes[1].pd, 0);
    Faults().FailCall("APIEnv_Get3DCuttingPlanesID", 1, APIERR_REFUSEDCMD);
    EXPECT_EQ(KestranePalette::SetSections(viewpoint), APIERR_REFUSEDCMD);
    Faults().FailCall("APIEnv_Change3DCuttingPlanesID", 1, APIERR_REFUSEDPAR);
    EXPECT_EQ(KestranePalette::SetSections(viewpoint), APIERR_REFUSEDPAR);
    viewpoint.sections = GS::Array<ACSection>();
    host.calls.clear();
    EXPECT_EQ(KestranePalette::SetSections(viewpoint), NoError);
    EXPECT_THAT(host.calls, IsEmpty());
}

TEST_F(ViewpointRestoreTest, OnlyPointsComeBackFromSurveyCoordinates) {
    host.survey = {{0, -1, 0, 1000, 1, 0, 0, 2000, 0, 0, 1, 50}};
    Json viewpoint = Perspective();
    viewpoint["location"] = Vector(998, 2001, 53);
    viewpoint["direction"] = Vector(0, 5, 0);
    viewpoint["sections"] = {{{"location", Vector(1000, 2004, 50)}, {"normal", Vector(0, 1, 0)}}};
    EXPECT_TRUE(Restore(viewpoint));
    const API_PerspPars& persp = host.projection.u.persp;
    EXPECT_NEAR(persp.pos.x, 1, 1e-9);
    EXPECT_NEAR(persp.pos.y, 2, 1e-9);
    EXPECT_NEAR(persp.cameraZ, 3, 1e-9);
    EXPECT_NEAR(persp.target.x, 1, 1e-9);
    EXPECT_NEAR(persp.target.y, 3, 1e-9);
    EXPECT_EQ(host.planes.at(0).pb, 1);
    EXPECT_NEAR(host.planes.at(0).pd, 0, 1e-9);  // (4, 0, 0) of the model, along an unturned normal

    Faults().FailCall("APIEnv_GetSurveyPointTransformationID", 1, APIERR_GENERAL);
    EXPECT_TRUE(Restore(viewpoint));
    EXPECT_EQ(host.projection.u.persp.pos.x, 998);
}

TEST_F(ViewpointRestoreTest, VisibleButTheExceptions) {
    host.elements.push_back({Guid(3)});
    host.planesOn = true;
    host.planes.resize(3);
    Json viewpoint = Perspective();
    EXPECT_TRUE(Restore(viewpoint));  // says nothing of visibility: all
    EXPECT_THAT(Shown(), ElementsAre(Guid(1), Guid(2), Guid(3)));
    EXPECT_THAT(host.selection, IsEmpty());
    EXPECT_THAT(host.calls, ElementsAre("ChangeProjection3D", "ShowAllIn3D", "DeselectAll", "ElementList",
                                        "Select", "ShowSelectionIn3D", "DeselectAll", "ChangeWindow"));
    EXPECT_TRUE(host.planesOn);  // without sections the planes are left
    EXPECT_EQ(host.planes.size(), 3U);

    viewpoint["visibility"] = true;
    viewpoint["visbilityExceptionGlobalIds"] = {IfcGuid(1), IfcGuid(0xF2)};
    EXPECT_TRUE(Restore(viewpoint));
    EXPECT_THAT(Shown(), ElementsAre(Guid(3)));
    viewpoint["visibility"] = false;
    viewpoint["visbilityExceptionGlobalIds"] = Json::array();
    EXPECT_TRUE(Restore(viewpoint));
    EXPECT_THAT(Shown(), IsEmpty());
}

// Hand-computed with the model's centre at the origin and a window of 1000 by 600 pixels.
TEST_F(ViewpointRestoreTest, AxonometryIsSetAndZoomed) {
    host.window.hSize = 1000;
    host.window.vSize = 600;
    host.viewConeAfterSwitch = 90;
    const Json viewpoint = {{"cameraType", 0},
                            {"location", Vector(30, 0, 40)},
                            {"direction", Vector(0, 2, 0)},
                            {"up", Vector(0, 0, 1)},
                            {"cameraFactor", 2.5}};
    host.calls.clear();
    EXPECT_TRUE(Restore(viewpoint));
    EXPECT_THAT(host.calls,
                ElementsAre("ChangeProjection3D", "ShowAllIn3D", "SwitchToPerspective", "ChangeWindow",
                            "Projection3D", "Window3D", "SwitchToAxonometry", "ChangeWindow", "Window3D",
                            "ChangeWindow3D", "ZoomToFit", "DeselectAll", "ElementList", "Select",
                            "ShowSelectionIn3D", "DeselectAll", "ChangeWindow"));
    // h / (d tan(cone / 2)) / factor = 500 / (50 * 1) / 2.5 = 4; side (1, 0, 0), up (0, 0, 1):
    // angles 0, 0 and a right one, so X = 30 and Y = 40.
    EXPECT_FALSE(host.window.setWindowSize);
    EXPECT_EQ(host.window.hSize, 0);
    EXPECT_TRUE(host.window.setZoom);
    EXPECT_NEAR(host.window.zoomScaleX, 4, 1e-9);
    EXPECT_NEAR(host.window.zoomScaleY, 4, 1e-9);
    EXPECT_NEAR(host.window.zoomDispX, 500 - 30 * 4, 1e-9);
    EXPECT_NEAR(host.window.zoomDispY, -300 - 40 * 4, 1e-9);
}

TEST_F(ViewpointRestoreTest, AxonometryRowsAreSideUpAndDirection) {
    KestranePalette::ACViewpoint viewpoint;
    ASSERT_TRUE(KestranePalette::GetViewpointFromJSObject(
        GS::DynamicCast<DG::JSObject>(ToScript(Json{{"cameraType", 0},
                                                    {"location", Vector(1, 2, 3)},
                                                    {"direction", Vector(0, 1, 0)},
                                                    {"up", Vector(0, 0, 4)},
                                                    {"cameraFactor", 0}})),
        &viewpoint));
    host.window.hSize = 800;
    EXPECT_EQ(KestranePalette::SelectViewpoint(viewpoint), NoError);
    EXPECT_TRUE(std::isinf(host.window.zoomScaleX));                          // the host gets it as it is
    Faults().FailCall("APIEnv_Change3DProjectionSetsID", 2, APIERR_GENERAL);  // the switch, not the camera
    Faults().FailCall("APIEnv_Get3DWindowSetsID", 1, APIERR_GENERAL);
    EXPECT_EQ(KestranePalette::SelectViewpoint(viewpoint), NoError);
    const double* rows = host.projection.u.axono.tranmat.tmx;
    EXPECT_THAT(std::vector<double>(rows, rows + 12), ElementsAre(1, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0, 0));
}

TEST_F(ViewpointRestoreTest, FailuresOfTheHost) {
    Json viewpoint = Perspective();
    viewpoint["sections"] = {{{"location", Vector(0, 0, 3)}, {"normal", Vector(0, 0, 1)}}};
    struct Case {
        const char* fault;
        const char* last;
    };
    const Case cases[] = {{"APIEnv_Change3DProjectionSetsID", "ChangeWindow"},  // not looked at
                          {"APIDo_ShowAllIn3DID", "ChangeProjection3D"},        // ends it
                          {"ACAPI_Element_GetElemList", "ChangeWindow"},
                          {"APIDo_ShowSelectionIn3DID", "ChangeWindow"},
                          {"APIEnv_Get3DCuttingPlanesID", "ChangeWindow"},
                          {"APIEnv_Change3DCuttingPlanesID", "ChangeWindow"},
                          {"APIDo_ChangeWindowID", "ChangeCuttingPlanes"}};
    for (const auto& [fault, last] : cases) {
        SCOPED_TRACE(fault);
        Faults().FailCall(fault, 1, APIERR_GENERAL);
        EXPECT_TRUE(Restore(viewpoint));
        EXPECT_EQ(host.calls.back(), last);
    }
}

TEST_F(ViewpointRestoreTest, WhatCannotBeReadChangesNothing) {
    const auto with = [](const char* name, const Json& value) {
        Json viewpoint = Perspective();
        viewpoint[name] = value;
        return viewpoint;
    };
    const auto without = [](const char* name) {
        Json viewpoint = Perspective();
        viewpoint.erase(name);
        return viewpoint;
    };
    const Json section = {{"location", Vector(0, 0, 1)}, {"normal", Vector(0, 0, 1)}};
    const Json unreadable[] = {without("cameraType"),
                               without("location"),
                               without("direction"),
                               without("up"),
                               without("cameraFactor"),
                               with("cameraType", "1"),
                               with("cameraType", 1.5),
                               with("cameraType", Json::array()),
                               with("location", "here"),
                               with("location", nullptr),
                               with("direction", Json::array({1, 0, 0})),
                               with("up", true),
                               with("up", {{"x", 0}, {"y", nullptr}, {"z", 1}}),
                               with("cameraFactor", "60"),
                               with("cameraFactor", Json::object()),
                               with("visibility", "yes"),
                               with("visibility", Json::array()),
                               with("selectedGlobalIds", "all"),
                               with("selectedGlobalIds", {{{"ifcGuid", Json::array()}}}),
                               with("visbilityExceptionGlobalIds", Json::object()),
                               with("sections", section),
                               with("sections", {section, "plane"}),
                               with("sections", {{{"location", Vector(0, 0, 1)}}}),
                               Json()};
    for (const Json& viewpoint : unreadable) {
        EXPECT_FALSE(Restore(viewpoint)) << viewpoint;
        EXPECT_THAT(host.calls, IsEmpty());
    }
    for (const Json& thrown : {Json("text"), Json::array(), with("up", {{"x", 1}, {"y", 1}})}) {
        EXPECT_THROW(Restore(thrown), GS::Exception) << thrown;
        EXPECT_THAT(host.calls, IsEmpty());
    }
}

TEST_F(ViewpointRestoreTest, ReadsItsOwnTextAsItIs) {
    host.elements.push_back({Guid(3), APINULLGuid, "W-003", false});
    host.selection = {Guid(2)};
    host.projection.isPersp = true;
    host.projection.u.persp.target = {3, 4};
    host.projection.u.persp.viewCone = 55;
    host.survey = {{0.6, -0.8, 0, 3.5e6, 0.8, 0.6, 0, 5.6e6, 0, 0, 1, 50}};
    KestranePalette::GetInstance().InsertViewpoint("image");
    const auto capture = [this] {
        return ToText(GS::DynamicCast<DG::JSValue>(Call("AddViewpoint"))->GetString());
    };
    const Json viewpoint = Json::parse(capture());
    host.selection.clear();
    host.elements[2].shown = true;
    host.projection.u.persp.pos = {100, 100};
    EXPECT_TRUE(Restore(viewpoint));
    EXPECT_THAT(Shown(), ElementsAre(Guid(1), Guid(2)));
    EXPECT_THAT(host.selection, ElementsAre(Guid(2)));
    EXPECT_NEAR(host.projection.u.persp.pos.x, 0, 1e-8);

    // Once more and again: nothing drifts.
    host.survey = {{1, 0, 0, 3.5e6, 0, 1, 0, 5.6e6, 0, 0, 1, 50}};
    EXPECT_TRUE(Restore(Json::parse(capture())));
    const std::string second = capture();
    for (int i = 0; i < 10; ++i)
        EXPECT_TRUE(Restore(Json::parse(capture())));
    const Json first = Json::parse(second);
    const Json last = Json::parse(capture());
    EXPECT_EQ(first.at("location"), last.at("location"));
    EXPECT_NEAR(first.at("direction").at("x"), last.at("direction").at("x").get<double>(), 1e-8);
}

}  // namespace
}  // namespace tests
