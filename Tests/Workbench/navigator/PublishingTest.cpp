// Publisher sets, from the model or from a file beside it, and the files that are published from them.

#include <gmock/gmock.h>

#include <sys/resource.h>
#include <QImage>
#include <csignal>
#include <regex>

#include "ACAPinc.h"
#include "HostKit/InputOutput/Location.hpp"
#include "Workbench/HeadlessApplication.hpp"
#include "Workbench/desktop/OffscreenApplication.hpp"
#include "Workbench/navigator/PlanPage.hpp"
#include "Workbench/navigator/Publishing.hpp"

namespace workbench {
namespace {

namespace fs = std::filesystem;
using step::FileBytes;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// Names, children in brackets.
std::string Tree(const std::vector<PublisherItem>& items) {
    std::string tree;
    for (const PublisherItem& item : items) {
        if (!tree.empty()) tree += ", ";
        tree += item.name;
        if (item.kind == PublisherItem::Kind::folder) tree += "[" + Tree(item.children) + "]";
    }
    return tree;
}

std::vector<std::string> Trees(const PublisherSets& sets) {
    std::vector<std::string> trees;
    for (const PublisherSet& set : sets.All())
        trees.push_back(set.name + ": " + Tree(set.items));
    return trees;
}

class PublishingTest : public HeadlessApplicationTest {
  protected:
    void WriteSets(const std::string& json) { step::WriteFile(folder / "House.publisher.json", json); }
    // A copy of the sample, beside which a test may write its sets.
    void OpenHouse() {
        fs::copy_file(fs::path(KESTRANE_SAMPLES) / "Gartenpavillon.ifc", folder / "House.ifc",
                      fs::copy_options::overwrite_existing);
        ASSERT_TRUE(application->Open(folder / "House.ifc"));
        ASSERT_TRUE(queue.RunUntil([this] { return !application->IsShaping(); }, std::chrono::minutes(1)));
    }
    const PublisherSet& Set(std::size_t at) const { return application->Publisher().All().at(at); }

    // As the add-on does; no items: all of the set.
    GSErrCode Publish(const API_Guid& set, std::optional<GS::Array<API_Guid>> items = {}) const {
        IO::Location out = hostkit::ToLocation(folder / "out");
        API_PublishPars pars = {};
        pars.guid = set;
        pars.path = &out;
        return ACAPI_Automate(APIDo_PublishID, &pars, items ? &*items : nullptr);
    }
    // Below the folder that is published into.
    std::vector<std::string> Files() const {
        std::vector<std::string> files;
        for (const auto& entry : fs::recursive_directory_iterator(folder / "out"))
            if (!entry.is_directory()) files.push_back(fs::relative(entry.path(), folder / "out").string());
        std::ranges::sort(files);
        return files;
    }

