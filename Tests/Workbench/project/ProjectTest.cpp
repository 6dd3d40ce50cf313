#include "Workbench/project/Project.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Workbench/project/GlobalId.hpp"
#include "Workbench/step/StepTexts.hpp"

namespace workbench {
namespace {

using testing::ElementsAre;

constexpr const char* globalId = "32vZ_y6Kf8bQUeOicmrSnx";

std::shared_ptr<const Project> ProjectOf(const std::string& data, const char* file = "/models/House.ifc") {
    return std::make_shared<Project>(step::Document::FromBytes(step::StepFile(data)), file);
}

/// A wall per line, and the program that made it.
std::string Walls(std::initializer_list<std::string> globalIds, const std::string& application) {
    std::string data =
        "#1=IFCORGANIZATION($,'x',$,$,$);\n#2=IFCAPPLICATION(#1,'1','" + application + "','x');\n";
    int id = 10;
    for (const std::string& one : globalIds) {
        data += "#" + std::to_string(id++) + "=IFCWALL('" + one + "',$,'W',$,$,$,$,$,$);\n";
    }
    return data;
}

TEST(Project, KeepsItsOwnGuidsAndGivesForeignElementsNewOnes) {
    const API_Guid decoded = *GuidFromGlobalId(globalId);
    const auto own = ProjectOf(Walls({globalId}, "ARCHICAD-64"));
    EXPECT_TRUE(own->IsHostAuthored());
    EXPECT_EQ(own->Elements()[0].guid, decoded);
    EXPECT_EQ(own->Elements()[0].externalIfcId, APINULLGuid);
    EXPECT_TRUE(own->FindByExternalIfcId(decoded).empty());

    const auto foreign = ProjectOf(Walls({globalId}, "Editor"));
    EXPECT_FALSE(foreign->IsHostAuthored());
    const Element& element = foreign->Elements()[0];
    EXPECT_NE(element.guid, decoded);
    EXPECT_EQ(element.externalIfcId, decoded);
    EXPECT_EQ(foreign->FindByGuid(decoded), nullptr);
    EXPECT_THAT(foreign->FindByExternalIfcId(decoded), ElementsAre(&element));
    EXPECT_EQ(foreign->FindByGuid(element.guid), &element);
    EXPECT_EQ(foreign->FindByRecord(10), &element);
    EXPECT_EQ(foreign->GlobalIdOf(element), globalId);
    EXPECT_EQ(ProjectOf(Walls({globalId}, "Editor"))->Elements()[0].guid, element.guid)
        << "stable between opens";
}

TEST(Project, ElementsWithTheSameOrABadGlobalIdStayApart) {
    for (const char* application : {"ARCHICAD-64", "Editor"}) {
        const auto project = ProjectOf(Walls({globalId, globalId, "bad", "bad", ""}, application));
        ASSERT_EQ(project->Elements().size(), 5u);
        for (const Element& element : project->Elements()) {
            EXPECT_NE(element.guid, APINULLGuid);
            EXPECT_EQ(project->FindByGuid(element.guid), &element);
        }
        EXPECT_EQ(project->FindByExternalIfcId(*GuidFromGlobalId(globalId)).size(),
                  project->IsHostAuthored() ? 1u : 2u);
        EXPECT_TRUE(project->FindByExternalIfcId(APINULLGuid).empty());
    }
}

TEST(Project, ListsElementsAndNothingElse) {
    const std::string rest = "($,$,$,$,$,$,$,$,$);\n";
    std::string data;
    int id = 1;
    for (const char* type : {"IFCSLAB", "IFCSPACE", "ifcDoor", "IFCOPENINGELEMENT", "IFCGRID",
                             "IFCANNOTATION", "IFCVIRTUALELEMENT", "IFCDISTRIBUTIONPORT", "IFCWALLTYPE",
                             "IFCELEMENTASSEMBLY", "IFCSENSOR", "IFCSITE", "IFCBUILDINGSTOREY"}) {
        data += "#" + std::to_string(id++) + "=" + type + rest;
    }
    const auto project = ProjectOf(data);
    std::vector<std::string> classes;
    for (const Element& element : project->Elements())
        classes.push_back(element.ifcClass);
    EXPECT_THAT(classes, ElementsAre("IfcSlab", "IfcDoor", "IfcElementAssembly", "IfcSensor"));
}

TEST(Project, TakesTheElementIdFromTagUnlessThatIsAGuid) {
    const std::pair<const char*, const char*> cases[] = {
        {"'W-003'", "W-003"},
        {"'285330'", "285330"},
        {"$", "Name"},
        {"''", "Name"},
        {"'C2E63FBC-194A-4895-A7A8-62C9B0D5CC7B'", "Name"},
        {"'F2A1C-AD-66-B87F1A8D67A1-3B4C5D6E7F8'", "Name"},
        {"'ID5535EC03-0000-0A3B-3133-373833353639'", "Name"},
    };
    for (const auto& [tag, idText] : cases) {
        const auto project = ProjectOf("#1=IFCWALL('x',$,'Name',$,$,$,$," + std::string(tag) +
                                       ",$);\n#2=IFCPROXY('y',$,'Name',$,$,$,$,.PRODUCT.," + tag + ");\n");
        EXPECT_EQ(project->Elements()[0].idText, idText) << tag;
        EXPECT_EQ(project->Elements()[1].idText, idText) << tag;
    }
}

TEST(Project, FindsTheStoreyThroughContainerWholeAndHost) {
    const auto project = ProjectOf(
        "#1=IFCBUILDINGSTOREY('s1',$,'Upper',$,$,$,$,$,.ELEMENT.,3000.);\n"
        "#2=IFCBUILDINGSTOREY('s2',$,$,$,$,$,$,'Lower',.ELEMENT.,$);\n"
        "#3=IFCSPACE('p',$,$,$,$,$,$,$,$,$,$);\n"
        "#4=IFCPROJECT('pr',$,'Inside',$,$,$,$,(),#5);\n#5=IFCUNITASSIGNMENT((#7,#6));\n"
        "#6=IFCSIUNIT(*,.LENGTHUNIT.,.MILLI.,.METRE.);\n#7=IFCSIUNIT(*,.AREAUNIT.,$,.SQUARE_METRE.);\n"
        "#10=IFCFURNITURE('a',$,'in a space',$,$,$,$,$,$);\n"
        "#11=IFCSTAIR('b',$,'whole',$,$,$,$,$,$);\n#12=IFCSTAIRFLIGHT('c',$,'part',$,$,$,$,$,$,$,$,$,$);\n"
        "#13=IFCWALL('d',$,'host',$,$,$,$,$,$);\n#14=IFCOPENINGELEMENT('e',$,$,$,$,$,$,$,$);\n"
        "#15=IFCWINDOW('f',$,'filling',$,$,$,$,$,$,$,$,$,$);\n"
        "#16=IFCROOF('g',$,'ring',$,$,$,$,$,$);\n#17=IFCSLAB('h',$,'ring',$,$,$,$,$,$);\n"
        "#30=IFCRELAGGREGATES('r1',$,$,$,#2,(#3));\n"
        "#31=IFCRELCONTAINEDINSPATIALSTRUCTURE('r2',$,$,$,(#10),#3);\n"
        "#32=IFCRELCONTAINEDINSPATIALSTRUCTURE('r3',$,$,$,(#11,#13),#1);\n"
        "#33=IFCRELAGGREGATES('r4',$,$,$,#11,(#12));\n"
        "#34=IFCRELVOIDSELEMENT('r5',$,$,$,#13,#14);\n#35=IFCRELFILLSELEMENT('r6',$,$,$,#14,#15);\n"
        "#36=IFCRELAGGREGATES('r7',$,$,$,#16,(#17));\n#37=IFCRELAGGREGATES('r8',$,$,$,#17,(#16));\n");
    ASSERT_EQ(project->Storeys().size(), 2u);
    EXPECT_EQ(project->Storeys()[0].name, "Lower");
    EXPECT_EQ(project->Storeys()[1].name, "Upper");
    EXPECT_DOUBLE_EQ(project->Storeys()[1].elevation, 3.0);
    std::vector<int> storeys;
    for (const Element& element : project->Elements())
        storeys.push_back(element.storey);
    EXPECT_THAT(storeys, ElementsAre(0, 1, 1, 1, 1, -1, -1));
    EXPECT_EQ(project->IfcProjectName(), "Inside");
    EXPECT_EQ(project->Name(), "House");
}

TEST(Project, KnowsTheLengthUnit) {
    const std::string project = "#1=IFCPROJECT('p',$,$,$,$,$,$,$,#2);\n#2=IFCUNITASSIGNMENT((#3));\n";
    const std::pair<const char*, double> cases[] = {
        {"#3=IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.);\n", 1},
        {"#3=IFCSIUNIT(*,.LENGTHUNIT.,.CENTI.,.METRE.);\n", 0.01},
        {"#3=IFCCONVERSIONBASEDUNIT(#9,.LENGTHUNIT.,'FOOT',#4);\n#4=IFCMEASUREWITHUNIT(IFCLENGTHMEASURE(304.8),#5);\n"
         "#5=IFCSIUNIT(*,.LENGTHUNIT.,.MILLI.,.METRE.);\n#6=IFCSIUNIT(*,.LENGTHUNIT.,.KILO.,.METRE.);\n",
         0.3048},
        {"#3=IFCCONVERSIONBASEDUNIT(#9,.LENGTHUNIT.,'ring',#4);\n#4=IFCMEASUREWITHUNIT(IFCLENGTHMEASURE(2.),#3);\n",
         1},
        {"", 1},
    };
    for (const auto& [units, metres] : cases)
        EXPECT_DOUBLE_EQ(ProjectOf(project + units)->LengthUnit(), metres) << units;
}

TEST(Project, StoreysLieWhereTheyArePlaced) {
    // On a hill, in a house that leans: its Y points up, its Z south.
    const std::string places =
        "#1=IFCLOCALPLACEMENT($,#2);\n#2=IFCAXIS2PLACEMENT3D(#3,$,$);\n"
        "#3=IFCCARTESIANPOINT((9.,8.,53.4));\n#4=IFCLOCALPLACEMENT(#1,#5);\n"
        "#5=IFCAXIS2PLACEMENT3D(#6,#7,#8);\n#6=IFCCARTESIANPOINT((0.,0.,-0.4));\n"
        "#7=IFCDIRECTION((0.,-2.,0.));\n#8=IFCDIRECTION((1.,1.,0.));\n"
        "#9=IFCLOCALPLACEMENT(#4,#10);\n#10=IFCAXIS2PLACEMENT2D(#11,$);\n"
        "#11=IFCCARTESIANPOINT((5.,3.));\n#12=IFCLOCALPLACEMENT(#12,#2);\n#13=IFCGRIDPLACEMENT(#3,$);\n";
    const std::tuple<const char*, const char*, double> cases[] = {
        {"#1", "$", 53.4}, {"#1", "7.", 53.4}, {"#9", "3.", 56}, {"#12", "3.", 3},
        {"#13", "3.", 3},  {"$", "3.", 3},     {"$", "$", 0}};
    for (const auto& [placement, elevation, floor] : cases)
        EXPECT_DOUBLE_EQ(ProjectOf(places + "#20=IFCBUILDINGSTOREY('s',$,$,$,$," + placement +
                                   ",$,$,.ELEMENT.," + elevation + ");\n")
                             ->Storeys()[0]
                             .floor,
                         floor)
            << placement;
    const auto alike = ProjectOf(places +
                                 "#20=IFCBUILDINGSTOREY('s',$,$,$,$,#1,$,$,.ELEMENT.,3.);\n"
                                 "#21=IFCBUILDINGSTOREY('t',$,$,$,$,#1,$,$,.ELEMENT.,0.);\n");
    EXPECT_DOUBLE_EQ(alike->Storeys()[0].floor, 53.4);
    EXPECT_DOUBLE_EQ(alike->Storeys()[1].floor, 56.4);
}

TEST(Project, UntitledIsEmptyAndUsable) {
    const auto project = Project::Untitled();
    EXPECT_TRUE(project->IsUntitled());
    EXPECT_TRUE(project->Elements().empty());
    EXPECT_EQ(project->Name(), "");
    EXPECT_TRUE(project->Document().Problems().empty());
}

}  // namespace
}  // namespace workbench
