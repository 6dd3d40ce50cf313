#include <gtest/gtest.h>

#include <random>

#include "Workbench/exchange/Exchange.hpp"
#include "Workbench/exchange/Subset.hpp"
#include "Workbench/step/Arguments.hpp"
#include "Workbench/step/StepTexts.hpp"

namespace workbench {
namespace {

constexpr int mutants = 400;

/// A small model with one of everything that is read with care.
const std::string seed = step::StepFile(
    "#1=IFCPROJECT('0mVyF7z2L5MQpXqQ0aJ3u1',$,'P\\X\\E4\\S\\'',$,$,$,$,(#2),#3);\n"
    "#2=IFCGEOMETRICREPRESENTATIONCONTEXT($,'Model',3,1.E-5,#4,$);\n#3=IFCUNITASSIGNMENT((#5,#6));\n"
    "#4=IFCAXIS2PLACEMENT3D(#7,$,$);\n#5=IFCCONVERSIONBASEDUNIT(#8,.LENGTHUNIT.,'FOOT',#9);\n"
    "#6=(CONVERSION_BASED_UNIT('x',#9)NAMED_UNIT(#8));\n#7=IFCCARTESIANPOINT((0.,0.,-1.#IND));\n"
    "#8=IFCDIMENSIONALEXPONENTS(1,0,0,0,0,0,0);\n#9=IFCMEASUREWITHUNIT(IFCLENGTHMEASURE(0.3048),#10);\n"
    "#10=IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.);\n/* the rest */\n"
    "#20=IFCBUILDINGSTOREY('20mVyF7z2L5MQpXqQ0aJ3u',$,'\\X2\\00DC\\X0\\ber',$,$,$,#30,$,.ELEMENT.,3.);\n"
    "#21=IFCWALL('10mVyF7z2L5MQpXqQ0aJ3u',$,'W',$,$,#25,#30,'it''s',$);\n"
    "#22=IFCOPENINGELEMENT('11mVyF7z2L5MQpXqQ0aJ3u',$,$,$,$,#25,#30,$,$);\n"
    "#23=IFCWINDOW('12mVyF7z2L5MQpXqQ0aJ3u',$,$,$,$,#25,#30,$,$,$,$,$,$);\n"
    "#24=IFCSTAIR('13mVyF7z2L5MQpXqQ0aJ3u',$,$,$,$,#25,$,$,$);\n#25=IFCLOCALPLACEMENT($,#4);\n"
    "#30=IFCPRODUCTDEFINITIONSHAPE($,$,(#31));\n#31=IFCSHAPEREPRESENTATION(#2,'Body','Brep',(#32));\n"
    "#32=IFCBLOCK(#4,1.,1.,1.);\n#33=IFCSTYLEDITEM(#32,(#34),$);\n#34=IFCSURFACESTYLE('\\X4\\0001F3E0\\X0\\',.BOTH.,());\n"
    "#40=IFCRELAGGREGATES('r1',$,$,$,#1,(#20));\n#41=IFCRELCONTAINEDINSPATIALSTRUCTURE('r2',$,$,$,(#21,#24),#20);\n"
    "#42=IFCRELVOIDSELEMENT('r3',$,$,$,#21,#22);\n#43=IFCRELFILLSELEMENT('r4',$,$,$,#22,#23);\n"
    "#44=IFCRELAGGREGATES('r5',$,$,$,#24,(#23));\n#45=IFCPROPERTYSET('p',$,'S',$,(#46));\n"
    "#46=IFCPROPERTYSINGLEVALUE('n',$,IFCLABEL('v'),$);\n#47=IFCRELDEFINESBYPROPERTIES('r6',$,$,$,(#21,#23),#45);\n");

std::string Mutant(std::mt19937& random) {
    constexpr std::string_view odd = "#;'/*()=,$\\SX2\n\r01.E-\xFF";
    std::string bytes = seed;
    const auto below = [&](size_t limit) {
        return std::uniform_int_distribution<size_t>(0, limit - 1)(random);
    };
    for (size_t change = 1 + below(6); change > 0 && bytes.size() > 8; --change) {
        const size_t at = below(bytes.size());
        switch (below(5)) {
            case 0:
                bytes[at] = odd[below(odd.size())];
                break;
            case 1:
                bytes.erase(at, 1 + below(20));
                break;
            case 2:
                bytes.insert(at, 1, odd[below(odd.size())]);
                break;
            case 3:
                bytes.insert(at, bytes.substr(below(bytes.size()), below(60)));
                break;
            default:
                if (below(8) == 0) bytes.resize(at);
        }
    }
    return bytes;
}

TEST(Mutants, AreReadSavedAndCutWithoutFault) {
    const step::TemporaryFolder folder;
    std::mt19937 random(20250601);
    int opened = 0;
    for (int i = 0; i < mutants; ++i) {
        const std::string bytes = Mutant(random);
        const auto file = step::WriteFile(folder / "mutant.ifc", bytes);
        const OpenResult result = OpenIfc(file);
        ASSERT_NE(result.project != nullptr, result.refusal.has_value());
        if (!result.project) {
            EXPECT_FALSE(Describe(*result.refusal, Language::german).empty());
            continue;
        }
        ++opened;
        const step::Document& document = result.project->Document();
        ASSERT_EQ(document.Bytes(), bytes);
        for (const step::Record& record : document.Records()) {
            for (const std::string_view argument : step::Arguments(document.Text(record)))
                step::AsText(argument);
        }
        std::vector<API_Guid> chosen;
        for (const Element& element : result.project->Elements())
            chosen.push_back(element.guid);
        if (!chosen.empty()) chosen.pop_back();
        const MappedSet mapped = {.entityType = "IfcElement",
                                  .name = "S",
                                  .properties = {{"S", "n", "n", PropertyKind::list, "IfcText"}}};
        ASSERT_EQ(
            SaveIfcSubset(*result.project, chosen, folder / "part.ifc", {}, std::span(&mapped, 1)).outcome,
            SaveOutcome::done);
        const OpenResult again = OpenIfc(folder / "part.ifc");
        ASSERT_TRUE(again.project) << bytes;
        EXPECT_GE(again.project->Elements().size(), chosen.size());
        for (const step::Record& record : again.project->Document().Records()) {
            for (const uint64_t id : step::References(again.project->Document().Text(record))) {
                EXPECT_NE(again.project->Document().Find(id), nullptr) << bytes;
            }
        }
    }
    EXPECT_GT(opened, mutants / 4) << "too few mutants get beyond the reader";
}

}  // namespace
}  // namespace workbench