    OffscreenApplication qt;  // fonts
};

TEST_F(PublishingTest, WithoutAFileTheSetsAreMadeOfTheStoreys) {
    EXPECT_THAT(Trees(application->Publisher()), IsEmpty()) << "nothing is open";
    OpenHouse();
    const std::string upper = "Dachterrasse (Obergeschoß)";
    EXPECT_THAT(Trees(application->Publisher()),
                ElementsAre("Floor Plans: Erdgeschoss (PDF), Erdgeschoss (DWG), " + upper + " (PDF), " +
                                upper + " (DWG)",
                            "3D Views: Whole Model, Erdgeschoss, " + upper, "Model: House"));

    const auto document = step::Document::FromBytes(
        step::StepFile("#1=IFCBUILDING('1',$,'West',$,$,$,$,$,.ELEMENT.,$,$,$);\n"
                       "#2=IFCBUILDING('2',$,'\\X2\\00D6\\X0\\st/lich',$,$,$,$,$,.ELEMENT.,$,$,$);\n"
                       "#3=IFCBUILDINGSTOREY('3',$,'EG',$,$,$,$,$,.ELEMENT.,0.);\n"
                       "#4=IFCBUILDINGSTOREY('4',$,'EG',$,$,$,$,$,.ELEMENT.,1.);\n"
                       "#5=IFCRELAGGREGATES('5',$,$,$,#1,(#3));\n#6=IFCRELAGGREGATES('6',$,$,$,#2,(#4));\n"));
    const PublisherSets sets(Project(document, folder / "Two.ifc"), Say{Language::german});
    EXPECT_THAT(Trees(sets),
                ElementsAre("Grundrisse: West[EG (PDF), EG (DWG)], Öst/lich[EG (PDF), EG (DWG)]",
                            "3D-Ansichten: Gesamtmodell, West[EG], Öst/lich[EG]", "Modell: Two"));

    const auto guid = [&](const char* globalId, const char* place) {
        const std::string context = std::string("#1=IFCPROJECT('") + globalId + "',$,'',$,$,$,$,$,$);\n";
        const Project project(step::Document::FromBytes(step::StepFile(context)),
                              folder / place / "House.ifc");
        return PublisherSets(project, Say{}).All()[0].items[0].guid;
    };
    EXPECT_EQ(guid("one", "here"), guid("one", "there")) << "a copy";
    EXPECT_NE(guid("one", "here"), guid("other", "here")) << "another project of this name";
    EXPECT_NE(guid("", "here"), guid("", "there")) << "who knows";
}

TEST_F(PublishingTest, AFileBesideTheModelSaysWhatThereIs) {
    WriteSets(R"({"sets": [{"name": "Ausführung", "items": [
        {"name": "A", "items": [{"name": "x", "show": "plan", "storey": "Erdgeschoss", "scale": 50},
                                {"name": "x", "show": "plan", "storey": 1, "format": "jpg"}, {"name": "leer", "items": []}]},
        {"name": "Hof", "show": "3d", "camera": [9, -4, 2], "target": [0, 0, 1]},
        {"name": "svg", "show": "plan", "storey": 0, "format": "svg"},
        {"name": "Keller", "show": "plan", "storey": "Keller"}]}, {"name": "Leer", "items": []}]})");
    OpenHouse();
    EXPECT_THAT(driver.Alerts(), IsEmpty());
    EXPECT_THAT(Trees(application->Publisher()),
                ElementsAre("Ausführung: A[x, x, leer[]], Hof, svg, Keller", "Leer: "));
    const auto& items = Set(0).items;
    EXPECT_EQ(items[0].children[0].scale, 50);
    EXPECT_EQ(items[0].children[1].format, PublishFormat::jpeg);
    EXPECT_EQ(items[0].children[1].storey, 1U);
    EXPECT_EQ(items[1].camera->position, (Vec3{9, -4, 2}));
    EXPECT_EQ(items[1].format, PublishFormat::png);
    EXPECT_THAT(items[2].problem, HasSubstr("svg"));
    EXPECT_THAT(items[3].problem, HasSubstr("Keller"));

    const API_Guid first = items[0].children[0].guid, second = items[0].children[1].guid;
    EXPECT_NE(first, second) << "in spite of their names";
    OpenHouse();
    EXPECT_EQ(Set(0).items[0].children[0].guid, first);
    EXPECT_EQ(Set(0).items[0].children[1].guid, second);

    PublisherSets sets(application->OpenProject(), Say{});
    WriteSets("broken meanwhile");
    const std::string cellar = "#1=IFCBUILDINGSTOREY('1',$,'Keller',$,$,$,$,$,.ELEMENT.,0.);\n";
    sets.Follow(Project(step::Document::FromBytes(step::StepFile(cellar)), folder / "House.ifc"), Say{});
    const auto& followed = sets.All()[0].items;
    EXPECT_THAT(followed[0].children[0].problem, HasSubstr("Erdgeschoss"));
    EXPECT_THAT(followed[2].problem, HasSubstr("svg"));
    EXPECT_THAT(followed[3].problem, IsEmpty());
}

