#include <gmock/gmock.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "AddOn/PlainServer.hpp"
#include "AddOn/PlayedHost.hpp"
#include "HostKit/API/PropertyMappingCommands.hpp"
#include "HostKit/GSRoot/Text.hpp"
#include "host/CommandParameters.hpp"

namespace tests {

namespace fs = std::filesystem;
using Json = nlohmann::json;
using testing::ElementsAre, testing::MatchesRegex;

namespace {

std::string Property(const std::string& name, const std::string& type,
                     const std::string& attributes = "IFCEntityType='IfcWall' PropertySetName='Pset'",
                     const std::string& dataType = "<DataType type='IfcLabel'/>") {
    return "<SchemeProperty " + attributes +
           "><ACPropertyValue PropertyDefinitionGroupName='Gruppe' PropertyDefinitionName='" + name +
           "'/><PropertyDef><Name>Ifc" + name + "</Name><PropertyType><TypeProperty><" + type +
           "/></TypeProperty></PropertyType>" + dataType + "</PropertyDef></SchemeProperty>\n";
}

std::string Mapping(const std::string& content) {
    return "<?xml version='1.0' encoding='UTF-8'?>\n<SchemeItemList>" + content + "</SchemeItemList>";
}

const std::string single = "TypePropertySingleValue";
const std::string wall = "IFCEntityType='IfcWall' PropertySetName='Pset'";

}  // namespace

// Reading a file, and what the host is then given.
class MappingTest : public PlayedHostTest {
  protected:
    fs::path Write(const std::string& text) {
        fs::path file = folder.Path() / "Zuordnung Süd.xml";
        std::ofstream(file, std::ios::binary) << text;
        return file;
    }

    // What the page gets when the person chooses a file of this text.
    std::string Choose(const std::string& text) {
        driver.QueueFileAnswer(Write(text));
        return CallForText("OpenMappingFile");
    }

