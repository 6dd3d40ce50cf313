#include "palette/Elements.hpp"
#include "palette/KestranePalette.hpp"

#include <cstring>

namespace {

/// The windows in which the palette is enabled. Its items are disabled by message, not for want of a
/// selection, so "selection only" is not among them.
constexpr GSFlags enabledIn = API_PalEnabled_FloorPlan | API_PalEnabled_Section | API_PalEnabled_3D |
                              API_PalEnabled_Detail | API_PalEnabled_Layout | API_PalEnabled_Worksheet |
                              API_PalEnabled_Elevation | API_PalEnabled_InteriorElevation |
                              API_PalEnabled_DocumentFrom3D;

API_Guid PaletteGuid() {
    return GSGuid2APIGuid(GS::Guid(KESTPALETTEGUID));
}

/// The sum of the GUID's words: unique enough among the palettes of one host.
Int32 ReferenceValue() {
    const API_Guid guid = PaletteGuid();
    UInt32 words[4];
    static_assert(sizeof words == sizeof guid);
    std::memcpy(words, &guid, sizeof words);
    return static_cast<Int32>(words[0] + words[1] + words[2] + words[3]);
}

bool IsPaletteVisible() {
    return KestranePalette::HasInstance() && KestranePalette::GetInstance().IsVisible();
}

/// A plain record, kept even without a palette.
API_Coord3D modelCentre = {};

API_Coord3D CentreOf(const API_Box3D& box) {
    return {(box.xMin + box.xMax) * 0.5, (box.yMin + box.yMax) * 0.5, (box.zMin + box.zMax) * 0.5};
}

}  // namespace

GSErrCode KestranePalette::RegisterPaletteControlCallBack() {
    return ACAPI_RegisterModelessWindow(ReferenceValue(), PaletteControlCallBack, enabledIn, PaletteGuid());
}

GSErrCode __ACENV_CALL KestranePalette::PaletteControlCallBack(Int32, API_PaletteMessageID messageId,
                                                               GS::IntPtr param) {
    switch (messageId) {
        case APIPalMsg_ClosePalette:
            if (HasInstance()) GetInstance().Hide();
            break;
        case APIPalMsg_HidePalette_Begin:
            if (IsPaletteVisible()) GetInstance().Hide();
            break;
        case APIPalMsg_HidePalette_End:
            // Shows it also when the person, not the message before, had hidden it.
            if (HasInstance() && !GetInstance().IsVisible()) GetInstance().Show();
            break;
        case APIPalMsg_DisableItems_Begin:
            if (IsPaletteVisible()) GetInstance().DisableItems();
            break;
        case APIPalMsg_DisableItems_End:
            if (IsPaletteVisible()) GetInstance().EnableItems();
            break;
        case APIPalMsg_OpenPalette:
            if (!HasInstance()) CreateInstance();
            GetInstance().Show();
            break;
        case APIPalMsg_IsPaletteVisible:
            *reinterpret_cast<bool*>(param) = IsPaletteVisible();
            break;
        default:
            break;
    }
    return NoError;
}

GSErrCode __ACENV_CALL KestranePalette::SelectionChangeHandler(const API_Neig*) {
    if (HasInstance()) GetInstance().UpdateSelectedElements();
    return NoError;
}

GSErrCode __ACENV_CALL KestranePalette::OpenProjectHandler(API_NotifyEventID, Int32) {
    modelCentre = CentreOf(GetBoundingBox());
    if (HasInstance()) GetInstance().OpenedProject();
    return NoError;
}

const API_Coord3D& KestranePalette::GetModelCentre() {
    return modelCentre;
}

void KestranePalette::OpenedProject() {
    browser.ExecuteJS("RequestFileName()");
}

void KestranePalette::SetAddComponentFlag(bool flag) {
    if (HasInstance()) GetInstance().addComponentFlag = flag;
}

void KestranePalette::UpdateSelectedElements() {
    if (addComponentFlag) browser.ExecuteJS("UpdateSelectedElements()");
}
