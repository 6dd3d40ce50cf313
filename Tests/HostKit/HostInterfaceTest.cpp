#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <thread>

#include "HostKit/API/AddOnLoader.hpp"
#include "HostKit/API/CommandParameters.hpp"
#include "HostKit/API/IfcGuid.hpp"
#include "HostKit/GSRoot/ThreadRegister.hpp"
#include "Support.hpp"

using hostkit::AddOnEntryPoints;
using hostkit::Registry;

namespace {

// A host with one element, which counts what reaches it.
class SmallHost : public hostkit::Host {
  public:
    GSErrCode ApplicationInfo(API_ServerApplicationInfo& info) override {
        info.language = "GER";
        return NoError;
    }

    GSErrCode Save(const API_FileSavePars&, const void*) override {
        ++saves;
        return NoError;
    }

    GSErrCode ElementList(const API_ElemType&, API_ElemFilterFlags, GS::Array<API_Guid>& list) override {
        ++lists;
        list.Push(GSGuid2APIGuid(GS::Guid("7498d1c2-c932-48ec-b06c-98fb0cc9c1ee")));
        return NoError;
    }

    GSErrCode CallCommand(const hostkit::CommandCall& call, const hostkit::CommandParameters& parameters,
                          GSPtr) override {
        const auto* name = parameters.FindText("Name");
        return call.version == 1 && name != nullptr && *name == "text" &&
                       parameters.FindText("Count") == nullptr
                   ? NoError
                   : static_cast<GSErrCode>(APIERR_MODULCMDVERSNOTSUPPORTED);
    }

    void MenuItemFlagsChanged(short, Int32 item, GSFlags flags) override { shownFlags = {item, flags}; }

    int saves = 0;
    std::atomic<int> lists = 0;
    std::pair<Int32, GSFlags> shownFlags;
};

class HostInterfaceTest : public testing::Test {
  protected:
    hostkit::Faults& Faults() { return session->GetFaults(); }
    Registry& TheRegistry() { return session->GetRegistry(); }

    SmallHost host;
    hostkit::dg::RecordingDriver driver;
    std::unique_ptr<hostkit::Session> session =
        std::make_unique<hostkit::Session>(host, driver, AddOnResources());
};

GSErrCode ListElements() {
    GS::Array<API_Guid> list;
    return ACAPI_Element_GetElemList(API_ZombieElemID, &list);
}

GSErrCode Save() {
    IO::Location file("/model.ifc");
    API_FileSavePars pars = {};
    pars.fileTypeID = APIFType_IfcFile;
    pars.file = &file;
    API_SavePars_Ifc ifc = {};
    return ACAPI_Automate(APIDo_SaveID, &pars, &ifc);
}

// What the handlers below were called with; set anew by each test.
struct Heard {
    Int32 menuItem = 0;
    API_PaletteMessageID message = {};
    GSErrCode saveInside = NoError;
    int notifications = 0;
};
Heard heard;

GSErrCode OnMenu(const API_MenuParams* params) {
    heard.menuItem = params->menuItemRef.itemIndex;
    return NoError;
}

GSErrCode OnPalette(Int32, API_PaletteMessageID message, GS::IntPtr param) {
    heard.message = message;
    if (message == APIPalMsg_IsPaletteVisible) *reinterpret_cast<bool*>(param) = true;
    return NoError;
}

GSErrCode OnSelection(const API_Neig*) {
    ++heard.notifications;
    heard.saveInside = Save();
    return NoError;
}

GSErrCode OnProject(API_NotifyEventID, Int32) {
    ++heard.notifications;
    heard.saveInside = Save();
    return NoError;
}

AddOnEntryPoints SmallAddOn() {
    heard = {};
    return {[](API_EnvirParams* envir) {
                envir->addOnInfo.name = RSGetIndString(32501, 2, ACAPI_GetOwnResModule());
                return envir->serverInfo.language == "GER" ? APIAddon_Preload : APIAddon_DontRegister;
            },
            [] { return ACAPI_Register_Menu(32500, 0, MenuCode_UserDef, MenuFlag_Default); },
            [] {
                if (const GSErrCode error = ACAPI_Install_MenuHandler(32500, OnMenu)) return error;
                if (const GSErrCode error = ACAPI_RegisterModelessWindow(1, OnPalette, 0)) return error;
                if (const GSErrCode error = ACAPI_Notify_CatchSelectionChange(OnSelection)) return error;
                return ACAPI_Notify_CatchProjectEvent(APINotify_Open, OnProject);
            },
            [] { return NoError; }};
}

}  // namespace

