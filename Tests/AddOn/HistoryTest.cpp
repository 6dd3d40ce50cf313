#include <gmock/gmock.h>

#include <fstream>

#include "AddOn/PlayedHost.hpp"
#include "palette/KestranePalette.hpp"

namespace tests {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

class HistoryTest : public PlayedHostTest {
  protected:
    void Save(const std::string& project, const std::string& data, bool isModel) {
        Call("SaveExportHistoryData",
             Text(Json{{"projectId", project}, {"data", data}, {"isModel", isModel}}.dump()));
    }
    std::string Load(const std::string& project, bool model) {
        return CallForText("GetExportHistory", Json{{"projectId", project}, {"model", model}}.dump());
    }
    void Remember(const std::string& project, const std::string& set, const std::string& items) {
        Call("SetPublishHistory",
             Text(Json{{"projectId", project}, {"publishItems", items}, {"publishSet", set}}.dump()));
    }
    static std::string Remembered(const std::string& set, const std::string& items) {
        return Json{{"publishSet", set}, {"publishItems", items}}.dump();
    }
    static Json Item(const std::string& key) {
        Json item{{"filePath", "/gone"}, {"key", key}, {"ext", "pdf"}, {"title", "T"}, {"isLeaf", true}};
        item.update({{"folder", "f"}, {"isImport", false}, {"docName", "d"}});
        item.update({{"discipline", "x"}, {"building", "b"}, {"floor", "0"}});
        return item;
    }
    fs::path Data() const { return folder.Path() / "Kestrane/ArchiCAD"; }
    fs::path PublishFile(const std::string& project) const {
        return Data() / "Publish History" / (project + ".phs");
    }
};

TEST_F(HistoryTest, ExportsAreKeptByProjectAndKind) {
    EXPECT_EQ(Load("P1", true), "");
    Save("P1", "[1]", true);
    Save("P1", R"(["plan"])", false);
    Save("P2", "a longer text", true);
    Save("P2", "", true);
    EXPECT_EQ(Load("P1", true), "[1]");
    EXPECT_EQ(Load("P1", false), R"(["plan"])");
    EXPECT_EQ(Load("P2", true), "");
    EXPECT_EQ(Load("P2", false), "");
    EXPECT_EQ(ReadFile(Data() / "Export Model History/P1.his"), "[1]");
    EXPECT_EQ(ReadFile(Data() / "Export Other History/P1.his"), R"(["plan"])");
    EXPECT_EQ(fs::file_size(Data() / "Export Model History/P2.his"), 0U);

    // As many bytes as characters: an umlaut costs the last one, two cost the umlaut at the end itself.
    Save("P1", "Tür zu", true);
    EXPECT_EQ(Load("P1", true), "Tür z");
    Save("P1", "Größe", true);
    EXPECT_EQ(ReadFile(Data() / "Export Model History/P1.his"), "Grö\xC3");
    EXPECT_EQ(Load("P1", true), "Grö\uFFFD");
}

TEST_F(HistoryTest, BadExportRequestsAndOddProjects) {
    Save("P1", "kept", true);
    const std::pair<const char*, Json> requests[] = {
        {"SaveExportHistoryData", {{"projectId", "P1"}, {"data", "lost"}, {"isModel", true}}},
        {"GetExportHistory", {{"projectId", "P1"}, {"model", true}}}};
    for (const auto& [function, request] : requests) {
        auto cases = SpoilEach(request, "", {"projectId", "data", "isModel", "model"});
        cases.insert(cases.end(), {{"{", ""}, {"[]", "Bad cast."}, {"null", "Bad cast."}});
        for (const auto& [text, answer] : cases) {
            EXPECT_EQ(CallForText(function, text), answer) << text;
            EXPECT_EQ(Load("P1", true), "kept") << text;
        }
    }
    for (const std::string& project : {std::string("a/b"), std::string("../P1"), std::string(5000, 'x')}) {
        Save(project, "text", true);
        EXPECT_EQ(Load(project, true), "") << project;
        Remember(project, "s", "[]");
        EXPECT_EQ(CallForText("SavePublishHistory"), "") << project;
        Remember("P1", "s", "[]");
        Call("GetPublishHistory", Text(project));
        EXPECT_EQ(CallForText("GetPublishItems", project), "[]") << project;
    }
    for (const std::string project : {"..", " ", "", "Süd \"1\"", "a\\b:c*"}) {
        Save(project, "text", false);
        EXPECT_EQ(Load(project, false), "text") << project;
    }
    EXPECT_EQ(Load("P1", true), "kept");
    EXPECT_EQ(std::distance(fs::directory_iterator(Data()), fs::directory_iterator()), 3) << "nothing beside";

    fs::remove_all(Data());
    std::ofstream(Data()) << "a file in the way";
    Save("P1", "text", true);
    EXPECT_EQ(Load("P1", true), "");
    Faults().FailCall("APIEnv_GetSpecFolderID", 1, APIERR_GENERAL);
    EXPECT_EQ(Load("P1", true), "");
}

TEST_F(HistoryTest, PublishedSelectionSurvivesThePalette) {
    EXPECT_EQ(CallForText("GetPublishItems", "P1"), "[]");
    const std::string items = Json{Item("K1"), Item("K2")}.dump();
    Remember("P1", "Set", items);
    EXPECT_EQ(CallForText("GetPublishItems", "P1"), Remembered("Set", items));
    Call("SavePublishHistory");
    EXPECT_EQ(ReadFile(PublishFile("P1")), Remembered("Set", items));

    KestranePalette::CreateInstance();
    fs::create_directories(folder.Path() / "PreparePublish");
    std::ofstream(folder.Path() / "PreparePublish/K2 copy.dwg") << "plan";
    Call("SavePublishHistory");  // nothing is remembered: nothing is written
    Call("GetPublishHistory", Text("P1"));
    const std::string kept =
        R"([{"filePath":"K2 copy.dwg","key":"K2","title":"T","ext":"pdf","isLeaf":true,"folder":"f",)"
        R"("isImport":false,"docName":"d","discipline":"x","building":"b","floor":"0"}])";
    EXPECT_EQ(CallForText("GetPublishItems", "P1"), Remembered("Set", kept));

    fs::remove_all(folder.Path() / "PreparePublish");
    Call("GetPublishHistory", Text("P1"));
    EXPECT_EQ(CallForText("GetPublishItems", "P1"), Remembered("Set", kept)) << "held already: not read";
    Remember("P2", "Other", "[2]");
    Call("GetPublishHistory", Text("P3"));
    EXPECT_EQ(CallForText("GetPublishItems", "P2"), Remembered("Other", "[2]")) << "no file of P3";
    Call("GetPublishHistory", Text("P1"));
    EXPECT_EQ(CallForText("GetPublishItems", "P1"), Remembered("Set", "[]")) << "all files are gone";
    Call("SavePublishHistory");
    Remember("P4", "Größe", "[]");
    Call("SavePublishHistory");
    EXPECT_EQ(ReadFile(PublishFile("P4")), R"({"publishSet":"Größe","publishItems":"[])");
    Remember("P2", "Other", "[2]");
    Call("GetPublishHistory", Text("P4"));
    EXPECT_EQ(CallForText("GetPublishItems", "P2"), Remembered("Other", "[2]")) << "cut, so unreadable";
}

TEST_F(HistoryTest, DamagedPublishHistoriesChangeNothing) {
    Remember("P0", "s", "[]");
    Call("SavePublishHistory");
    const auto stored = [](const std::string& items) {
        return Json{{"publishSet", "s"}, {"publishItems", items}};
    };
    auto files = SpoilEach(stored("[]"));
    files.insert(files.end(), {{"", ""},
                               {"{", ""},
                               {"[]", "Bad cast."},
                               {stored("no JSON").dump(), ""},
                               {stored("{}").dump(), "Bad cast."},
                               {stored("[5]").dump(), "Bad cast."}});
    for (const auto& [items, answer] : SpoilEach(Json::array({Item("K")}), "/0"))
        files.emplace_back(stored(items).dump(), answer);
    for (const auto& [content, answer] : files) {
        std::ofstream(PublishFile("P1")) << content;
        EXPECT_EQ(CallForText("GetPublishHistory", "P1"), answer) << content;
        EXPECT_EQ(CallForText("GetPublishItems", "P0"), Remembered("s", "[]")) << content;
    }
    auto requests = SpoilEach({{"projectId", "P"}, {"publishItems", "[]"}, {"publishSet", "s"}});
    requests.insert(requests.end(), {{"{", ""}, {"[]", "Bad cast."}});
    for (const auto& [request, answer] : requests) {
        EXPECT_EQ(CallForText("SetPublishHistory", request), answer) << request;
        EXPECT_EQ(CallForText("GetPublishItems", "P0"), Remembered("s", "[]")) << request;
    }
    std::ofstream(PublishFile("P1")) << R"({"publishSet":"s","publishItems":"[]"})";
    for (std::uint64_t nth = 1; nth <= 2; ++nth) {  // the history's folder, the prepared files' folder
        Faults().FailCall(nth, APIERR_GENERAL);
        Call("GetPublishHistory", Text("P1"));
        EXPECT_EQ(CallForText("GetPublishItems", "P1"), "[]") << nth;
    }
    Call("GetPublishHistory", Text("P1"));
    EXPECT_EQ(CallForText("GetPublishItems", "P1"), Remembered("s", "[]"));
}

}  // namespace
}  // namespace tests