TEST_F(PublishingTest, ABrokenFileIsToldOnce) {
    const std::pair<const char*, const char*> cases[] = {
        {"{\"sets\": [\n  oops]}", "Line 2, column 3"},
        {"", "Line 1, column 1"},
        {R"({"sets": 1e999})", "too large"},
        {nullptr, "cannot be read"},
        {"[]", R"("sets")"},
        {R"({"sets": [{"name": 1}]})", R"(sets[0]: "name")"},
        {R"({"sets": [{"name": "a", "items": [{"name": "b"}]}]})", R"(sets[0].items[0]: "items")"},
        {R"({"sets": [{"name": "a", "items": [{"name": "b", "show": "film"}]}]})", R"("show")"},
        {R"({"sets": [{"name": "a", "items": [{"name": "b", "show": "plan"}]}]})", R"("storey")"},
        {R"({"sets": [{"name": "a", "items": [{"name": "b", "show": "plan", "storey": 0, "scale": 0}]}]})",
         R"("scale")"},
        {R"({"sets": [{"name": "a", "items": [{"name": "b", "show": "3d", "camera": [1, 2]}]}]})",
         R"("camera")"},
    };
    std::size_t told = 0;
    for (const auto& [json, where] : cases) {
        const fs::path file = folder / "House.publisher.json";
        fs::remove(file);
        json != nullptr ? WriteSets(json) : void(fs::create_directory(file));
        OpenHouse();
        ASSERT_THAT(driver.Alerts(), SizeIs(++told)) << where;
        const std::string text = driver.Alerts().back().small.ToCStr(0, MaxUSize, CC_UTF8).Get();
        EXPECT_THAT(text, testing::AllOf(HasSubstr("House.publisher.json"), HasSubstr(where)));
        EXPECT_THAT(application->Publisher().All(), SizeIs(3)) << "the usual sets";
    }
}

TEST_F(PublishingTest, TheNavigatorAnswersTheAddOn) {
    const std::string name = "1.4 €/m² ", longName(300, 'n');
    WriteSets(R"({"sets": [{"name": ")" + std::string(126, 'n') + R"(äöü", "items": [{"name": ")" + name +
              R"(", "show": "model"}, {"name": ")" + longName +
              R"(", "items": [{"name": "in", "items": []}]}]}]})");
    OpenHouse();
    Int32 count = 0, index = 0;
    ASSERT_EQ(ACAPI_Navigator(APINavigator_GetNavigatorSetNumID, &count), NoError);
    EXPECT_EQ(count, 1);
    API_NavigatorSet set = {};
    set.mapId = API_PublisherSets;
    ASSERT_EQ(ACAPI_Navigator(APINavigator_GetNavigatorSetID, &set, &index), NoError);
    EXPECT_EQ(set.name, std::string(126, 'n')) << "no half characters";
    EXPECT_EQ(ACAPI_Navigator(APINavigator_GetNavigatorSetID, &set, &count), APIERR_BADINDEX);

    const auto children = [](const API_Guid& parent, GSErrCode expected = NoError) {
        API_NavigatorItem item = {};
        item.guid = parent;
        item.mapId = API_PublisherSets;
        GS::Array<API_NavigatorItem> found;
        EXPECT_EQ(ACAPI_Navigator(APINavigator_GetNavigatorChildrenItemsID, &item, nullptr, &found),
                  expected);
        return found;
    };
    const auto items = children(set.rootGuid);
    ASSERT_EQ(items.GetSize(), 2U);
    EXPECT_STREQ(GS::UniString(items[0].uName).ToCStr(0, MaxUSize, CC_UTF8).Get(), name.c_str());
    EXPECT_EQ(items[0].itemType, API_ProjectNavItem);
    EXPECT_EQ(GS::UniString(items[1].uName).GetLength(), 255U);
    EXPECT_TRUE(children(items[0].guid).IsEmpty());
    EXPECT_EQ(children(items[1].guid).GetSize(), 1U);
    EXPECT_TRUE(children(set.guid, APIERR_BADID).IsEmpty()) << "the set is not its root";
}