TEST_F(HostInterfaceTest, TheAddOnRegistersAndIsDriven) {
    ASSERT_EQ(hostkit::LoadAddOn(SmallAddOn()), NoError);
    EXPECT_EQ(TheRegistry().AddOnInfo().name, "First");

    EXPECT_EQ(TheRegistry().ChooseMenuItem(32500, 1), NoError);
    EXPECT_EQ(heard.menuItem, 1);
    EXPECT_EQ(TheRegistry().ChooseMenuItem(32500, 2), APIERR_BADINDEX);
    EXPECT_EQ(TheRegistry().ChooseMenuItem(32501, 1), APIERR_BADID);

    API_MenuItemRef item = {32500, 0, 1, {}};
    GSFlags flags = API_MenuItemChecked | API_MenuItemDisabled;
    EXPECT_EQ(ACAPI_Interface(APIIo_SetMenuItemFlagsID, &item, &flags), NoError);
    EXPECT_EQ(host.shownFlags, std::pair(1, flags));
    EXPECT_EQ(TheRegistry().ChooseMenuItem(32500, 1), APIERR_REFUSEDCMD);
    flags = 0;
    EXPECT_EQ(ACAPI_Interface(APIIo_GetMenuItemFlagsID, &item, &flags), NoError);
    EXPECT_EQ(flags, API_MenuItemChecked | API_MenuItemDisabled);
    item.itemIndex = 2;
    EXPECT_EQ(ACAPI_Interface(APIIo_GetMenuItemFlagsID, &item, &flags), APIERR_BADINDEX);
    EXPECT_EQ(ACAPI_Interface(APIIo_GetMenuItemFlagsID, &item), APIERR_BADPARS);
    EXPECT_EQ(ACAPI_Interface(static_cast<API_InterfaceID>(5), &item, &flags), APIERR_BADID);

    EXPECT_TRUE(TheRegistry().IsPaletteVisible());
    EXPECT_EQ(TheRegistry().SendPaletteMessage(APIPalMsg_OpenPalette), NoError);
    EXPECT_EQ(heard.message, APIPalMsg_OpenPalette);

    EXPECT_EQ(hostkit::UnloadAddOn(SmallAddOn()), NoError);
    EXPECT_TRUE(TheRegistry().Menus().empty());
    EXPECT_FALSE(TheRegistry().IsPaletteVisible());
}

TEST_F(HostInterfaceTest, CallsAreRefusedAtTheWrongLevel) {
    EXPECT_EQ(ACAPI_Register_Menu(32500, 0, MenuCode_UserDef, MenuFlag_Default), APIERR_REFUSEDCMD);
    ASSERT_EQ(hostkit::LoadAddOn(SmallAddOn()), NoError);
    EXPECT_EQ(ACAPI_Install_MenuHandler(32501, OnMenu), APIERR_BADID);
    EXPECT_EQ(ACAPI_RegisterModelessWindow(1, OnPalette, 0), APIERR_BADID);
    EXPECT_EQ(ACAPI_UnregisterModelessWindow(2), APIERR_BADID);

    EXPECT_EQ(TheRegistry().NotifyProjectEvent(APINotify_Close), NoError);
    EXPECT_EQ(heard.notifications, 0);
    EXPECT_EQ(TheRegistry().NotifyProjectEvent(APINotify_Open), NoError);
    EXPECT_EQ(heard.saveInside, APIERR_REFUSEDCMD);
    heard.saveInside = NoError;
    EXPECT_EQ(TheRegistry().NotifySelectionChange(nullptr), NoError);
    EXPECT_EQ(heard.saveInside, APIERR_REFUSEDCMD);
    EXPECT_EQ(heard.notifications, 2);
    EXPECT_EQ(host.saves, 0);
    EXPECT_EQ(Save(), NoError);
    EXPECT_EQ(host.saves, 1);
}

