#include <gmock/gmock.h>

#include <fstream>

#include "AddOn/PlayedHost.hpp"

namespace tests {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::string Key(UInt32 number) {
    return ToText(APIGuidToString(Guid(number)));
}

Json Item(const std::string& key, const std::string& title) {
    return {{"key", key},          {"title", title},        {"isLeaf", true},
            {"folder", "f1"},      {"isImport", false},     {"docName", "d"},
            {"discipline", "ARC"}, {"building", "A \"1\""}, {"floor", "EG"}};
}

// The set 0x10 with the root 0x11: plan 0x21, and a folder 0x22 with the plans 0x31 and 0x32.
class PublishPreparationTest : public PlayedHostTest {
  protected:
    PublishPreparationTest() {
        host.publisherSets = {{"Pläne", Guid(0x10), Guid(0x11)}, {"\"2\"", Guid(0x12), Guid(0x13)}};
        host.publisherItems = {{Guid(0x11), {{"EG", Guid(0x21)}, {"Süd", Guid(0x22)}}},
                               {Guid(0x22), {{"A", Guid(0x31)}, {"B", Guid(0x32)}}}};
        for (const UInt32 item : {0x21, 0x31, 0x32})
            host.publisherFiles[Guid(item)] = {"plan " + std::to_string(item) + ".pdf"};
    }

    static Json Request(const std::vector<Json>& items) {
        return {{"guid", Key(0x10)}, {"projectId", "p1"}, {"publishSet", "set"}, {"publishItems", items}};
    }
    std::string Prepare(const Json& request) { return CallForText("PreparePublishDocs", request.dump()); }
    std::string ItemsBelow(UInt32 root) {
        return CallForText("GetPublishSetItems", Json{{"rootGuid", Key(root)}}.dump());
    }
    fs::path Prepared() const { return folder.Path() / "PreparePublish"; }
};

TEST_F(PublishPreparationTest, SetsAndTheirItemsInTheHostsOrder) {
    EXPECT_EQ(CallForText("GetPublishSetHeaders"),
              R"([{"title":"Pläne","guid":")" + Key(0x10) + R"(","rootGuid":")" + Key(0x11) +
                  R"(","index":0},{"title":"\"2\"","guid":")" + Key(0x12) + R"(","rootGuid":")" + Key(0x13) +
                  R"(","index":1}])");
    EXPECT_EQ(ItemsBelow(0x11),
              R"([{"title":"EG","key":")" + Key(0x21) + R"(","isLeaf":true},{"title":"Süd","key":")" +
                  Key(0x22) + R"(","children":[{"title":"A","key":")" + Key(0x31) +
                  R"(","isLeaf":true},{"title":"B","key":")" + Key(0x32) + R"(","isLeaf":true}]}])");
    host.publisherSets.clear();
    EXPECT_EQ(CallForText("GetPublishSetHeaders"), "[]");

    for (const char* request : {"", "{", "{}", R"({"rootGuid":"no GUID"})", R"({"rootGuid":""})"})
        EXPECT_EQ(CallForText("GetPublishSetItems", request), "") << request;
    EXPECT_EQ(ItemsBelow(0x13), "");
    for (const char* request : {"[]", "null", "5", R"({"rootGuid":5})", R"({"rootGuid":null})"})
        EXPECT_EQ(CallForText("GetPublishSetItems", request), "Bad cast.") << request;
}

TEST_F(PublishPreparationTest, EveryUnansweredQueryOfTheNavigator) {
    for (std::uint64_t nth = 1; nth <= 3; ++nth) {
        Faults().FailCall(nth, APIERR_GENERAL);
        EXPECT_EQ(CallForText("GetPublishSetHeaders"), "") << nth;
    }
    const std::size_t nodes[] = {0, 4, 2, 4, 4};  // a folder without an answer is a leaf
    for (std::uint64_t nth = 1; nth <= 5; ++nth) {
        Faults().FailCall(nth, APIERR_GENERAL);
        const std::string items = ItemsBelow(0x11);
        std::size_t titles = 0;
        for (std::size_t at = items.find("title"); at != std::string::npos; at = items.find("title", at + 1))
            ++titles;
        EXPECT_EQ(titles, nodes[nth - 1]) << nth;
    }
}

