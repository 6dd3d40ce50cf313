#pragma once

#include "ACAPinc.h"

namespace hostkit {

class CommandParameters;

// A call of another add-on's command.
struct CommandCall {
    API_ModulID module;
    GSType command;
    Int32 version;
    bool silent;  // without a word to the person
};

// What the programming interface asks the application. Called on the main thread, with parameters that have
// been checked; what an application leaves unanswered is BADID to the add-on.
class Host {
  public:
    virtual ~Host() = default;

    virtual GSErrCode ApplicationInfo(API_ServerApplicationInfo&) { return APIERR_BADID; }

    // The record's pointers come null; what they are set to becomes the record's own.
    virtual GSErrCode ProjectInfo(API_ProjectInfo&) { return APIERR_BADID; }

    virtual GSErrCode SpecialFolder(API_SpecFolderID, IO::Location&) { return APIERR_BADID; }

    // The format record belongs to the file type and may be null: API_SavePars_Ifc for APIFType_IfcFile,
    // API_SavePars_Picture for pictures, API_SavePars_Pdf for APIFType_PdfFile.
    virtual GSErrCode Save(const API_FileSavePars&, const void* /* formatRecord */) { return APIERR_BADID; }

    // The result's kind is the command's; null when the caller wants none.
    virtual GSErrCode CallCommand(const CommandCall&, const CommandParameters&, GSPtr /* result */) {
        return APIERR_MODULNOTINSTALLED;
    }

    // Publisher sets count from 0. The record comes zeroed but for its map, the array empty. Items are the
    // direct children of a set's root or of a folder, in display order; none for what has none.
    virtual GSErrCode PublisherSetCount(Int32& /* count */) { return APIERR_BADID; }
    virtual GSErrCode PublisherSet(Int32 /* index */, API_NavigatorSet&) { return APIERR_BADID; }
    virtual GSErrCode PublisherItems(const API_Guid& /* parent */, GS::Array<API_NavigatorItem>&) {
        return APIERR_BADID;
    }
    // Writes the files of these items, or of all of the set's (null), into the folder.
    virtual GSErrCode Publish(const API_PublishPars&, const GS::Array<API_Guid>* /* items */) {
        return APIERR_BADID;
    }

    // Replaces the open project.
    virtual GSErrCode Open(const API_FileOpenPars&) { return APIERR_BADID; }

    // An undoable command runs between these two; never nested. What it did is undone when it failed.
    virtual void BeginUndoable(const GS::UniString& /* name */) {}
    virtual void EndUndoable(bool /* succeeded */) {}
    // Inside an undoable command. The record's GUID becomes the new element's.
    virtual GSErrCode CreateElement(API_Element&) { return APIERR_BADID; }

    // The array comes empty.
    virtual GSErrCode ElementList(const API_ElemType&, API_ElemFilterFlags, GS::Array<API_Guid>&) {
        return APIERR_BADID;
    }

    virtual GSErrCode Element(API_Element&) { return APIERR_BADID; }
    virtual GSErrCode ElementHeader(API_Elem_Head&) { return APIERR_BADID; }
    virtual GSErrCode Element3DInfo(const API_Elem_Head&, API_ElemInfo3D&) { return APIERR_BADID; }

    // The array comes empty; the identifiers' references become the caller's.
    virtual GSErrCode ExportTranslators(GS::Array<API_IFCTranslatorIdentifier>&) { return APIERR_BADID; }

    virtual GSErrCode Projection3D(API_3DProjectionInfo&) { return APIERR_BADID; }
    // `onlyMode`: of the record only isPersp counts.
    virtual GSErrCode ChangeProjection3D(const API_3DProjectionInfo&, bool /* onlyMode */) {
        return APIERR_BADID;
    }
    virtual GSErrCode Window3D(API_3DWindowInfo&) { return APIERR_BADID; }
    virtual GSErrCode ChangeWindow3D(const API_3DWindowInfo&) { return APIERR_BADID; }
    // The record comes zeroed; the shapes become the caller's.
    virtual GSErrCode CuttingPlanes(API_3DCutPlanesInfo&) { return APIERR_BADID; }
    virtual GSErrCode ChangeCuttingPlanes(const API_3DCutPlanesInfo&) { return APIERR_BADID; }
    virtual GSErrCode SurveyPointTransformation(API_Tranmat&) { return APIERR_BADID; }

    virtual GSErrCode ShowAllIn3D() { return APIERR_BADID; }
    virtual GSErrCode ShowSelectionIn3D() { return APIERR_BADID; }
    virtual GSErrCode ZoomToFit() { return APIERR_BADID; }
    virtual GSErrCode ZoomToElements(const GS::Array<API_Guid>&) { return APIERR_BADID; }
    virtual GSErrCode ChangeWindow(const API_WindowInfo&) { return APIERR_BADID; }
    // The record comes zeroed.
    virtual GSErrCode CurrentWindow(API_WindowInfo&) { return APIERR_BADID; }

    // False also for what is no element.
    virtual bool PassesFilter(const API_Guid&, API_ElemFilterFlags) { return false; }
    virtual GSErrCode ElementInfoString(const API_Guid&, GS::UniString&) { return APIERR_BADID; }
    // The element's own identifier and the one of the file that it came with, null for none.
    virtual GSErrCode IfcIdentifier(const API_Guid&, API_Guid& /* own */, API_Guid& /* external */) {
        return APIERR_BADID;
    }
    // At least one of the identifiers is given, the other may be null; the array comes empty.
    virtual GSErrCode ElementsByIfcIdentifier(const API_Guid* /* own */, const API_Guid* /* external */,
                                              GS::Array<API_Guid>&) {
        return APIERR_BADID;
    }

    // Adds to the selection, or takes from it.
    virtual GSErrCode Select(const GS::Array<API_Neig>&, bool /* add */) { return APIERR_BADID; }
    virtual GSErrCode DeselectAll() { return APIERR_BADID; }
    // The record comes zeroed, the array empty.
    virtual GSErrCode Selection(API_SelectionInfo&, GS::Array<API_Neig>&) { return APIERR_BADID; }

    // What the page has called is done, whatever came of it. Must not throw.
    virtual void PageCallEnded() {}

    // An item's new flags, for the menu bar.
    virtual void MenuItemFlagsChanged(short /* menuStrings */, Int32 /* item */, GSFlags) {}
};

}  // namespace hostkit