TEST_F(HostInterfaceTest, AnAddOnThatFailsToStartLeavesNothingBehind) {
    AddOnEntryPoints twice = SmallAddOn();
    twice.registerInterface = [] {
        ACAPI_Register_Menu(32500, 0, MenuCode_UserDef, MenuFlag_Default);
        return ACAPI_Register_Menu(32500, 0, MenuCode_UserDef, MenuFlag_Default);
    };
    EXPECT_EQ(hostkit::LoadAddOn(twice), APIERR_BADID);
    EXPECT_TRUE(TheRegistry().Menus().empty());
    AddOnEntryPoints unknown = SmallAddOn();
    unknown.registerInterface = [] { return ACAPI_Register_Menu(1, 0, MenuCode_UserDef, MenuFlag_Default); };
    EXPECT_EQ(hostkit::LoadAddOn(unknown), APIERR_BADID);

    // Every host call of the start fails once; the last round meets no fault.
    GSErrCode error = APIERR_MEMFULL;
    int calls = 0;
    for (; error != NoError && calls < 100; ++calls) {
        EXPECT_TRUE(TheRegistry().Menus().empty());
        EXPECT_TRUE(TheRegistry().ModelessWindows().empty());
        Faults().FailCall(static_cast<std::uint64_t>(calls) + 1, APIERR_MEMFULL);
        error = hostkit::LoadAddOn(SmallAddOn());
    }
    EXPECT_EQ(calls, 6);
}

TEST_F(HostInterfaceTest, FaultsStrikeTheCallsTheyAreMeantFor) {
    Faults().FailCall("ACAPI_Element_GetElemList", 2, APIERR_GENERAL);
    Faults().FailCall("APIDo_SaveID", 1, APIERR_READONLY);
    Faults().FailCall("ACAPI_Automate", 3, APIERR_CANCEL);
    EXPECT_EQ(ListElements(), NoError);
    EXPECT_EQ(Save(), APIERR_READONLY);
    EXPECT_EQ(ListElements(), APIERR_GENERAL);
    EXPECT_EQ(ListElements(), NoError);
    EXPECT_EQ(Save(), NoError);
    EXPECT_EQ(Save(), APIERR_CANCEL);
    EXPECT_EQ(host.saves, 1);
    EXPECT_EQ(host.lists, 2);
    EXPECT_EQ(Faults().CallsMade(), 6U);

    Faults().FailCall(1, APIERR_MEMFULL);
    Faults().Clear();
    EXPECT_EQ(Save(), NoError);
}