    // What an export gives to the host: a line "class set: group/property > IFC name kind type" a property.
    std::string Given() {
        host.commands.clear();
        Call("ExportIFCModel", Text(R"({"useMapFile": true})"));
        if (host.commands.empty()) return "no command";
        const std::string name = " presetName=Kestrane Ifc Property Mapping Export Preset Name";
        EXPECT_THAT(host.commands,
                    ElementsAre("CRPS presetType=PropertyMappingExportPreset" + name, "ADPM" + name));
        std::ostringstream given;
        const auto text = [](const Json& object, const char* key) {
            return object.at(key).get<std::string>();
        };
        for (const Json& set : Json::parse(host.mappings))
            for (const Json& property : set.at("properties"))
                given << text(set, "ifcEntityType") << ' ' << text(set, "propertySetName") << ": "
                      << text(property, "groupName") << '/' << text(property, "propertyName") << " > "
                      << text(property, "ifcPropertyName") << ' ' << property.at("ifcPropertyKind") << ' '
                      << text(property, "ifcDataType") << '\n';
        return given.str();
    }
};

TEST_F(MappingTest, ReadsWhatIsCompleteAndPassesOverTheRest) {
    std::string content =
        Property("A", single) + "text <!-- comment --> <Other>" + Property("B", single) + "</Other>" +
        Property("C", single, "IFCEntityType='IfcDoor' PropertySetName='Pset'") +
        Property(" D", "TypePropertyTableValue") + Property("D ", "TypePropertyListValue") +
        Property("E", "TypePropertyBoundedValue") + Property("F", "TypePropertyEnumeratedValue") +
        Property("G", "TypePropertyUnknown", wall, "") +
        Property("H", single, wall, "<DataType type='None'/>") +
        Property("I", single, "IFCEntityType='ifcwall' PropertySetName='Pset'") +
        Property("J", single, "IFCEntityType='IfcWall' PropertySetName='Pset '") +
        Property("K", single, "IFCEntityType='IfcWall' PropertySetName=''") +
        Property("L", single, "PropertySetName='Pset'");
    for (const char* incomplete :
         {"", "<ACPropertyValue/>", "<PropertyDef><Name/><PropertyType/></PropertyDef>",
          "<ACPropertyValue/><PropertyDef><PropertyType/></PropertyDef>",
          "<ACPropertyValue/><PropertyDef><Name/></PropertyDef>"})
        content += "<SchemeProperty " + wall + ">" + incomplete + "</SchemeProperty>";
    EXPECT_EQ(Choose(Mapping(content)), (folder.Path() / "Zuordnung Süd.xml").string());
    EXPECT_EQ(Given(),
              "IfcWall Pset: Gruppe/A > IfcA 0 IfcLabel\n"
              "IfcWall Pset: Gruppe/ D > Ifc D 4 IfcLabel\n"
              "IfcWall Pset: Gruppe/D  > IfcD  1 IfcLabel\n"
              "IfcWall Pset: Gruppe/E > IfcE 2 IfcLabel\n"
              "IfcWall Pset: Gruppe/F > IfcF 3 IfcLabel\n"
              "IfcWall Pset: Gruppe/G > IfcG 0 \n"
              "IfcWall Pset: Gruppe/H > IfcH 0 None\n"
              "IfcDoor Pset: Gruppe/C > IfcC 0 IfcLabel\n"
              "ifcwall Pset: Gruppe/I > IfcI 0 IfcLabel\n"
              "IfcWall Pset : Gruppe/J > IfcJ 0 IfcLabel\n");
    EXPECT_EQ(driver.FileQuestions().at(0).filters.at(0).text, "Property Mapping File");
    EXPECT_EQ(driver.FileQuestions().at(0).filters.at(0).extension, "xml");
}

TEST_F(MappingTest, WhatIsNoMappingFileLeavesTheMapping) {
    ASSERT_NE(Choose(Mapping(Property("A", single))), "");
    const std::string bad[] = {
        "<Wrong>" + Property("B", single) + "</Wrong>",
        "",
        "not XML",
        Mapping(Property("B", single)).substr(0, 200),
        Mapping("H\xF6he"),
        "<!DOCTYPE SchemeItemList [<!ENTITY x SYSTEM '/etc/hostname'>]>" + Mapping("&x;").substr(39)};
    for (const std::string& text : bad)
        EXPECT_EQ(Choose(text), "") << text;
    const fs::path large = Write("");
    fs::resize_file(large, 100 << 20);
    for (const auto& answer :
         {std::optional<fs::path>(), std::optional(folder.Path() / "none.xml"), std::optional(large)}) {
        driver.QueueFileAnswer(answer);
        EXPECT_EQ(CallForText("OpenMappingFile"), "");
    }
    EXPECT_EQ(Given(), "IfcWall Pset: Gruppe/A > IfcA 0 IfcLabel\n");
    EXPECT_THAT(driver.Alerts(), testing::IsEmpty());
    EXPECT_NE(Choose(Mapping("")), "");
    EXPECT_EQ(Given(), "no command") << "a mapping without entries takes the place of the former one";
}

TEST_F(MappingTest, AHundredThousandEntriesReachTheHost) {
    std::string content;
    std::ostringstream expected;
    for (int i = 0; i < 100000; ++i) {
        const std::string name = std::to_string(i);
        content += Property(name, single, "IFCEntityType='IfcWall' PropertySetName='Pset" + name + "'");
        expected << "IfcWall Pset" << i << ": Gruppe/" << i << " > Ifc" << i << " 0 IfcLabel\n";
    }
    EXPECT_EQ(Given(), "no command") << "nothing was read yet";
    ASSERT_NE(Choose(Mapping(content)), "");
    EXPECT_TRUE(Given() == expected.str()) << host.mappings.substr(0, 300);
}

// The add-on in the Workbench.
class MappedExportTest : public AddOnTest {
  protected:
    void SetUp() override { StartWithPalette(); }