TEST_F(PublishingTest, EachFormatIsARealFile) {
    WriteSets(R"({"sets": [{"name": "s", "items": [
        {"name": "EG", "show": "plan", "storey": 0, "scale": 50}, {"name": "EG", "show": "plan", "storey": 0, "scale": 50},
        {"name": "EG", "show": "plan", "storey": 0, "scale": 50, "format": "png"}, {"name": "EG", "show": "plan", "storey": 0, "format": "dwg"},
        {"name": "../.3D: ä", "items": [{"name": ".v/1", "show": "3d", "format": "jpeg"}, {"name": "v2", "show": "3d", "storey": 0}]},
        {"name": "M", "show": "model"}]}]})");
    OpenHouse();
    const auto state = [this] { return application->Picture3D(); };
    application->ShowOnly({});
    const QImage before = state();
    ASSERT_EQ(Publish(Set(0).guid), NoError);
    EXPECT_EQ(state(), before) << "the person's window is as it was";
    EXPECT_THAT(Files(), ElementsAre("EG (2).pdf", "EG.dwg", "EG.pdf", "EG.png", "M.ifc",
                                     "_.-.3D- ä/_v-1.jpg", "_.-.3D- ä/v2.png"));

    const fs::path out = folder / "out";
    const std::string pdf = FileBytes(out / "EG.pdf");
    std::smatch box, points, dots;
    ASSERT_TRUE(std::regex_search(pdf, box, std::regex(R"(/MediaBox \[0 0 (\d+)\.0* (\d+)\.0*\])")));
    EXPECT_THAT(pdf, testing::AllOf(testing::StartsWith("%PDF-1"), HasSubstr("/FontFile2"),
                                    testing::EndsWith("%%EOF\n")));
    EXPECT_THAT(pdf, testing::Not(HasSubstr("/Subtype /Image"))) << "lines and texts, no pixels";
    const std::size_t drawing = pdf.find("stream\n") + 7;
    QByteArray packed =
        "    " + QByteArray::fromStdString(pdf.substr(drawing, pdf.find("endstream") - drawing));
    const std::string lines =
        qUncompress(packed.replace(0, 4, QByteArray::fromHex("00100000"))).toStdString();
    ASSERT_TRUE(std::regex_search(lines, points, std::regex(R"((\S+) 0 0 -\1 )")));
    const std::string inside = points.suffix();
    ASSERT_TRUE(std::regex_search(inside, dots, std::regex(R"((\S+) 0 0 -\1 )")));
    EXPECT_NEAR(std::stod(points[1]) * std::stod(dots[1]), 20 * 72 / 25.4, 1e-4) << "points for a metre";
    const QImage png(QString::fromStdString((out / "EG.png").string()));
    EXPECT_EQ(std::lround(png.width() * 72000.0 / 25.4 / png.dotsPerMeterX()), std::stol(box[1]))
        << "one sheet";
    EXPECT_EQ(std::lround(png.height() * 72000.0 / 25.4 / png.dotsPerMeterY()), std::stol(box[2]));
    for (const char* file : {"_.-.3D- ä/_v-1.jpg", "_.-.3D- ä/v2.png"})
        EXPECT_EQ(QImage(QString::fromStdString((out / file).string())).size(), QSize(1920, 1200)) << file;
    EXPECT_EQ(FileBytes(out / "M.ifc"), FileBytes(folder / "House.ifc"));

    const auto written = fs::last_write_time(out / "EG.pdf");
    ASSERT_EQ(Publish(Set(0).guid, GS::Array<API_Guid>{Set(0).items[0].guid}), NoError);
    EXPECT_THAT(Files(), SizeIs(7)) << "published again, it replaces its file";
    EXPECT_GT(fs::last_write_time(out / "EG.pdf"), written);
}