TEST_F(HostInterfaceTest, BadParametersAndUnansweredQuestions) {
    API_FileSavePars pars = {};
    API_ProjectInfo project;
    EXPECT_EQ(ACAPI_Automate(APIDo_SaveID), APIERR_BADPARS);
    EXPECT_EQ(ACAPI_Automate(APIDo_SaveID, &pars), APIERR_BADPARS);
    EXPECT_EQ(ACAPI_Automate(static_cast<API_AutomateID>(1)), APIERR_BADID);
    EXPECT_EQ(ACAPI_Environment(APIEnv_ProjectID, &project), APIERR_BADID);
    project.projectName = new GS::UniString("House");
    EXPECT_EQ(ACAPI_Environment(APIEnv_ProjectID, &project), APIERR_BADPARS);
    EXPECT_EQ(ACAPI_Environment(APIEnv_GetSpecFolderID), APIERR_BADPARS);
    EXPECT_EQ(ACAPI_Element_Get(nullptr), APIERR_BADPARS);
    for (const API_EnvironmentID code :
         {APIEnv_Get3DProjectionSetsID, APIEnv_Change3DProjectionSetsID, APIEnv_Get3DWindowSetsID,
          APIEnv_Change3DWindowSetsID, APIEnv_Get3DCuttingPlanesID, APIEnv_Change3DCuttingPlanesID,
          APIEnv_GetSurveyPointTransformationID})
        EXPECT_EQ(ACAPI_Environment(code), APIERR_BADPARS);
    EXPECT_EQ(ACAPI_Automate(APIDo_ZoomToElementsID), APIERR_BADPARS);
    EXPECT_EQ(ACAPI_Automate(APIDo_ChangeWindowID), APIERR_BADPARS);
    API_Box box = {};
    EXPECT_EQ(ACAPI_Automate(APIDo_ZoomID, &box), APIERR_REFUSEDPAR);
    API_Guid guid = APINULLGuid;
    EXPECT_EQ(ACAPI_Database(APIDb_GetCurrentWindowID), APIERR_BADPARS);
    EXPECT_EQ(ACAPI_Database(APIDb_GetElementInfoStringID, &guid), APIERR_BADPARS);
    EXPECT_EQ(ACAPI_Database(static_cast<API_DatabaseID>(1)), APIERR_BADID);
    GS::Array<API_Guid> found;
    EXPECT_EQ(ACAPI_Element_GetElemListByIFCIdentifier(nullptr, nullptr, found), APIERR_BADPARS);
    EXPECT_FALSE(ACAPI_Element_Filter(guid, APIFilt_In3D));

    // What is asked for starts empty, whatever the caller left in it.
    API_SelectionInfo info;
    info.sel_nElem = 7;
    GS::Array<API_Neig> selection = {API_Neig(guid)};
    EXPECT_EQ(ACAPI_Selection_Get(&info, &selection, false), APIERR_BADID);
    EXPECT_EQ(info.sel_nElem, 0);
    EXPECT_TRUE(selection.IsEmpty());
    API_3DCutPlanesInfo planes;
    planes.shapes = reinterpret_cast<API_3DCutShapeType**>(&box);
    EXPECT_EQ(ACAPI_Environment(APIEnv_Get3DCuttingPlanesID, &planes), APIERR_BADID);
    EXPECT_EQ(planes.shapes, nullptr);
    EXPECT_EQ(sizeof(API_3DWindowInfo), 40U);
    EXPECT_EQ(sizeof(API_3DCutShapeType), 80U);
    EXPECT_EQ(sizeof(API_SavePars_Picture), 40U);

    GS::UniString text("old");
    EXPECT_FALSE(RSGetIndString(&text, 32501, 4, ACAPI_GetOwnResModule()));
    EXPECT_EQ(text, "");
}

TEST_F(HostInterfaceTest, CommandsOfOtherAddOns) {
    const API_ModulID module = {1, 2};
    GSHandle list = nullptr;
    ASSERT_EQ(ACAPI_Goodies(APIAny_InitMDCLParameterListID, &list), NoError);
    API_MDCLParameter parameter = {};
    EXPECT_EQ(ACAPI_Goodies(APIAny_AddMDCLParameterID, list, &parameter), APIERR_BADPARS) << "no name";
    std::string text = "text";
    parameter.name = "Name";
    parameter.string_par = text.c_str();
    EXPECT_EQ(ACAPI_Goodies(APIAny_AddMDCLParameterID, list, &parameter), NoError);
    EXPECT_EQ(ACAPI_Goodies(APIAny_AddMDCLParameterID, list, &parameter), APIERR_BADNAME);
    text = "else";
    parameter.name = "Count";
    parameter.type = MDCLPar_int;
    EXPECT_EQ(ACAPI_Goodies(APIAny_AddMDCLParameterID, list, &parameter), NoError);
    EXPECT_EQ(ACAPI_Command_Call(&module, 'x', 1, list, nullptr, true), NoError);
    EXPECT_EQ(ACAPI_Command_Call(&module, 'x', 2, list, nullptr, true), APIERR_MODULCMDVERSNOTSUPPORTED);

    GSHandle freed = list;
    EXPECT_EQ(ACAPI_Goodies(APIAny_FreeMDCLParameterListID, &list), NoError);
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(ACAPI_Command_Call(&module, 'x', 1, freed, nullptr, true), APIERR_BADPARS);
    EXPECT_EQ(ACAPI_Goodies(APIAny_FreeMDCLParameterListID, &freed), APIERR_BADPARS);
    EXPECT_EQ(hostkit::LiveHandles(), 0);
}

