#pragma once

#include "ACAPinc.h"

namespace hostkit {

// What the programming interface asks the application. Called on the main thread, with parameters that have
// been checked; what an application leaves unanswered is BADID to the add-on.
class Host {
  public:
    virtual ~Host() = default;

    virtual GSErrCode ApplicationInfo(API_ServerApplicationInfo&) { return APIERR_BADID; }

    // The record's pointers come null; what they are set to becomes the record's own.
    virtual GSErrCode ProjectInfo(API_ProjectInfo&) { return APIERR_BADID; }

    virtual GSErrCode SpecialFolder(API_SpecFolderID, IO::Location&) { return APIERR_BADID; }

    // The format record belongs to the file type and may be null: API_SavePars_Ifc for APIFType_IfcFile.
    virtual GSErrCode Save(const API_FileSavePars&, const void* /* formatRecord */) { return APIERR_BADID; }

    // The array comes empty.
    virtual GSErrCode ElementList(const API_ElemType&, API_ElemFilterFlags, GS::Array<API_Guid>&) {
        return APIERR_BADID;
    }

    virtual GSErrCode Element(API_Element&) { return APIERR_BADID; }
    virtual GSErrCode ElementHeader(API_Elem_Head&) { return APIERR_BADID; }
    virtual GSErrCode Element3DInfo(const API_Elem_Head&, API_ElemInfo3D&) { return APIERR_BADID; }

    // The array comes empty; the identifiers' references become the caller's.
    virtual GSErrCode ExportTranslators(GS::Array<API_IFCTranslatorIdentifier>&) { return APIERR_BADID; }

    // An item's new flags, for the menu bar.
    virtual void MenuItemFlagsChanged(short /* menuStrings */, Int32 /* item */, GSFlags) {}
};

}  // namespace hostkit