TEST_F(PublishPreparationTest, EndlessTreesEnd) {
    host.publisherItems[Guid(0x22)] = {{"up", Guid(0x11)}, {"self", Guid(0x22)}};
    EXPECT_EQ(Json::parse(ItemsBelow(0x11))[1]["children"].dump(),
              R"([{"title":"up","key":")" + Key(0x11) + R"(","isLeaf":true},{"title":"self","key":")" +
                  Key(0x22) + R"(","isLeaf":true}])");
    for (UInt32 level = 0; level < 20000; ++level)
        host.publisherItems[Guid(1000 + level)] = {{"deeper", Guid(1001 + level)}};
    int depth = 0;
    Json items = Json::parse(ItemsBelow(1000));
    for (; items[0].contains("children"); ++depth)
        items = Json(items[0]["children"]);
    EXPECT_EQ(depth + 1, 100);
}

TEST_F(PublishPreparationTest, ItemsArePublishedOnceAndTheirFilesKept) {
    const Json request = Request({Item(Key(0x32), "B"), Item(Key(0x21), "EG")});
    const auto expected = [&](UInt32 number, const char* title) {
        const std::string file = (Prepared() / (Key(number) + ".pdf")).string();
        return R"({"filePath":")" + file + R"(","key":")" + Key(number) + R"(","ext":"pdf","title":")" +
               title + R"(","isLeaf":true,"folder":"f1","isImport":false,"docName":"d","discipline":"ARC",)" +
               R"("building":"A \"1\"","floor":"EG"})";
    };
    const std::string prepared = Prepare(request);
    EXPECT_EQ(prepared, "[" + expected(0x32, "B") + "," + expected(0x21, "EG") + "]");
    EXPECT_THAT(host.published,
                ElementsAre(folder.Path() / "TempPublish/0", folder.Path() / "TempPublish/1"));
    EXPECT_EQ(ReadFile(Prepared() / (Key(0x21) + ".pdf")), "plan 33.pdf");
    EXPECT_EQ(ToText(driver.Alerts().back().large),
              "Now Archicad is going to publish the some items. It will take several minutes.");
    EXPECT_EQ(CallForText("GetPublishItems", "p1"),
              (Json{{"publishSet", "set"}, {"publishItems", prepared}}.dump()));
    EXPECT_EQ(CallForText("GetPublishItems", "p2"), "[]");

    EXPECT_EQ(Prepare(request), prepared);
    EXPECT_THAT(host.published, SizeIs(2)) << "what was published once is not published again";
    EXPECT_TRUE(fs::is_empty(folder.Path() / "TempPublish"));
    EXPECT_THAT(driver.Dialogs(), IsEmpty());

    // Any name that contains the key is the item's file.
    fs::rename(Prepared() / (Key(0x21) + ".pdf"), Prepared() / (Key(0x21) + " copy.dwg"));
    EXPECT_EQ(Json::parse(Prepare(Request({Item(Key(0x21), "EG")})))[0]["ext"], "dwg");
    EXPECT_THAT(host.published, SizeIs(2));
    EXPECT_EQ(Prepare(Request({})), "[]");
    EXPECT_EQ(CallForText("GetPublishItems", "p1"), R"({"publishSet":"set","publishItems":"[]"})");
}

