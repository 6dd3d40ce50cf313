#include <gmock/gmock.h>

#include "AddOn/PlayedHost.hpp"
#include "palette/KestranePalette.hpp"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Json = nlohmann::json;

const std::string notAGuid = "not a GUID";

TEST_F(PlayedHostTest, IfcGuidsResolveToElements) {
    host.elements.push_back({Guid(3), Guid(0xF3), "", true, false});  // first, but not readable
    host.elements.push_back({Guid(4), Guid(0xF3)});
    host.elements.push_back({Guid(5), Guid(0xF3)});
    host.elements.push_back({Guid(6), Guid(1)});  // came with a GUID that is another's own
    struct Case {
        std::string ifcGuid;
        API_Guid element;
        bool searched;
    };
    const Case cases[] = {{IfcGuid(1), Guid(1), false},          {IfcGuid(0xF2), Guid(2), true},
                          {IfcGuid(0xF3), Guid(4), true},        {IfcGuid(0xEE), APINULLGuid, true},
                          {notAGuid, APINULLGuid, false},        {"", APINULLGuid, false},
                          {IfcGuid(1) + "0", APINULLGuid, false}};
    for (const auto& [ifcGuid, element, searched] : cases) {
        SCOPED_TRACE(ifcGuid);
        host.calls.clear();
        EXPECT_EQ(KestranePalette::GetElementGuidFromIfcGuid(ifcGuid.c_str()), element);
        EXPECT_EQ(host.calls.empty(), !searched);
    }
    Faults().FailCall("ACAPI_Element_GetElemListByIFCIdentifier", 1, APIERR_GENERAL);
    EXPECT_EQ(KestranePalette::GetElementGuidFromIfcGuid(IfcGuid(0xF2).c_str()), APINULLGuid);

    GS::Array<GS::UniString> unresolved;
    const auto elements = KestranePalette::GetElementsFromJSIfcGuids(
        {IfcGuid(0xF2).c_str(), notAGuid.c_str(), IfcGuid(1).c_str(), IfcGuid(0xF2).c_str()}, &unresolved);
    EXPECT_EQ(elements, (GS::Array<API_Guid>{Guid(2), Guid(1), Guid(2)}));
    EXPECT_EQ(unresolved, (GS::Array<GS::UniString>{notAGuid.c_str()}));
}

TEST_F(PlayedHostTest, ComponentsAreNamedByTheFilesGuidAndEscaped) {
    host.elements.push_back({Guid(3)});  // no ID text
    EXPECT_THAT(CallForComponents("GetElementNames",
                                  {IfcGuid(0xEE), IfcGuid(0xF2), notAGuid, IfcGuid(1), IfcGuid(3)}),
                ElementsAre(Json{{"ifcGuid", IfcGuid(0xF2)}, {"name", "W-\"002\\\""}},
                            Json{{"ifcGuid", IfcGuid(1)}, {"name", "W-001"}},
                            Json{{"ifcGuid", IfcGuid(3)}, {"name", ""}},
                            Json{{"ifcGuid", IfcGuid(0xEE)}, {"name", ""}},
                            Json{{"ifcGuid", notAGuid}, {"name", ""}}));
    EXPECT_EQ(ToText(KestranePalette::MakeComponentJSONString("g", "n")), R"({"ifcGuid":"g","name":"n"})");

    EXPECT_THAT(CallForComponents("GetSelectedElements"), IsEmpty());
    host.selection = {Guid(2), Guid(1)};
    EXPECT_THAT(CallForComponents("GetSelectedElements"),
                ElementsAre(Json{{"ifcGuid", IfcGuid(0xF2)}, {"name", "W-\"002\\\""}},
                            Json{{"ifcGuid", IfcGuid(1)}, {"name", "W-001"}}));
    Faults().FailCall("ACAPI_Selection_Get", 1, APIERR_GENERAL);
    EXPECT_THAT(CallForComponents("GetSelectedElements"), IsEmpty());
}

TEST_F(PlayedHostTest, HighlightingReplacesTheSelectionAndOpensWhatIsCut) {
    host.planes.resize(2);
    host.selection = {Guid(1)};
    struct Case {
        const char* name;
        bool planesOn;
        std::vector<std::string> ifcGuids;
        const char* fault;
        std::vector<std::string> calls;
    };
    const Case cases[] = {
        {"cut",
         true,
         {IfcGuid(0xF2)},
         "",
         {"ElementsByIfcIdentifier", "CuttingPlanes", "ChangeCuttingPlanes", "ChangeWindow", "DeselectAll",
          "Select"}},
        {"not cut", false, {IfcGuid(1)}, "", {"CuttingPlanes", "DeselectAll", "Select"}},
        {"nothing found",
         true,
         {notAGuid},
         "",
         {"CuttingPlanes", "ChangeCuttingPlanes", "ChangeWindow", "DeselectAll"}},
        {"planes not told", true, {IfcGuid(1)}, "APIEnv_Get3DCuttingPlanesID", {"DeselectAll", "Select"}},
        {"planes not changed",
         true,
         {IfcGuid(1)},
         "APIEnv_Change3DCuttingPlanesID",
         {"CuttingPlanes", "DeselectAll", "Select"}}};
    for (const Case& step : cases) {
        SCOPED_TRACE(step.name);
        host.planesOn = step.planesOn;
        host.calls.clear();
        if (*step.fault != '\0') Faults().FailCall(step.fault, 1, APIERR_GENERAL);
        EXPECT_TRUE(CallForBool("HighlightElements", step.ifcGuids));
        EXPECT_EQ(host.calls, step.calls);
        EXPECT_EQ(host.planes.size(), 2U);
        EXPECT_EQ(host.planesOn, step.planesOn && *step.fault != '\0');
        EXPECT_EQ(host.selection.size(), step.calls.back() == "Select" ? 1U : 0U);
    }
}

TEST_F(PlayedHostTest, ZoomsToExactlyOneElement) {
    EXPECT_TRUE(CallForBool("ZoomToElement", {notAGuid, IfcGuid(0xF2)}));
    EXPECT_THAT(host.zoomed, ElementsAre(Guid(2)));
    host.calls.clear();
    EXPECT_FALSE(CallForBool("ZoomToElement", {IfcGuid(1), IfcGuid(0xF2)}));
    EXPECT_FALSE(CallForBool("ZoomToElement", {IfcGuid(0xEE)}));
    EXPECT_FALSE(CallForBool("ZoomToElement", Json::array()));
    EXPECT_THAT(host.calls, testing::Not(testing::Contains("ZoomToElements")));
    Faults().FailCall("APIDo_ZoomToElementsID", 1, APIERR_GENERAL);
    EXPECT_FALSE(CallForBool("ZoomToElement", {IfcGuid(1)}));
}

}  // namespace
}  // namespace tests
