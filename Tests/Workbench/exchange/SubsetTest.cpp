#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "Workbench/exchange/Exchange.hpp"
#include "Workbench/exchange/Readers.hpp"
#include "Workbench/step/Arguments.hpp"
#include "Workbench/step/StepTexts.hpp"

namespace workbench {
namespace {

using step::TemporaryFolder;

using testing::ElementsAre;

using testing::SizeIs;

using Names = std::set<std::string>;

constexpr const char* house = "/usr/share/assimp/models/IFC/AC14-FZK-Haus.ifc";

/// A subset written and opened again.
class Written {
  public:
    Written(const Project& project, const std::vector<API_Guid>& chosen) : file(folder / "part.ifc") {
        EXPECT_EQ(SaveIfcSubset(project, chosen, file).outcome, SaveOutcome::done);
        opened = OpenIfc(file).project;
        if (!opened) throw std::runtime_error("the subset does not open");
        EXPECT_TRUE(opened->Document().Problems().empty());
        for (const step::Record& record : opened->Document().Records()) {
            const std::string_view text = opened->Document().Text(record);
            for (const uint64_t id : step::References(text))
                EXPECT_NE(opened->Document().Find(id), nullptr) << text;
            if (!opened->Document().TypeName(record).starts_with("IFCREL")) continue;
            for (const size_t side : {4, 5})
                EXPECT_NE(step::Argument(text, side), "()") << text;
        }
    }

    const TemporaryFolder folder;
    const std::filesystem::path file;
    std::shared_ptr<const Project> opened;

