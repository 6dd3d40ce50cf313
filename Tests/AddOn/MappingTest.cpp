#include <gmock/gmock.h>

#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>

#include "AddOn/AddOnTest.hpp"
#include "AddOn/PlainServer.hpp"
#include "DOMReader.hpp"
#include "HostKit/API/PropertyMappingCommands.hpp"
#include "HostKit/GSRoot/Text.hpp"
#include "Workbench/desktop/OffscreenApplication.hpp"
#include "Workbench/desktop/QtDriver.hpp"
#include "dialogs/PropertyNameDialog.hpp"
#include "host/CommandParameters.hpp"
#include "palette/KestranePalette.hpp"

namespace tests {

namespace fs = std::filesystem;
using Json = nlohmann::json;
using testing::ElementsAre;

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

class MappingTest : public AddOnTest {
  protected:
    void SetUp() override { StartWithPalette(); }

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

    // "group/property > IFC name kind type" of each property of the set.
    static std::vector<std::string> Read(const char* entityType = "IfcWall", const char* setName = "Pset") {
        std::vector<std::string> read;
        const auto* set = KestranePalette::GetInstance().GetSchemePropertyByName(entityType, setName);
        if (set == nullptr) return read;
        for (const PropertyMapData& data : set->properties)
            read.push_back(ToText(data.groupName) + "/" + ToText(data.propertyName) + " > " +
                           ToText(data.ifcPropertyName) + " " + std::to_string(data.ifcPropertyKind) + " " +
                           ToText(data.ifcDataType));
        return read;
    }