TEST_F(HostInterfaceTest, IfcGuids) {
    const API_Guid guid = APIGuidFromString("C2E63FBC-194A-4895-A7A8-62C9B0D5CC7B");
    GS::UniString text;
    EXPECT_EQ(ACAPI_IFC_APIGuidToIFCGuid(guid, text), NoError);
    EXPECT_EQ(text, "32vZ_y6Kf8bQUeOicmrSnx");
    API_Guid back = APINULLGuid;
    EXPECT_EQ(ACAPI_IFC_IFCGuidToAPIGuid(text, back), NoError);
    EXPECT_EQ(APIGuidToString(back), "C2E63FBC-194A-4895-A7A8-62C9B0D5CC7B");
    EXPECT_EQ(hostkit::ToIfcGuid(APINULLGuid), std::string(22, '0'));
    EXPECT_EQ(hostkit::ToIfcGuid(APIGuidFromString("FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF")),
              "3$$$$$$$$$$$$$$$$$$$$$");
    for (const char* bad : {"", "32vZ_y6Kf8bQUeOicmrSn", "32vZ_y6Kf8bQUeOicmrSnxx", "42vZ_y6Kf8bQUeOicmrSnx",
                            "32vZ_y6Kf8bQUeOicmrSn-"}) {
        EXPECT_EQ(ACAPI_IFC_IFCGuidToAPIGuid(bad, back), APIERR_BADPARS) << bad;
    }
}

TEST_F(HostInterfaceTest, ThereIsOneSessionAtATime) {
    EXPECT_THROW(hostkit::Session(host, driver, {}), std::logic_error);
    EXPECT_EQ(ListElements(), NoError);
    session.reset();
    EXPECT_EQ(hostkit::Session::Current(), nullptr);
    EXPECT_EQ(ListElements(), APIERR_GENERAL);
    EXPECT_EQ(hostkit::LoadAddOn(SmallAddOn()), APIERR_GENERAL);
    EXPECT_EQ(RSGetIndString(32500, 1, ACAPI_GetOwnResModule()), "");
    session = std::make_unique<hostkit::Session>(host, driver, AddOnResources());
    EXPECT_EQ(ListElements(), NoError);
}

TEST_F(HostInterfaceTest, EndsUnderRunningThreads) {
    constexpr int count = 4;
    std::atomic<bool> stop = false;
    std::latch begun(count);
    for (int i = 0; i < count; ++i) {
        GS::Thread(new GS::FunctionRunnable([&] {
                       EXPECT_EQ(ListElements(), NoError);
                       begun.count_down();
                       while (!stop)
                           ListElements();
                       EXPECT_EQ(ListElements(), APIERR_GENERAL);
                   }),
                   "caller")
            .Start();
    }
    begun.wait();
    session.reset();
    const int reached = host.lists;
    std::this_thread::yield();
    EXPECT_EQ(host.lists, reached);
    stop = true;
    EXPECT_TRUE(hostkit::ThreadRegister::Instance().WaitForAll(std::chrono::seconds(60)));
}
