#include "Workbench/exchange/PropertyMapping.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

#include "Workbench/exchange/Exchange.hpp"
#include "Workbench/exchange/Readers.hpp"
#include "Workbench/step/StepTexts.hpp"

namespace workbench {
namespace {

using step::FileBytes;
using step::TemporaryFolder;
using testing::ElementsAre;
using testing::UnorderedElementsAreArray;

using Lines = std::vector<std::string>;
using PropertyKind::single, PropertyKind::bounded, PropertyKind::enumerated;

MappedSet Entry(std::string entityType, std::string set, MappedProperty property) {
    return {.entityType = std::move(entityType), .name = std::move(set), .properties = {std::move(property)}};
}

Lines LinesOf(std::string_view text) {
    Lines lines;
    for (size_t end = 0; !text.empty(); text.remove_prefix(std::min(end + 1, text.size()))) {
        end = std::min(text.find('\n'), text.size());
        if (end > 0) lines.emplace_back(text.substr(0, end));
    }
    return lines;
}

/// What a mapped save adds to a document and leaves out of it; new GlobalIds are checked and written "new".
struct Difference {
    Lines gone, come;
};

Difference Saved(const std::string& bytes, const std::vector<MappedSet>& mapping) {
    const TemporaryFolder folder;
    const auto project = OpenIfc(step::WriteFile(folder / "a.ifc", bytes)).project;
    EXPECT_EQ(SaveIfc(*project, folder / "b.ifc", {}, mapping).outcome, SaveOutcome::done);
    const Lines before = LinesOf(bytes), after = LinesOf(FileBytes(folder / "b.ifc"));
    Difference difference;
    std::ranges::copy_if(before, std::back_inserter(difference.gone),
                         [&](const auto& line) { return std::ranges::find(after, line) == after.end(); });
    std::set<std::string> ids;
    for (const std::string& line : after) {
        if (std::ranges::find(before, line) != before.end()) continue;
        std::smatch id;
        const std::regex globalId("'[0-3][0-9A-Za-z_$]{21}'");
        if (std::regex_search(line, id, globalId) && bytes.find(id.str()) == std::string::npos) {
            EXPECT_TRUE(ids.insert(id.str()).second) << line;
            difference.come.push_back(std::regex_replace(line, globalId, "new"));
        } else {
            difference.come.push_back(line);
        }
    }
    return difference;
}

TEST(PropertyMapping, WritesEachKindInTheTypeAskedForOrNothing) {
    const std::string list = "LISTVALUE('P',$,(IFCREAL(3.),IFCREAL(-1.5)),#7)";
    const std::string bounds = "BOUNDEDVALUE('P',$,IFCREAL(4.),IFCREAL(1.),$,IFCREAL(2.))";
    const std::string choice = "ENUMERATEDVALUE('P','why',(IFCLABEL('a'),IFCLABEL('b')),#8)";
    const std::string table = "TABLEVALUE('P',$,(IFCLABEL('x')),(IFCLABEL('5')),'y',#9,$,.LINEAR.)";
    const auto one = [](const std::string& value) { return "SINGLEVALUE('P',$," + value + ",#7)"; };
    struct Case {
        std::string source;
        PropertyKind kind;
        std::string type, expected;
        std::string schema = "IFC4X3_ADD2";
    };
    const Case cases[] = {
        // types
        {one("IFCLABEL('\\X2\\00C4\\X0\\')"), single, "ifctext",
         "SINGLEVALUE('N''s',$,IFCTEXT('\\X2\\00C4\\X0\\'),$)"},
        {one("IFCREAL(0.24)"), single, "", "SINGLEVALUE('N''s',$,IFCREAL(0.24),#7)"},
        {one("IFCREAL(0.24)"), single, "IfcLabel", "SINGLEVALUE('N''s',$,IFCLABEL('0.24'),$)"},
        {one("IFCINTEGER(7)"), single, "IfcLengthMeasure", "SINGLEVALUE('N''s',$,IFCLENGTHMEASURE(7.),#7)"},
        {one("IFCLABEL(' 2e3 ')"), single, "IfcInteger", "SINGLEVALUE('N''s',$,IFCINTEGER(2000),#7)"},
        {one("IFCREAL(1.5)"), single, "IfcInteger", ""},
        {one("IFCLABEL('24 cm')"), single, "IfcReal", ""},
        {one("IFCREAL(-1.)"), single, "IfcPositiveLengthMeasure", ""},
        {one("IFCREAL(1.2)"), single, "IfcNormalisedRatioMeasure", ""},
        {one("IFCLABEL('Ja')"), single, "IfcBoolean", "SINGLEVALUE('N''s',$,IFCBOOLEAN(.T.),$)"},
        {one("IFCLOGICAL(.U.)"), single, "IfcBoolean", ""},
        {one("IFCLOGICAL(.U.)"), single, "IfcIdentifier", "SINGLEVALUE('N''s',$,IFCIDENTIFIER('Unknown'),$)"},
        {one("IFCTEXT('" + std::string(256, 'x') + "')"), single, "IfcLabel", ""},
        {one("IFCREAL(1.)"), single, "IfcLenghtMeasure", ""},
        {one("IFCREAL(1.)"), single, "IfcArea ContextDependentMeasure", "", "IFC4X2"},
        {one("IFCLABEL('v')"), single, "IfcLabel IfcText", ""},
        {one("IFCTEXT('2025-06-01')"), single, "IfcDate", "SINGLEVALUE('N''s',$,IFCDATE('2025-06-01'),$)"},
        {one("IFCTEXT('2025-06-01')"), single, "IfcDate", "", "IFC2X3"},
        {one("IFCTEXT('soon')"), single, "IfcDate", ""},
        // kinds
        {list, single, "IfcReal", ""},
        {list, PropertyKind::list, "IfcLabel", "LISTVALUE('N''s',$,(IFCLABEL('3'),IFCLABEL('-1.5')),$)"},
        {list, bounded, "IfcReal", "BOUNDEDVALUE('N''s',$,IFCREAL(3.),IFCREAL(-1.5),#7,$)"},
        {list, PropertyKind::table, "",
         "TABLEVALUE('N''s',$,(IFCINTEGER(1),IFCINTEGER(2)),(IFCREAL(3.),IFCREAL(-1.5)),$,$,#7,$)"},
        {one("IFCREAL(2.)"), bounded, "", "BOUNDEDVALUE('N''s',$,IFCREAL(2.),IFCREAL(2.),#7)", "IFC2X3"},
        {one("IFCLABEL('a')"), bounded, "IfcLabel", ""},
        {one("IFCLABEL('a')"), PropertyKind::list, "IfcLabel", "LISTVALUE('N''s',$,(IFCLABEL('a')),$)"},
        {bounds, bounded, "IfcRatioMeasure",
         "BOUNDEDVALUE('N''s',$,IFCRATIOMEASURE(4.),IFCRATIOMEASURE(1.),$,IFCRATIOMEASURE(2.))"},
        {bounds, single, "IfcInteger", "SINGLEVALUE('N''s',$,IFCINTEGER(2),$)"},
        {bounds, PropertyKind::table, "", ""},
        {choice, enumerated, "IfcLabel", "ENUMERATEDVALUE('N''s','why',(IFCLABEL('a'),IFCLABEL('b')),#8)"},
        {choice, enumerated, "IfcText", "ENUMERATEDVALUE('N''s','why',(IFCTEXT('a'),IFCTEXT('b')),$)"},
        {table, PropertyKind::table, "IfcReal",
         "TABLEVALUE('N''s',$,(IFCLABEL('x')),(IFCREAL(5.)),'y',#9,$,.LINEAR.)"},
        {table, PropertyKind::list, "", ""},
    };
    for (const Case& one : cases) {
        const auto document = step::Document::FromBytes(
            step::StepFile("#1=IFCSLAB('s',$,$,$,$,$,$,$,$);\n#2=IFCPROPERTY" + one.source +
                               ";\n#3=IFCPROPERTYSET('h',$,'H',$,(#2));\n"
                               "#4=IFCRELDEFINESBYPROPERTIES('r',$,$,$,(#1),#3);\n",
                           one.schema));
        const MappedSet entry = Entry(" IfcBuildingElement ", "S", {"H", "P", "N's", one.kind, one.type});
        const auto mapped = MapProperties(*document, std::span(&entry, 1));
        const Lines lines = LinesOf(mapped->changes.added);
        EXPECT_EQ(lines.empty() ? "" : lines.front(),
                  one.expected.empty() ? "" : "#5=IFCPROPERTY" + one.expected + ";");
        EXPECT_EQ(mapped->counts.written + mapped->counts.leftOut, 1u);
        EXPECT_EQ(mapped->counts.leftOut, one.expected.empty() ? 1u : 0u) << one.source;
    }
}

/// Three walls and a door share the set S; H belongs to the first and to the type of the first two.
const std::string shared = step::StepFile(
    "#1=IFCWALL('0000000000000000000001',#9,$,$,$,$,$,$,$);\n#2=IFCWALLSTANDARDCASE('0000000000000000000002',#9,$,$,$,$,$,$,$);\n"
    "#3=IFCWALL('0000000000000000000003',#9,$,$,$,$,$,$,$);\n#4=IFCDOOR('0000000000000000000004',#9,$,$,$,$,$,$,$,$,$,$,$);\n"
    "#5=IFCWALLTYPE('0000000000000000000005',#9,$,$,$,(#21),$,$,$,.SOLID.);\n"
    "#10=IFCPROPERTYSINGLEVALUE('A',$,IFCLABEL('own'),$);\n#11=IFCPROPERTYSINGLEVALUE('A',$,IFCLABEL('type'),$);\n"
    "#12=IFCPROPERTYSINGLEVALUE('B',$,IFCREAL(2.),$);\n#20=IFCPROPERTYSET('0000000000000000000006',#9,'H',$,(#10));\n"
    "#21=IFCPROPERTYSET('0000000000000000000007',#9,'H',$,(#11));\n#22=IFCPROPERTYSET('0000000000000000000008',#9,'S',$,(#12));\n"
    "#30=IFCRELDEFINESBYPROPERTIES('0000000000000000000009',#9,$,$,(#1),#20);\n"
    "#31=IFCRELDEFINESBYPROPERTIES('000000000000000000000A',#9,$,$,(#1,#2,#3,#4),#22);\n"
    "#32=IFCRELDEFINESBYTYPE('000000000000000000000B',#9,$,$,(#1,#2),#5);\n");

TEST(PropertyMapping, GivesSetsToThoseThatAreMeantAndToNoOther) {
    const std::string own = "IFCPROPERTYSINGLEVALUE('A',$,IFCTEXT('own'),$);";
    const std::string type = "IFCPROPERTYSINGLEVALUE('A',$,IFCTEXT('type'),$);";
    const std::string set22 = "#22=IFCPROPERTYSET('0000000000000000000008',#9,'S',$,";
    const std::string rel31 = "#31=IFCRELDEFINESBYPROPERTIES('000000000000000000000A',#9,$,$,";
    struct Case {
        const char* what;
        std::vector<MappedSet> mapping;
        Difference expected;
        std::string more = {};  // records
    };
    const std::string rel36 = "#36=IFCRELOVERRIDESPROPERTIES('000000000000000000000E',#9,$,$,";
    const Case cases[] = {
        {"unknown class, other letter case, type of elements, no names: nothing",
         {Entry("IfcHouse", "S", {"S", "B", "C", single, ""}),
          Entry("IfcWall", "S", {"s", "B", "C", single, ""}),
          Entry("IfcWallType", "S", {"S", "B", "C", single, ""}),
          Entry("IfcWall", "", {"S", "B", "C", single, ""}),
          Entry("IfcWall", "S", {"S", "B", "", single, ""}),
          Entry("IfcWall", "S", {"S", "B", "B", single, "IfcReal"})},
         {}},
        {"two walls get copies of a set that a third keeps with the door",
         {Entry("IFCWALL", "S", {"H", "A", "A", single, "IfcText"})},
         {{rel31 + "(#1,#2,#3,#4),#22);"},
          {rel31 + "(#3,#4),#22);", "#33=" + own, "#34=" + type,
           "#35=IFCPROPERTYSET(new,#9,'S',$,(#12,#33));",
           "#36=IFCRELDEFINESBYPROPERTIES(new,#9,$,$,(#1),#35);",
           "#37=IFCPROPERTYSET(new,#9,'S',$,(#12,#34));",
           "#38=IFCRELDEFINESBYPROPERTIES(new,#9,$,$,(#2),#37);"}}},
        {"a set of no others gains the property in place, and one of that name is replaced",
         {Entry("ifcbuiltelement", "S", {"S", "B", "B", single, "IfcInteger"})},
         {{set22 + "(#12));"}, {set22 + "(#33));", "#33=IFCPROPERTYSINGLEVALUE('B',$,IFCINTEGER(2),$);"}}},
        {"of several groups the first keeps the set",
         {Entry("IfcWall", "S", {"S", "B", "C", single, ""}),
          Entry("IfcDoor", "S", {"S", "B", "D", single, ""})},
         {{set22 + "(#12));", rel31 + "(#1,#2,#3,#4),#22);"},
          {set22 + "(#12,#33));", rel31 + "(#1,#2,#3),#22);",
           "#33=IFCPROPERTYSINGLEVALUE('C',$,IFCREAL(2.),$);",
           "#34=IFCPROPERTYSINGLEVALUE('D',$,IFCREAL(2.),$);", "#35=IFCPROPERTYSET(new,#9,'S',$,(#12,#34));",
           "#36=IFCRELDEFINESBYPROPERTIES(new,#9,$,$,(#4),#35);"}}},
        {"who has the same value shares a new set, and of entries for one name the first with a value counts",
         {Entry("IfcWallStandardCase", "N", {"H", "A", "A", single, "IfcText"}),
          Entry("IfcElement", "N", {"S", "B", "A", single, ""})},
         {{},
          {"#33=IFCPROPERTYSINGLEVALUE('A',$,IFCREAL(2.),$);", "#34=" + type,
           "#35=IFCPROPERTYSET(new,#9,'N',$,(#33));",
           "#36=IFCRELDEFINESBYPROPERTIES(new,#9,$,$,(#1,#3,#4),#35);",
           "#37=IFCPROPERTYSET(new,#9,'N',$,(#34));",
           "#38=IFCRELDEFINESBYPROPERTIES(new,#9,$,$,(#2),#37);"}}},
        {"a set of the type stays as it is",
         {Entry("IfcWall", "H", {"S", "B", "B", single, ""})},
         {{"#20=IFCPROPERTYSET('0000000000000000000006',#9,'H',$,(#10));"},
          {"#20=IFCPROPERTYSET('0000000000000000000006',#9,'H',$,(#10,#33));",
           "#33=IFCPROPERTYSINGLEVALUE('B',$,IFCREAL(2.),$);", "#34=IFCPROPERTYSET(new,#9,'H',$,(#33));",
           "#35=IFCRELDEFINESBYPROPERTIES(new,#9,$,$,(#2,#3),#34);"}}},
        {"and so does one of a type without a class",
         {Entry("IfcElement", "S", {"S", "B", "C", single, ""})},
         {{rel31 + "(#1,#2,#3,#4),#22);"},
          {"#34=IFCPROPERTYSINGLEVALUE('C',$,IFCREAL(2.),$);", "#35=IFCPROPERTYSET(new,#9,'S',$,(#12,#34));",
           "#36=IFCRELDEFINESBYPROPERTIES(new,#9,$,$,(#1,#2,#3,#4),#35);"}},
         "#33=IFCTYPEPRODUCT('000000000000000000000C',#9,$,$,$,(#22),$,$);\n"},
        {"of two sets of that name the one with the property gets it, and the first gets what none has",
         {Entry("IfcDoor", "S", {"S", "B", "C", single, "IfcInteger"}),
          Entry("IfcDoor", "S", {"S", "B", "D", single, ""})},
         {{"#33=IFCPROPERTYSET('000000000000000000000C',#9,'S',$,(#34));", rel31 + "(#1,#2,#3,#4),#22);"},
          {"#33=IFCPROPERTYSET('000000000000000000000C',#9,'S',$,(#36));", rel31 + "(#1,#2,#3),#22);",
           "#36=IFCPROPERTYSINGLEVALUE('C','why',IFCINTEGER(2),$);",
           "#37=IFCPROPERTYSINGLEVALUE('D',$,IFCREAL(2.),$);", "#38=IFCPROPERTYSET(new,#9,'S',$,(#12,#37));",
           "#39=IFCRELDEFINESBYPROPERTIES(new,#9,$,$,(#4),#38);"}},
         "#33=IFCPROPERTYSET('000000000000000000000C',#9,'S',$,(#34));\n#34=IFCPROPERTYSINGLEVALUE('C','why',$,$);\n"
         "#35=IFCRELDEFINESBYPROPERTIES('000000000000000000000D',#9,$,$,(#4),#33);\n"},
        {"who overrides a set gets a copy with what it overrides, others keep overriding",
         {Entry("IfcSlab", "S", {"S", "B", "B", single, "IfcInteger"}),
          Entry("IfcRoof", "S", {"S", "B", "C", single, ""})},
         {{rel36 + "(#33,#34,#4),#22,(#35));"},
          {rel36 + "(#4),#22,(#35));", "#37=IFCPROPERTYSINGLEVALUE('B',$,IFCINTEGER(3),$);",
           "#38=IFCPROPERTYSINGLEVALUE('C',$,IFCREAL(3.),$);", "#39=IFCPROPERTYSET(new,#9,'S',$,(#37));",
           "#40=IFCRELDEFINESBYPROPERTIES(new,#9,$,$,(#33),#39);",
           "#41=IFCPROPERTYSET(new,#9,'S',$,(#35,#38));",
           "#42=IFCRELDEFINESBYPROPERTIES(new,#9,$,$,(#34),#41);"}},
         "#33=IFCSLAB('000000000000000000000C',#9,$,$,$,$,$,$,$);\n#34=IFCROOF('000000000000000000000D',#9,$,$,$,$,$,$,$);\n"
         "#35=IFCPROPERTYSINGLEVALUE('B',$,IFCREAL(3.),$);\n" +
             rel36 + "(#33,#34,#4),#22,(#35));\n"},
    };
    for (const Case& one : cases) {
        std::string bytes = shared;
        bytes.insert(bytes.rfind("ENDSEC"), one.more);
        const Difference difference = Saved(bytes, one.mapping);
        EXPECT_THAT(difference.gone, UnorderedElementsAreArray(one.expected.gone)) << one.what;
        EXPECT_THAT(difference.come, UnorderedElementsAreArray(one.expected.come)) << one.what;
    }
}

TEST(PropertyMapping, TakesASetFromARelationshipThatGivesSeveral) {
    std::string bytes = shared;
    bytes.replace(bytes.find(",#22);"), 4, ",IFCPROPERTYSETDEFINITIONSET((#20,#22))");
    const std::string rel31 = "#31=IFCRELDEFINESBYPROPERTIES('000000000000000000000A',#9,$,$,(#1,#2,#3,#4),";
    EXPECT_THAT(Saved(bytes, {Entry("IfcDoor", "S", {"S", "B", "C", single, ""})}).come,
                ElementsAre(rel31 + "IFCPROPERTYSETDEFINITIONSET((#20)));",
                            "#33=IFCPROPERTYSINGLEVALUE('C',$,IFCREAL(2.),$);",
                            "#34=IFCRELDEFINESBYPROPERTIES(new,#9,$,$,(#1,#2,#3),#22);",
                            "#35=IFCPROPERTYSET(new,#9,'S',$,(#12,#33));",
                            "#36=IFCRELDEFINESBYPROPERTIES(new,#9,$,$,(#4),#35);"));
}

TEST(PropertyMapping, AnotherReaderFindsTheSetsInWholeFilesAndSubsets) {
    const TemporaryFolder folder;
    const auto project = OpenIfc(std::filesystem::path(KESTRANE_SAMPLES) / "Gartenpavillon.ifc").project;
    const std::vector<MappedSet> mapping = {
        Entry("IfcWall", "Pset_WallCommon", {"Pset_WallCommon", "Reference", "Code", enumerated, "IfcLabel"}),
        Entry("IfcElement", "Facts", {"Pset_ColumnCommon", "Holzart", "Timber", single, "IfcLabel"}),
        Entry("IfcElement", "Facts", {"Pflegeplan", "Wuchshöhe", "Height", bounded, "IfcLengthMeasure"})};
    EXPECT_EQ(SaveIfc(*project, folder / "whole.ifc", {}, mapping).mapped.written, 4 + 6 + 1u);
    const Lines facts = PropertiesByWebIfc(folder / "whole.ifc", "Facts");
    EXPECT_THAT(facts, testing::Contains("Apfelbäumchen|Height|IfcPropertyBoundedValue|2.5;3;4.5"));
    EXPECT_THAT(facts, testing::Contains("Stütze|Timber|IfcPropertySingleValue|Lärche, geölt"))
        << "of a type";
    EXPECT_EQ(PropertiesByWebIfc(folder / "whole.ifc", "Pset_WallCommon").size(), 4 * 5u) << "none doubled";
    EXPECT_EQ(MeshedByWebIfc(folder / "whole.ifc"), MeshedByWebIfc(project->Location()));

    std::vector<API_Guid> chosen;
    for (const Element& element : project->Elements()) {
        if (element.name == "Apfelbäumchen" || element.name == "Außenwand Süd")
            chosen.push_back(element.guid);
    }
    EXPECT_EQ(SaveIfcSubset(*project, chosen, folder / "part.ifc", {}, mapping).mapped.written, 2u);
    EXPECT_EQ(PropertiesByWebIfc(folder / "part.ifc", "Pset_WallCommon").size(), 5u);
}

TEST(PropertyMapping, ChangesNothingWithoutEntriesThatApplyAndIsTheSameEachTime) {
    const TemporaryFolder folder;
    const auto project = OpenIfc(step::WriteFile(folder / "a.ifc", shared)).project;
    const MappedSet none = Entry("IfcPile", "S", {"S", "B", "N", single, ""});
    const MappedSet fresh = Entry("IfcWall", "N", {"S", "B", "N", single, ""});
    SaveIfc(*project, folder / "b.ifc", {}, std::span(&none, 1));
    EXPECT_EQ(FileBytes(folder / "b.ifc"), shared);
    SaveIfc(*project, folder / "c.ifc", {}, std::span(&fresh, 1));
    SaveIfc(*project, folder / "d.ifc", {}, std::span(&fresh, 1));
    EXPECT_EQ(FileBytes(folder / "c.ifc"), FileBytes(folder / "d.ifc")) << "the same GlobalIds";
}

TEST(PropertyMapping, AsksAlsoAmongTheEntriesOfAnElementWhetherToGoOn) {
    const TemporaryFolder folder;
    const auto project = OpenIfc(step::WriteFile(folder / "a.ifc", shared)).project;
    MappedSet many = Entry("IfcWall", "S", {"No", "P", "N", single, ""});
    many.properties.resize(50'000, many.properties.front());
    int calls = 0;
    const auto stopLate = [&](double) { return ++calls < 15; };
    EXPECT_EQ(SaveIfc(*project, folder / "b.ifc", stopLate, std::span(&many, 1)).outcome,
              SaveOutcome::stopped);
    EXPECT_FALSE(std::filesystem::exists(folder / "b.ifc"));
}

}  // namespace
}  // namespace workbench
