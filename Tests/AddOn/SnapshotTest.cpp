#include <gmock/gmock.h>

#include <regex>

#include "AddOn/PlainServer.hpp"
#include "AddOn/PlayedHost.hpp"
#include "ThreadRegister.hpp"
#include "palette/KestranePalette.hpp"

namespace tests {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

const char* const request = R"({"token":"t0ken","projectId":"p1"})";

class SnapshotTest : public PlayedHostTest {
  protected:
    SnapshotTest() { host.projection.isPersp = true; }

    void Export(const std::string& json = request) {
        EXPECT_TRUE(GS::DynamicCast<DG::JSValue>(Call("ExportSnapshot", Text(json)))->GetBool());
        EXPECT_TRUE(hostkit::ThreadRegister::Instance().WaitForAll(20s));
    }
    std::vector<std::filesystem::path> Pictures() const {
        std::vector<std::filesystem::path> files;
        for (const auto& file : std::filesystem::directory_iterator(folder.Path()))
            files.push_back(file.path());
        return files;
    }
    bool IsInserted() { return driver.WaitForScript("InsertViewpoint()", 0ms); }
    std::string ImageId() {
        return nlohmann::json::parse(ToText(GS::DynamicCast<DG::JSValue>(Call("AddViewpoint"))->GetString()))
            .at("imageId");
    }
};

TEST_F(SnapshotTest, PictureIsUploadedAndItsIdKept) {
    const PlainServer server(PlainServer::Manner::Answer, 200, "image-7");
    Export();
    EXPECT_TRUE(IsInserted());
    EXPECT_EQ(ImageId(), "image-7");
    ASSERT_THAT(server.Requests(), SizeIs(1));
    const std::string sent = server.Requests().front();
    EXPECT_THAT(sent, testing::StartsWith("POST /api/resource HTTP/1.1"));
    EXPECT_THAT(sent, HasSubstr("Kestrane-Client-Id: Kestrane Plugin Archicad"));
    EXPECT_THAT(sent, HasSubstr("X-Project-Authorization: bearer t0ken"));
    EXPECT_THAT(sent, HasSubstr("name=\"file\"; filename=\"" + Pictures().at(0).filename().string() + "\""));
    EXPECT_THAT(host.saved, testing::ElementsAre("picture 22 depth 9 cropped highlighted"));
    EXPECT_THAT(driver.Alerts(), IsEmpty());
    EXPECT_TRUE(std::regex_match(Pictures().at(0).filename().string(),
                                 std::regex(R"(\d{4}-\d\d-\d\dT\d\d_\d\d_\d\d([+-]\d\d_\d\d|Z)\.png)")));
}

TEST_F(SnapshotTest, AnErrorsBodyCountsAsTheId) {
    const PlainServer server(PlainServer::Manner::Answer, 500, "no room");
    Export();
    EXPECT_TRUE(IsInserted());
    EXPECT_EQ(ImageId(), "no room");
}

TEST_F(SnapshotTest, NobodyIsToldOfABrokenTransfer) {
    const PlainServer server(PlainServer::Manner::CutUpload);
    Export();
    EXPECT_FALSE(IsInserted());
}

TEST_F(SnapshotTest, OnlyPerspectivesInFront) {
    struct Case {
        const char* language;
        bool perspective;
        API_WindowTypeID front;
        const char* alert;
    };
    const Case cases[] = {
        {"INT", true, APIWind_FloorPlanID,
         "Current view is not perspective view.\n Please add a viewpoint in perspective view."},
        {"GER", true, APIWind_FloorPlanID,
         "Die aktuelle Ansicht ist keine perspektive Ansicht.\n Bitte fügen Sie einen Viewpoint in der "
         "perspektiven Ansicht."},
        {"INT", false, APIWind_3DModelID,
         "You are now in 3D-display mode Axonometry.\n Please change to perspective mode (Alt+Shift+3)."},
        {"GER", false, APIWind_3DModelID,
         "Sie befinden sich im 3D-Darstellungsmodus Axonometrie. \n bitte wechseln sie in den Modus "
         "Perspektive (Alt+Umsch.+3)."}};
    for (const auto& [language, perspective, front, alert] : cases) {
        host.language = language;
        host.projection.isPersp = perspective;
        host.front = front;
        Export();
        EXPECT_EQ(ToText(driver.Alerts().back().large), alert);
        EXPECT_EQ(ToText(driver.Alerts().back().buttons[0]), "OK");
        EXPECT_THAT(Pictures(), IsEmpty());
    }
    Faults().FailCall("APIDb_GetCurrentWindowID", 1, APIERR_BADWINDOW);  // no window: no 3D window either
    Export();
    EXPECT_THAT(driver.Alerts(), SizeIs(5));
}

TEST_F(SnapshotTest, OtherFailuresAreSilent) {
    for (const char* fault : {"APIEnv_Get3DProjectionSetsID", "APIEnv_GetSpecFolderID", "APIDo_SaveID"}) {
        Faults().FailCall(fault, 1, APIERR_GENERAL);
        Export();
        EXPECT_THAT(Pictures(), IsEmpty()) << fault;
    }
    for (const char* text : {"", "no JSON", "[]", R"({"token":"t"})", R"({"token":"t","projectId":7})"})
        Export(text);
    EXPECT_FALSE(IsInserted());
    EXPECT_THAT(driver.Alerts(), IsEmpty());
}

}  // namespace
}  // namespace tests
