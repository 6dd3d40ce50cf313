#include "palette/KestranePalette.hpp"

#include <gmock/gmock.h>

#include "ACAPinc.h"
#include "AddOn/AddOnTest.hpp"

namespace tests {

using testing::ElementsAre;

namespace {

// Finds what cannot be seen from outside: calls of menu handlers that are not the add-on's.
GSErrCode Choose(short menu) {
    API_MenuParams params{};
    params.menuItemRef.menuResID = menu;
    params.menuItemRef.itemIndex = 1;
    return hostkit::Session::Current()->GetRegistry().Menus().at(0).handler(&params);
}

}  // namespace

TEST_F(AddOnTest, RegistersOneMenuOnePaletteAndWaits) {
    Start();
    ASSERT_EQ(Registry().Menus().size(), 1U);
    EXPECT_EQ(Registry().Menus()[0].strings, 32500);
    EXPECT_EQ(Registry().Menus()[0].prompts, 0);
    EXPECT_EQ(Registry().Menus()[0].position, MenuCode_UserDef);
    ASSERT_EQ(Registry().ModelessWindows().size(), 1U);
    EXPECT_EQ(Registry().ModelessWindows()[0].controlFlags, 1015U);
    EXPECT_EQ(ToText(APIGuidToString(Registry().ModelessWindows()[0].guid)),
              "7498D1C2-C932-48EC-B06C-98FB0CC9C1EE");
    EXPECT_FALSE(driver.HasPalette());
    EXPECT_FALSE(Registry().IsPaletteVisible()) << "asking does not create one";
    EXPECT_FALSE(driver.HasPalette());
    EXPECT_FALSE(Registry().IsKeptInMemory());
    EXPECT_FALSE(KestranePalette::HasInstance());
    EXPECT_THROW(KestranePalette::GetInstance(), GS::NullReferenceException);
}

TEST_F(AddOnTest, InitialisationStopsAtTheFirstError) {
    const char* const calls[] = {"ACAPI_Install_MenuHandler", "ACAPI_RegisterModelessWindow",
                                 "ACAPI_Notify_CatchSelectionChange", "ACAPI_Notify_CatchProjectEvent"};
    Start();
    hostkit::UnloadAddOn();
    std::uint64_t callsUntilFailure = 0;
    for (const char* const call : calls) {
        const std::uint64_t before = Faults().CallsMade();
        Faults().FailCall(call, 1, APIERR_MEMFULL);
        EXPECT_EQ(hostkit::LoadAddOn(), APIERR_MEMFULL) << call;
        const std::uint64_t made = Faults().CallsMade() - before;
        if (callsUntilFailure > 0) {
            EXPECT_EQ(made, callsUntilFailure + 1)
                << "the installations come in this order, and none after a failure";
        }
        callsUntilFailure = made;
    }
    EXPECT_EQ(hostkit::LoadAddOn(), NoError);
}

TEST_F(AddOnTest, MenuCommandShowsAndHidesThePaletteAndItsCheckMark) {
    Start();
    EXPECT_EQ(Choose(32501), NoError);
    EXPECT_FALSE(driver.HasPalette()) << "another menu's command is none of ours";

    for (const bool shown : {true, false, true}) {
        EXPECT_EQ(ChooseMenu(), NoError);
        EXPECT_EQ(driver.IsPaletteVisible(), shown);
        EXPECT_EQ(IsMenuChecked(), shown);
        EXPECT_EQ(Registry().IsPaletteVisible(), shown);
    }
    EXPECT_TRUE(Registry().IsKeptInMemory());
    EXPECT_THAT(driver.Calls(), ElementsAre("CreateBrowser", "LoadURL", "DisableContextMenu",
                                            "RegisterAsynchJSObject", "Show", "Hide", "Show"));
    EXPECT_EQ(driver.Url(), "http://127.0.0.1:8465/");
}

TEST_F(AddOnTest, CheckMarkLeavesTheItemsOtherFlags) {
    Start();
    API_MenuItemRef item{};
    item.menuResID = 32500;
    item.itemIndex = 1;
    GSFlags flags = 0x40;
    ASSERT_EQ(ACAPI_Interface(APIIo_SetMenuItemFlagsID, &item, &flags), NoError);
    ChooseMenu();
    EXPECT_EQ(Registry().Menus()[0].itemFlags[0], 0x40U | API_MenuItemChecked);
    ChooseMenu();
    EXPECT_EQ(Registry().Menus()[0].itemFlags[0], 0x40U);
}

TEST_F(AddOnTest, CloseBoxOnlyHidesAndResizingFillsThePalette) {
    StartWithPalette();
    const auto page = driver.PageObject();
    EXPECT_TRUE(driver.ClosePalette());
    EXPECT_FALSE(driver.IsPaletteVisible());
    EXPECT_FALSE(IsMenuChecked());
    ChooseMenu();
    EXPECT_TRUE(driver.IsPaletteVisible());
    EXPECT_EQ(driver.PageObject(), page) << "the page was loaded again";

    const short width = driver.BrowserWidth();
    const short height = driver.BrowserHeight();
    driver.ResizePalette(40, -25);
    driver.ResizePalette(-10, 5);
    EXPECT_EQ(driver.BrowserWidth(), width + 30);
    EXPECT_EQ(driver.BrowserHeight(), height - 20);
}

TEST_F(AddOnTest, PaletteMessages) {
    Start();
    for (int message : {1, 2, 3, 4, 5, 99}) {
        EXPECT_EQ(Registry().SendPaletteMessage(static_cast<API_PaletteMessageID>(message)), NoError);
        EXPECT_FALSE(driver.HasPalette()) << message;
    }

    struct Step {
        API_PaletteMessageID message;
        bool visible;
        bool enabled;
    };
    const Step steps[] = {
        {APIPalMsg_OpenPalette, true, true},
        {APIPalMsg_DisableItems_Begin, true, false},
        {APIPalMsg_DisableItems_End, true, true},
        {APIPalMsg_HidePalette_Begin, false, true},
        {APIPalMsg_DisableItems_Begin, false, true},  // a hidden palette's items are left alone
        {APIPalMsg_HidePalette_End, true, true},
        {APIPalMsg_HidePalette_End, true, true},
        {APIPalMsg_ClosePalette, false, true},
        {APIPalMsg_HidePalette_Begin, false, true},
        {APIPalMsg_HidePalette_End, true, true},  // shows whatever had hidden it
        {static_cast<API_PaletteMessageID>(42), true, true},
    };
    for (const Step& step : steps) {
        SCOPED_TRACE(&step - steps);
        EXPECT_EQ(Registry().SendPaletteMessage(step.message), NoError);
        EXPECT_EQ(driver.IsPaletteVisible(), step.visible);
        EXPECT_EQ(driver.AreItemsEnabled(), step.enabled);
        EXPECT_EQ(IsMenuChecked(), step.visible);
        EXPECT_EQ(Registry().IsPaletteVisible(), step.visible);
    }
}

TEST_F(AddOnTest, SelectionIsToldOnlyToAPageThatAsked) {
    Start();
    OpenSample();
    const std::vector<API_Guid> selection{application->OpenProject().Elements().at(0).guid};
    application->Select(selection);  // no palette yet

    Registry().SendPaletteMessage(APIPalMsg_OpenPalette);
    application->Select(selection);
    Call("AddComponent", Text("true"));
    application->Select(selection);
    EXPECT_EQ(CountScripts("UpdateSelectedElements()"), 0U);

    Call("AddComponent", new DG::JSValue(true));
    application->Select(selection);
    application->Select({});
    EXPECT_EQ(CountScripts("UpdateSelectedElements()"), 2U);
    Call("AddComponent");
    application->Select(selection);
    EXPECT_EQ(CountScripts("UpdateSelectedElements()"), 2U);
}

TEST_F(AddOnTest, OpeningAProjectRecordsItsCentreAndAsksThePage) {
    Start();
    EXPECT_EQ(KestranePalette::GetModelCentre().x, 0);
    OpenSample();
    workbench::Box3 box;
    for (const auto& element : application->OpenProject().Elements()) {
        if (const auto bounds = application->BoundsOf(element)) box.Add(*bounds);
    }
    ASSERT_FALSE(box.Empty());
    const API_Coord3D& centre = KestranePalette::GetModelCentre();
    EXPECT_NEAR(centre.x, box.Center().x, 1e-9);
    EXPECT_NEAR(centre.y, box.Center().y, 1e-9);
    EXPECT_NEAR(centre.z, box.Center().z, 1e-9);
    EXPECT_GT(box.Size().z, 2) << "the sample has walls";

    Registry().SendPaletteMessage(APIPalMsg_OpenPalette);
    EXPECT_EQ(CountScripts("RequestFileName()"), 0U);
    OpenSample();
    EXPECT_EQ(CountScripts("RequestFileName()"), 1U);
}

TEST_F(AddOnTest, PageSeesTheFunctionsInTheirOrder) {
    StartWithPalette();
    std::vector<std::string> names;
    for (const auto& item : driver.PageObject()->GetItemTable())
        names.push_back(ToText(*item.key));
    EXPECT_EQ(ToText(driver.PageObject()->GetName()), "KESTAPI");
    EXPECT_THAT(
        names, ElementsAre(
                   "GetResourceFolder", "HighlightElements", "ZoomToElement", "GetElementNames", "AlertAPI",
                   "SelectViewpoint", "GetSelectedElements", "AddComponent", "AddViewpoint", "ImportIfcModel",
                   "RegisterIfcFileName", "RequestFileName", "GetIfcFile", "GetApplicationInfo",
                   "ImportIfcFiles", "OpenIfcModels", "ExportIFCModel", "GetIfcDocuments", "Create2dPlan",
                   "Export2dPlan", "ExportSnapshot", "GetExportHistory", "SaveExportHistoryData",
                   "GetPlanDocuments", "OpenMappingFile", "SetNewPropertyName", "GetPublishSetHeaders",
                   "GetPublishSetItems", "HandlePublishSets", "CompleteExportPublish", "PreparePublishDocs",
                   "GetPublishHistory", "SavePublishHistory", "SetPublishHistory", "GetPublishItems"));
}

TEST_F(AddOnTest, AlertShowsThePagesText) {
    StartWithPalette();
    Call("AlertAPI", Text("Fertig: 100 %T"));
    Call("AlertAPI", new DG::JSValue(5));
    const auto alerts = driver.Alerts();
    ASSERT_EQ(alerts.size(), 2U);
    EXPECT_EQ(ToText(alerts[0].large), "Fertig: 100 %T");
    EXPECT_EQ(ToText(alerts[0].small), "");
    EXPECT_EQ(ToText(alerts[0].buttons[0]), "OK");
    EXPECT_TRUE(alerts[0].buttons[1].IsEmpty());
    EXPECT_EQ(ToText(alerts[1].large), "");
    EXPECT_THROW(Call("AlertAPI", new DG::JSArray()), GS::ClassCastException);
}

}  // namespace tests