TEST_F(PublishingTest, WhatFailsLeavesNoFile) {
    WriteSets(
        R"({"sets": [{"name": "s", "items": [{"name": "svg", "show": "plan", "storey": 0, "format": "svg"},
        {"name": "huge", "show": "plan", "storey": 0, "scale": 1}, {"name": "v", "show": "3d"}, {"name": "p", "show": "plan", "storey": 0},
        {"name": "m", "show": "model"}]}, {"name": "t", "items": []}]})");
    OpenHouse();
    const auto publish = [&](std::size_t item) {
        return Publish(Set(0).guid, GS::Array<API_Guid>{Set(0).items[item].guid});
    };
    EXPECT_EQ(Publish(Set(0).rootGuid), APIERR_BADID);
    EXPECT_EQ(Publish(Set(1).guid, GS::Array<API_Guid>{Set(0).items[4].guid}), APIERR_BADID)
        << "of another set";
    EXPECT_FALSE(fs::exists(folder / "out"));
    EXPECT_EQ(publish(0), APIERR_GENERAL);
    EXPECT_EQ(publish(1), APIERR_GENERAL);

    rlimit old = {};
    getrlimit(RLIMIT_FSIZE, &old);
    const rlimit full = {100, old.rlim_max};  // as on a full disk
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &full);
    for (const std::size_t item : {2, 3, 4})
        EXPECT_EQ(publish(item), APIERR_GENERAL) << item;
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, handler);
    EXPECT_THAT(Files(), IsEmpty());

    struct Stopper : ApplicationObserver {
        bool Working(const std::string& what, double fraction) override {
            EXPECT_LT(fraction, 1) << "the add-on publishes one by one";
            return what.find("svg") != std::string::npos;
        }
    } stopper;
    application->Watch(stopper);
    EXPECT_EQ(Publish(Set(0).guid), APIERR_CANCEL);
    application->Unwatch(stopper);
    EXPECT_THAT(Files(), IsEmpty());
    EXPECT_EQ(Publish(Set(0).guid), APIERR_GENERAL);
    EXPECT_THAT(Files(), ElementsAre("m.ifc", "p.pdf", "v.png")) << "the others are written";

    ASSERT_TRUE(application->Open(folder / "House.ifc"));
    EXPECT_EQ(publish(3), APIERR_GENERAL) << "its shapes have not come yet";
}

TEST(PlanPageTest, TheSheetHasTheDrawingsSizeAtAUsualScale) {
    const auto pageOf = [](double width, double height, std::optional<double> scale = {}) {
        return PlanPage::For({{PlanElement{}}, {0, 0, width, height}}, scale);
    };
    const std::tuple<double, double, int> cases[] = {{4, 3, 20},    {12, 9, 50},           {60, 40, 100},
                                                     {20, 60, 100}, {200, 120, 200},       {900, 100, 1000},
                                                     {0, 0, 20},    {90000, 40000, 100000}};
    for (const auto& [width, height, scale] : cases)
        EXPECT_EQ(pageOf(width, height)->Scale(), scale) << width << " by " << height;
    EXPECT_NEAR(pageOf(60, 40)->Millimetres().width(), 600 + 2 * 10, 0.4);
    EXPECT_EQ(pageOf(60, 40, 40)->Scale(), 40);
    EXPECT_FALSE(pageOf(60, 40, 2)) << "thirty metres of paper";
    EXPECT_FALSE(PlanPage::For({}));
}

TEST(FileNameTest, IsOneThatFileSystemsTake) {
    const std::pair<std::string, std::string> cases[] = {
        {"EG", "EG"},
        {" a/b\\c:d\n", "a-b-c-d"},
        {"..", "_"},
        {".hidden", "_hidden"},
        {"end. ", "end"},
        {"", "_"},
        {"Über 1:50", "Über 1-50"},
        {std::string(179, 'a') + "🏠", std::string(179, 'a')}};
    for (const auto& [name, safe] : cases)
        EXPECT_EQ(FileNameOf(name), safe) << name;
    std::string houses;
    for (int i = 0; i < 100; ++i)
        houses += "🏠";
    EXPECT_EQ(FileNameOf(houses), houses.substr(0, 180));
}

}  // namespace
}  // namespace workbench