TEST_F(PublishPreparationTest, WhatCannotBePublishedIsReported) {
    host.publisherFiles[Guid(0x31)] = {};  // published without a file
    std::vector<Json> items(10, Item("no GUID", "Schnitt"));
    for (const UInt32 number : {0x21, 0x21, 0x31, 0x99})
        items.push_back(Item(Key(number), "Plan " + std::to_string(items.size())));
    items.push_back(Item("../up", "Plan up"));

    struct Language {
        const char* code;
        const char* notice;
        const char* heading;
    };
    const Language languages[] = {
        {"GER", "Jetzt wird Archicad einige Artikel veröffentlichen. Es dauert einige Minuten.",
         "Die folgenden Artikel konnten nicht veroeffentlicht werden."},
        {"INT", "Now Archicad is going to publish the some items. It will take several minutes.",
         "The following Items could not be published."}};
    for (const auto& [code, notice, heading] : languages) {
        host.language = code;
        fs::remove_all(Prepared());
        host.published.clear();
        const Json prepared = Json::parse(Prepare(Request(items)));
        ASSERT_EQ(prepared.size(), 1U);
        EXPECT_EQ(prepared[0]["title"], "Plan 10");
        EXPECT_EQ(host.published.at(10).filename(), "10");
        EXPECT_THAT(host.published, SizeIs(15)) << "the same key again is published again";
        EXPECT_EQ(ToText(driver.Alerts().back().large), notice);
        const auto report = driver.Dialogs().back();
        EXPECT_TRUE(report.accepted);
        EXPECT_EQ(report.texts.at(2), heading);
        EXPECT_THAT(report.lists.at(3).header, ElementsAre("Name"));
        std::vector<std::vector<std::string>> titles(10, {"Schnitt"});
        for (const char* title : {"Plan 11", "Plan 12", "Plan 13", "Plan up"})
            titles.push_back({title});
        EXPECT_EQ(report.lists.at(3).rows, titles);
    }
}

TEST_F(PublishPreparationTest, BadRequestsLeaveNoHistory) {
    const Json good = Request({Item(Key(0x21), "EG")});
    auto cases = SpoilEach(good, "", {"guid", "publishItems"});
    for (const auto& ofItem : SpoilEach(good, "/publishItems/0"))
        cases.push_back(ofItem);
    cases.insert(cases.end(),
                 {{"", ""}, {"{", ""}, {"[]", "Bad cast."}, {Request({"text"}).dump(), "Bad cast."}});
    for (const auto& [request, answer] : cases) {
        Prepare(good);
        EXPECT_EQ(CallForText("PreparePublishDocs", request), answer) << request;
        EXPECT_EQ(CallForText("GetPublishItems", "p1"), "[]") << request;
    }
    for (const char* name : {"PreparePublish", "TempPublish"}) {
        fs::remove_all(folder.Path() / name);
        std::ofstream(folder.Path() / name) << "a file in the way";
        EXPECT_EQ(Prepare(good).empty(), name == std::string("PreparePublish")) << "the other one is cleared";
        fs::remove_all(folder.Path() / name);
    }
    EXPECT_THAT(driver.Dialogs(), IsEmpty());
}

TEST_F(PublishPreparationTest, EveryFailingHostCall) {
    const Json request = Request({Item(Key(0x21), "EG"), Item(Key(0x31), "A")});
    const auto before = Faults().CallsMade();
    Prepare(request);
    const auto calls = Faults().CallsMade() - before;
    ASSERT_EQ(calls, 5U);  // language, two folders, two items
    const std::size_t prepared[] = {2, 0, 0, 1, 1};
    for (std::uint64_t nth = 1; nth <= calls; ++nth) {
        fs::remove_all(Prepared());
        Faults().FailCall(nth, APIERR_REFUSEDCMD);
        const std::string answer = Prepare(request);
        EXPECT_EQ(answer.empty() ? 0 : Json::parse(answer).size(), prepared[nth - 1]) << nth;
        EXPECT_EQ(CallForText("GetPublishItems", "p1") == "[]", answer.empty()) << nth;
    }
    EXPECT_THAT(driver.Dialogs(), SizeIs(2));
}

}  // namespace
}  // namespace tests