    std::string Export(bool useMapFile) {
        const PlainServer server(PlainServer::Manner::Answer, 200, "[]");
        Json request = {{"token", "t"}, {"projectId", "p"}, {"folderId", "f"}, {"fileName", "Mapped"}};
        request.update({{"onlyVisible", false}, {"useMapFile", useMapFile}});
        Call("ExportIFCModel", Text(request.dump()));
        EXPECT_TRUE(WaitForScript("CompleteExportModel()"));
        return ReadFile(ExportFolder() / "Mapped.ifc");
    }
};

// The lines that only the second text has.
std::string Added(const std::string& before, const std::string& after) {
    std::istringstream lines(after);
    std::string added;
    for (std::string line; std::getline(lines, line);) {
        line += '\n';
        if (before.find(line) == std::string::npos) added += line;
    }
    return added;
}

// What the sample's mapping adds to the sample: two of its sets have another property each.
const char* const mappedRecords =
    R"(#825=IFCPROPERTYSET('307W4UVB$781FTNZm_eOnn',#5,'Pset_WallCommon',$,(#821,#822,#823,#824,#859));
#833=IFCPROPERTYSET('0464SkF7xz7RmNV76Q4Ot4',#5,'Pset_WindowCommon',$,(#831,#832,#860));
#858=IFCPROPERTYSINGLEVALUE('UValue',$,IFCREAL(0.24),$);
#859=IFCPROPERTYENUMERATEDVALUE('TypeCode',$,(IFCLABEL('AW 24')),$);
#860=IFCPROPERTYBOUNDEDVALUE('GlazingShare',$,IFCRATIOMEASURE(0.82),IFCRATIOMEASURE(0.82),$,IFCRATIOMEASURE(0.82));
#861=IFCPROPERTYSINGLEVALUE('Timber',$,IFCLABEL('L\X2\00E4\X0\rche, ge\X2\00F6\X0\lt'),$);
#862=IFCPROPERTYSINGLEVALUE('Maintenance',$,IFCTEXT('im Fr\X2\00FC\X0\hjahr \X2\00FC\X0\berpr\X2\00FC\X0\fen'),$);
#863=IFCPROPERTYLISTVALUE('FloweringTime',$,(IFCLABEL('April'),IFCLABEL('Mai')),$);
#864=IFCPROPERTYBOUNDEDVALUE('Height',$,IFCPOSITIVELENGTHMEASURE(4.5),IFCPOSITIVELENGTHMEASURE(2.5),$,IFCPOSITIVELENGTHMEASURE(3.));
#865=IFCPROPERTYENUMERATEDVALUE('Location',$,(IFCLABEL('Sonne'),IFCLABEL('Halbschatten')),#853);
#866=IFCPROPERTYTABLEVALUE('WaterDemand',$,(IFCLABEL('Sommer'),IFCLABEL('Winter')),(IFCVOLUMEMEASURE(0.02),IFCVOLUMEMEASURE(0.005)),$,$,$,$);
#867=IFCPROPERTYSET('1lTBYfYNE8kxmB_eEL8iYo',#5,'Building_Facts',$,(#858));
#868=IFCRELDEFINESBYPROPERTIES('17oNU74OgAuASIFwNSP1lm',#5,$,$,(#106,#120,#132,#144),#867);
#869=IFCPROPERTYSET('1JJa2DUMY2dufa6bYNAldh',#5,'Building_Facts',$,(#861));
#870=IFCRELDEFINESBYPROPERTIES('3mJQIdTWIDKOgUXox_sPAM',#5,$,$,(#316,#324,#741,#749,#757,#765),#869);
#871=IFCPROPERTYSET('396t0bWPwEtQ8WRRwITDtX',#5,'Tree_Register',$,(#862,#863,#864,#865,#866));
#872=IFCRELDEFINESBYPROPERTIES('0mIhdkZzo6twkngkRM7SV1',#5,$,$,(#787),#871);
)";