    Names ElementNames() const {
        Names names;
        for (const Element& element : opened->Elements())
            names.insert(element.name);
        return names;
    }
    Names GlobalIds() const {
        Names ids;
        for (const Element& element : opened->Elements())
            ids.insert(opened->GlobalIdOf(element));
        return ids;
    }
    std::vector<std::string> Texts(std::string_view type) const {
        std::vector<std::string> texts;
        for (const step::Record* record : opened->Document().RecordsOf({type})) {
            texts.emplace_back(opened->Document().Text(*record));
        }
        return texts;
    }
};

std::shared_ptr<const Project> Pavilion() {
    return OpenIfc(std::filesystem::path(KESTRANE_SAMPLES) / "Gartenpavillon.ifc").project;
}

std::vector<API_Guid> Named(const Project& project, const Names& names) {
    std::vector<API_Guid> guids;
    for (const Element& element : project.Elements()) {
        if (names.contains(element.name)) guids.push_back(element.guid);
    }
    return guids;
}

std::string StoreyName(const Project& project, const std::string& element) {
    for (const Element& one : project.Elements()) {
        if (one.name == element)
            return one.storey < 0 ? "" : project.Storeys()[static_cast<size_t>(one.storey)].name;
    }
    return "none";
}

TEST(Subset, AWallBringsItsOpeningsPropertiesAndMaterialButNoWindow) {
    const auto project = Pavilion();
    const Written part(*project, Named(*project, {"Außenwand Süd"}));
    EXPECT_EQ(part.ElementNames(), Names{"Außenwand Süd"});
    EXPECT_THAT(part.Texts("IFCOPENINGELEMENT"), SizeIs(2));
    EXPECT_THAT(part.Texts("IFCRELVOIDSELEMENT"), SizeIs(2));
    EXPECT_THAT(part.Texts("IFCRELFILLSELEMENT"), SizeIs(0));
    EXPECT_THAT(part.Texts("IFCPROPERTYSET"), SizeIs(1));
    EXPECT_THAT(part.Texts("IFCMATERIAL"), SizeIs(1));
    EXPECT_THAT(part.Texts("IFCMAPCONVERSION"), SizeIs(1));
    EXPECT_THAT(part.Texts("IFCBUILDINGSTOREY"), SizeIs(1));
    EXPECT_THAT(part.Texts("IFCSPACE"), SizeIs(0));
    ASSERT_THAT(part.Texts("IFCSITE"), SizeIs(1));
    EXPECT_EQ(step::Argument(part.Texts("IFCSITE")[0], 6), "$") << "the ground is not chosen";
    EXPECT_EQ(StoreyName(*part.opened, "Außenwand Süd"), "Erdgeschoss");
}

TEST(Subset, AWindowComesWithoutItsWall) {
    const auto project = Pavilion();
    const Written part(*project, Named(*project, {"Fenster Süd"}));
    EXPECT_EQ(part.ElementNames(), Names{"Fenster Süd"});
    EXPECT_THAT(part.Texts("IFCOPENINGELEMENT"), SizeIs(0));
    EXPECT_THAT(part.Texts("IFCRELFILLSELEMENT"), SizeIs(0));
    const Written both(*project, Named(*project, {"Fenster Süd", "Außenwand Süd"}));
    EXPECT_THAT(both.Texts("IFCRELFILLSELEMENT"), SizeIs(1));
}

TEST(Subset, AWholeBringsItsPartsAndAPartComesWithoutItsWhole) {
    const auto project = Pavilion();
    const Written whole(*project, Named(*project, {"Außentreppe"}));
    EXPECT_EQ(whole.ElementNames(), (Names{"Außentreppe", "Treppenlauf", "Geländer der Treppe"}));
    const Written part(*project, Named(*project, {"Treppenlauf"}));
    EXPECT_EQ(part.ElementNames(), Names{"Treppenlauf"});
    EXPECT_EQ(StoreyName(*part.opened, "Treppenlauf"), "Erdgeschoss");
}

TEST(Subset, RelationsAreCutAndTypesAndSpacesFollow) {
    const auto project = Pavilion();
    const Written part(*project, Named(*project, {"Tisch", "Pfosten", "Apfelbäumchen"}));
    EXPECT_EQ(part.opened->Elements().size(), 6u);
    EXPECT_EQ(StoreyName(*part.opened, "Pfosten"), "Dachterrasse (Obergeschoß)");
    ASSERT_THAT(part.Texts("IFCRELDEFINESBYTYPE"), SizeIs(1));
    EXPECT_THAT(step::Arguments(step::Argument(part.Texts("IFCRELDEFINESBYTYPE")[0], 4)), SizeIs(4));
    EXPECT_THAT(part.Texts("IFCCOLUMNTYPE"), SizeIs(1));
    ASSERT_THAT(part.Texts("IFCSPACE"), SizeIs(1));
    EXPECT_EQ(step::Argument(part.Texts("IFCSPACE")[0], 6), "$");
    EXPECT_EQ(StoreyName(*part.opened, "Tisch"), "Erdgeschoss");
}

TEST(Subset, SourcesWithDanglingReferencesBecomeClean) {
    const auto document = step::Document::FromBytes(step::StepFile(
        "#1=IFCPROJECT('p',$,$,$,$,$,$,(#99),#98);\n#2=IFCBUILDINGSTOREY('s',$,$,$,$,#97,$,$,.ELEMENT.,0.);\n"
        "#3=IFCWALL('w',#96,$,$,$,$,#4,$,$);\n#4=IFCPRODUCTDEFINITIONSHAPE($,$,(#95,#5));\n"
        "#5=IFCSHAPEREPRESENTATION($,$,$,());\n#6=IFCRELAGGREGATES('a',$,$,$,#1,(#2,#94));\n"
        "#7=IFCRELCONTAINEDINSPATIALSTRUCTURE('c',$,$,$,(#93,#3),#2);\n"
        "#8=IFCRELDEFINESBYPROPERTIES('d',$,$,$,(#3),#92);\n"));
    const Project project(document, "/models/Dangling.ifc");
    const Written part(project, {project.Elements()[0].guid});
    EXPECT_THAT(part.Texts("IFCPRODUCTDEFINITIONSHAPE"),
                ElementsAre("#4=IFCPRODUCTDEFINITIONSHAPE($,$,(#5));"));
    EXPECT_THAT(part.Texts("IFCRELAGGREGATES"), ElementsAre("#6=IFCRELAGGREGATES('a',$,$,$,#1,(#2));"));
    EXPECT_THAT(part.Texts("IFCRELDEFINESBYPROPERTIES"), SizeIs(0));
    EXPECT_EQ(part.opened->Elements()[0].storey, 0);
}

TEST(Subset, OfNothingOrUnknownGuidsIsAnEmptyModel) {
    const auto project = Pavilion();
    const Written part(*project, {APINULLGuid, APIGuidFromString("C2E63FBC-194A-4895-A7A8-62C9B0D5CC7B")});
    EXPECT_TRUE(part.opened->Elements().empty());
    EXPECT_THAT(part.Texts("IFCPROJECT"), SizeIs(1));
    EXPECT_THAT(part.Texts("IFCUNITASSIGNMENT"), SizeIs(1));
}

TEST(Subset, OtherReadersSeeExactlyTheChosenElements) {
    const auto pavilion = Pavilion();
    const Written part(*pavilion,
                       Named(*pavilion, {"Fenster Süd", "Außenwand Ost", "Walmdach", "Tisch", "Pfosten"}));
    EXPECT_EQ(MeshedByWebIfc(part.file), part.GlobalIds());
    EXPECT_EQ(part.GlobalIds().size(), 8u);

    const auto project = OpenIfc(house).project;
    ASSERT_TRUE(project);
    std::vector<API_Guid> chosen;
    Names expected;
    for (size_t i = 0; i < project->Elements().size(); i += 9) {
        const Element& element = project->Elements()[i];
        if (element.ifcClass == "IfcStair") continue;  // assimp leaves out what is a whole
        chosen.push_back(element.guid);
        expected.insert(project->GlobalIdOf(element));
    }
    const Written some(*project, chosen);
    EXPECT_EQ(some.GlobalIds(), expected);
    EXPECT_EQ(MeshedByWebIfc(some.file), expected);
    EXPECT_EQ(MeshedByAssimp(some.file), expected);
}

}  // namespace
}  // namespace workbench