    void Export(bool useMapFile) {
        const PlainServer server(PlainServer::Manner::Answer, 200, "[]");
        Call("ExportIFCModel", Text(Json{{"token", "t"},
                                         {"projectId", "p"},
                                         {"folderId", "f"},
                                         {"fileName", "Mapped"},
                                         {"onlyVisible", false},
                                         {"useMapFile", useMapFile}}
                                        .dump()));
        ASSERT_TRUE(WaitForScript("CompleteExportModel()"));
    }
    std::string Exported() const { return ReadFile(ExportFolder() / "Mapped.ifc"); }
};

TEST_F(MappingTest, ReadsWhatIsCompleteAndPassesOverTheRest) {
    const std::string pair = Property("A", single) + "text <!-- comment --> <Other/>" +
                             Property("D", single, "IFCEntityType='IfcDoor' PropertySetName='Pset'") +
                             Property("B", "TypePropertyTableValue");
    EXPECT_EQ(Choose(Mapping(pair)), (folder.Path() / "Zuordnung Süd.xml").string());
    EXPECT_THAT(Read(), ElementsAre("Gruppe/A > IfcA 0 IfcLabel", "Gruppe/B > IfcB 4 IfcLabel"));
    EXPECT_THAT(Read("IfcDoor"), ElementsAre("Gruppe/D > IfcD 0 IfcLabel"));
    EXPECT_EQ(driver.FileQuestions().at(0).filters.at(0).text, "Property Mapping File");
    EXPECT_EQ(driver.FileQuestions().at(0).filters.at(0).extension, "xml");

    const std::pair<std::string, std::vector<std::string>> cases[] = {
        {Property("A", "TypePropertyListValue"), {"Gruppe/A > IfcA 1 IfcLabel"}},
        {Property("A", "TypePropertyBoundedValue"), {"Gruppe/A > IfcA 2 IfcLabel"}},
        {Property("A", "TypePropertyEnumeratedValue"), {"Gruppe/A > IfcA 3 IfcLabel"}},
        {Property("A", "TypePropertyUnknown"), {"Gruppe/A > IfcA 0 IfcLabel"}},
        {Property("A", single, wall, ""), {"Gruppe/A > IfcA 0 "}},
        {Property("A", single, wall, "<DataType type='NoSuchType'/>"), {"Gruppe/A > IfcA 0 NoSuchType"}},
        {Property(" A", single) + Property("A ", single),
         {"Gruppe/ A > Ifc A 0 IfcLabel", "Gruppe/A  > IfcA  0 IfcLabel"}},
        {Property("A", single, "IFCEntityType='ifcwall' PropertySetName='Pset'"), {}},
        {Property("A", single, "IFCEntityType='IfcWall' PropertySetName='Pset '"), {}},
        {Property("A", single, "IFCEntityType='IfcWall' PropertySetName=''"), {}},
        {Property("A", single, "PropertySetName='Pset'"), {}},
        {"<SchemeProperty " + wall + "/>", {}},
        {"<SchemeProperty " + wall + "><ACPropertyValue/></SchemeProperty>", {}},
        {"<SchemeProperty " + wall + "><PropertyDef><Name/><PropertyType/></PropertyDef></SchemeProperty>",
         {}},
        {"<SchemeProperty " + wall +
             "><ACPropertyValue/><PropertyDef><PropertyType/></PropertyDef></SchemeProperty>",
         {}},
        {"<SchemeProperty " + wall + "><ACPropertyValue/><PropertyDef><Name/></PropertyDef></SchemeProperty>",
         {}},
        {"<Other>" + Property("A", single) + "</Other>", {}}};
    for (const auto& [content, expected] : cases) {
        EXPECT_NE(Choose(Mapping(content)), "") << content;
        EXPECT_EQ(Read(), expected) << content;
    }
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
    EXPECT_THAT(Read(), ElementsAre("Gruppe/A > IfcA 0 IfcLabel"));
    EXPECT_THAT(driver.Alerts(), testing::IsEmpty());
    EXPECT_NE(Choose(Mapping("")), "");
    EXPECT_THAT(Read(), testing::IsEmpty()) << "a mapping without entries takes the place of the former one";
}

TEST_F(MappingTest, AHundredThousandEntriesReachTheHost) {
    OpenSample();
    std::string content;
    for (int i = 0; i < 100000; ++i)
        content += Property("P" + std::to_string(i), single,
                            "IFCEntityType='IfcWall' PropertySetName='Pset" + std::to_string(i) + "'");
    ASSERT_NE(Choose(Mapping(content)), "");
    EXPECT_THAT(Read("IfcWall", "Pset99999"), ElementsAre("Gruppe/P99999 > IfcP99999 0 IfcLabel"));
    Export(true);
    EXPECT_EQ(Exported(), ReadFile(Sample())) << "no element has any of the properties";
}

// With the property that the sample's elements have, whatever it is.
TEST_F(MappingTest, OnlyTheExportThatAsksForItIsMapped) {
    OpenSample();
    const std::string plain = ReadFile(Sample());
    Export(true);
    EXPECT_EQ(Exported(), plain) << "nothing was read yet";
    driver.QueueFileAnswer(fs::path(KESTRANE_SAMPLES) / "PropertyMapping.xml");
    ASSERT_NE(CallForText("OpenMappingFile"), "");
    Export(false);
    EXPECT_EQ(Exported(), plain);
    Export(true);
    const std::string mapped = Exported();
    for (const char* kind : {"IFCPROPERTYSINGLEVALUE", "IFCPROPERTYLISTVALUE", "IFCPROPERTYBOUNDEDVALUE",
                             "IFCPROPERTYENUMERATEDVALUE", "IFCPROPERTYTABLEVALUE"})
        EXPECT_THAT(mapped, testing::HasSubstr(kind));
    EXPECT_EQ(CallForText("GetIfcFile", "Mapped"), plain);

    // The preset is made, but nothing is saved: it must not reach a later save.
    Call("ExportIFCModel", Text(R"({"useMapFile": true})"));
    queue.RunPending();
    EXPECT_EQ(CallForText("GetIfcFile", "Mapped"), plain);
    for (const auto nth : {1, 2}) {
        Faults().FailCall("ACAPI_Command_Call", nth, APIERR_GENERAL);
        Export(true);
        EXPECT_EQ(Exported(), plain) << "the export does without what failed";
    }
}

TEST_F(MappingTest, TheHostTakesPresetsOfTheRightShapeOnly) {
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
    const Json property{{"groupName", "g"},
                        {"propertyName", "p"},
                        {"ifcPropertyName", "n"},
                        {"ifcPropertyKind", 4},
                        {"ifcDataType", ""}};
    const Json good{{{"ifcEntityType", "IfcWall"}, {"propertySetName", "s"}, {"properties", {property}}}};
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

TEST_F(MappingTest, TheNameIsWhatWasAcceptedAndFree) {
    GS::Ref<DG::JSArray> used = new DG::JSArray();
    for (const char* name : {"Höhe", "", "Breite"})
        used->AddItem(Text(name));
    const std::tuple<short, const char*, const char*, std::size_t> cases[] = {
        {1, "Länge", "Länge", 0},     {1, "höhe", "höhe", 0}, {1, " Höhe", " Höhe", 0},
        {1, "Breite ", "Breite ", 0}, {1, "", "", 0},         {2, "Länge", "", 0},
        {3, "Länge", "", 0},          {1, "Höhe", "", 1},     {1, "Breite", "", 1}};
    std::size_t alerts = 0;
    for (const auto& [item, typed, expected, told] : cases) {
        driver.QueueDialogAnswer(item, {{3, typed}});
        const auto name = GS::DynamicCast<DG::JSValue>(Call("SetNewPropertyName", used));
        EXPECT_EQ(ToText(name->GetString()), expected) << typed;
        EXPECT_EQ(driver.Alerts().size(), alerts += told) << typed;
    }
    EXPECT_EQ(driver.Alerts()[0].large, "The property name exists.");
    EXPECT_EQ(driver.Alerts()[0].buttons[0], "Ok");
    driver.QueueDialogAnswer(std::nullopt);
    EXPECT_EQ(ToText(GS::DynamicCast<DG::JSValue>(Call("SetNewPropertyName"))->GetString()), "");
}

void Soon(const std::function<void()>& act) {
    QTimer::singleShot(0, [act] { act(); });
}

// Types into the field of the window that is shown.
void Type(const char* text, Qt::Key key) {
    auto* field = QApplication::activeModalWidget()->findChild<QLineEdit*>();
    field->setText(text);
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(field, &event);
}

// In the window that a person sees: a taken name is told and the dialog stays, a free one is accepted.
TEST(PropertyNameDialogTest, InItsWindow) {
    const workbench::OffscreenApplication qt;
    for (const auto& [language, texts] : {std::pair("INT", "Name of the New Property|Cancel|OK"),
                                          std::pair("GER", "Name der neuen Eigenschaft|Abbrechen|OK")}) {
        workbench::MainQueue queue;
        workbench::QtDriver driver(queue);
        hostkit::Host host;
        const hostkit::Session session(
            host, driver, hostkit::Resources::Load(fs::path(KESTRANE_SHARE) / "resources", language));
        for (const bool accepts : {true, false}) {
            QStringList seen;
            const auto closeAlert = [&seen] {
                auto& alert = dynamic_cast<QMessageBox&>(*QApplication::activeModalWidget());
                seen << alert.text() << alert.buttons().at(0)->text();
                alert.accept();
            };
            Soon([&] {
                auto* window = QApplication::activeModalWidget();
                seen << window->windowTitle();
                for (const auto* button : window->findChildren<QPushButton*>())
                    seen << button->text();
                Soon(closeAlert);
                Type("Höhe", Qt::Key_Return);
                EXPECT_TRUE(window->isVisible());
                Type(QString(300, 'x').toUtf8(), Qt::Key_Shift);
                EXPECT_EQ(window->findChild<QLineEdit*>()->text().size(), 255);
                Type(" Höhe", accepts ? Qt::Key_Return : Qt::Key_Escape);
            });
            PropertyNameDialog dialog({"Höhe"});
            EXPECT_EQ(dialog.Invoke(), accepts);
            EXPECT_EQ(ToText(dialog.GetNewPropertyName()), accepts ? " Höhe" : "");
            EXPECT_EQ(seen.join("|").toStdString(), std::string(texts) + "|The property name exists.|Ok");
        }
    }
}

}  // namespace tests