TEST_F(MappedExportTest, OnlyTheExportThatAsksForItIsMapped) {
    OpenSample();
    const std::string plain = ReadFile(Sample());
    EXPECT_EQ(Export(true), plain) << "nothing was read yet";
    driver.QueueFileAnswer(fs::path(KESTRANE_SAMPLES) / "PropertyMapping.xml");
    ASSERT_NE(CallForText("OpenMappingFile"), "");
    EXPECT_EQ(Export(false), plain);
    const std::string mapped = Export(true);
    EXPECT_EQ(Added(plain, mapped), mappedRecords);
    EXPECT_THAT(Added(mapped, plain), MatchesRegex("#825=[^\n]+\n#833=[^\n]+\n"));
    EXPECT_EQ(CallForText("GetIfcFile", "Mapped"), plain);

    // A preset that nothing is saved with: it must not reach the page's next call, which waits already.
    std::string next;
    queue.Post([&] { Call("ExportIFCModel", Text(R"({"useMapFile": true})")); });
    queue.Post([&] { next = CallForText("GetIfcFile", "Mapped"); });
    queue.RunPending();
    EXPECT_EQ(next, plain);
    for (const auto nth : {1, 2}) {
        Faults().FailCall("ACAPI_Command_Call", nth, APIERR_GENERAL);
        EXPECT_EQ(Export(true), plain) << "the export does without what failed";
    }
}

TEST_F(MappedExportTest, TheHostTakesPresetsOfTheRightShapeOnly) {
    const auto call = [](GSType command, const char* type, const char* name, const GS::UniString* mappings,
                         Int32 version = 1) {
        CommandParameterList list;
        EXPECT_EQ(list.Create(), NoError);
        if (type != nullptr) list.AddText("presetType", type);
        if (name != nullptr) list.AddText("presetName", name);
        if (mappings != nullptr) list.AddReference("newMappings", mappings);
        return ACAPI_Command_Call(&hostkit::mapping::addOn, command, version, list.Get(), nullptr, true);
    };
    using hostkit::mapping::addMappings, hostkit::mapping::createPreset, hostkit::mapping::presetType;
    EXPECT_EQ(call(1, presetType, "P", nullptr), APIERR_MODULCMDNOTSUPPORTED);
    EXPECT_EQ(call(createPreset, presetType, "P", nullptr, 2), APIERR_MODULCMDVERSNOTSUPPORTED);
    EXPECT_EQ(call(createPreset, "Other", "P", nullptr), APIERR_BADPARS);
    EXPECT_EQ(call(createPreset, presetType, nullptr, nullptr), APIERR_BADPARS);
    EXPECT_EQ(call(createPreset, presetType, "P", nullptr), NoError);
    const Json good = Json::parse(R"([{"ifcEntityType": "IfcWall", "propertySetName": "s", "properties": [{
        "groupName": "g", "propertyName": "p", "ifcPropertyName": "n", "ifcPropertyKind": 4, "ifcDataType": ""}]}])");
    std::vector<std::string> shapes{"", "{}", "[1]", "[{}]"};
    for (const Json& kind : {Json(5), Json(-1), Json(1.5), Json("1")}) {
        Json spoilt = good;
        spoilt[0]["properties"][0]["ifcPropertyKind"] = kind;
        shapes.push_back(spoilt.dump());
    }
    for (const std::string& shape : shapes) {
        const GS::UniString text = hostkit::ToUniString(shape);
        EXPECT_EQ(call(addMappings, nullptr, "P", &text), APIERR_BADPARS) << shape;
    }
    const GS::UniString text = hostkit::ToUniString(good.dump());
    EXPECT_EQ(call(addMappings, nullptr, "P", nullptr), APIERR_BADPARS);
    EXPECT_EQ(call(addMappings, nullptr, "Q", &text), APIERR_BADNAME);
    EXPECT_EQ(call(addMappings, nullptr, "P", &text), NoError);
}

}  // namespace tests
