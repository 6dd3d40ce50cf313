#include "Main.hpp"

#include "palette/KestranePalette.hpp"

namespace {

constexpr GSResID addOnStringsId = 32000;
constexpr Int32 addOnNameIndex = 1;
constexpr Int32 addOnDescriptionIndex = 2;
constexpr short noPromptStrings = 0;

}  // namespace

API_AddonType __ACDLL_CALL CheckEnvironment(API_EnvirParams* envir) {
    RSGetIndString(&envir->addOnInfo.name, addOnStringsId, addOnNameIndex, ACAPI_GetOwnResModule());
    RSGetIndString(&envir->addOnInfo.description, addOnStringsId, addOnDescriptionIndex,
                   ACAPI_GetOwnResModule());
    return APIAddon_Preload;
}

GSErrCode __ACDLL_CALL RegisterInterface() {
    return ACAPI_Register_Menu(KestranePalette::menuId, noPromptStrings, MenuCode_UserDef, MenuFlag_Default);
}

GSErrCode __ACENV_CALL Initialize() {
    GSErrCode error = ACAPI_Install_MenuHandler(KestranePalette::menuId, MenuCommandHandler);
    if (error != NoError) return error;

    error = KestranePalette::RegisterPaletteControlCallBack();
    if (error != NoError) return error;

    error = ACAPI_Notify_CatchSelectionChange(KestranePalette::SelectionChangeHandler);
    if (error != NoError) return error;

    return ACAPI_Notify_CatchProjectEvent(APINotify_Open, KestranePalette::OpenProjectHandler);
}

GSErrCode __ACENV_CALL FreeData() {
    return NoError;
}

GSErrCode __ACENV_CALL MenuCommandHandler(const API_MenuParams* menuParams) {
    if (menuParams->menuItemRef.menuResID != KestranePalette::menuId) return NoError;

    if (KestranePalette::HasInstance() && KestranePalette::GetInstance().IsVisible()) {
        KestranePalette::GetInstance().Hide();
        return NoError;
    }
    if (!KestranePalette::HasInstance()) KestranePalette::CreateInstance();
    KestranePalette::GetInstance().Show();
    return NoError;
}
