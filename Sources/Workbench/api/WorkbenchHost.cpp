#include "Workbench/api/WorkbenchHost.hpp"

#include <algorithm>
#include <string_view>

#include "ACAPinc.h"
#include "Workbench/api/Application.hpp"

namespace workbench {

namespace {

// What the one export translator's reference refers to: it only has to be recognised again.
const std::string_view generalTranslator = "General Translator";

bool IsGeneralTranslator(GSHandle reference) {
    return reference != nullptr &&
           BMGetHandleSize(reference) == static_cast<GSSize>(generalTranslator.size()) &&
           std::string_view(*reference, generalTranslator.size()) == generalTranslator;
}

GSErrCode ErrorOf(SaveOutcome outcome) {
    switch (outcome) {
        case SaveOutcome::done:
            return NoError;
        case SaveOutcome::stopped:
            return APIERR_CANCEL;
        case SaveOutcome::refused:
            return APIERR_REFUSEDPAR;
        case SaveOutcome::cannotWrite:
        case SaveOutcome::diskFull:
            return APIERR_GENERAL;
    }
    return APIERR_GENERAL;
}

}  // namespace

GSErrCode WorkbenchHost::ApplicationInfo(API_ServerApplicationInfo& info) {
    info.mainVersion = 26;
    info.releaseVersion = 0;
    info.language = application.GetSettings().language == Language::german ? "GER" : "INT";
    return NoError;
}

GSErrCode WorkbenchHost::ProjectInfo(API_ProjectInfo& info) {
    const Project& project = application.OpenProject();
    info.untitled = project.IsUntitled();
    if (info.untitled) return NoError;
    info.location = new IO::Location(hostkit::ToLocation(project.Location()));
    info.projectPath = new GS::UniString(project.Location().c_str(), CC_UTF8);
    info.projectName = new GS::UniString(project.Name().c_str(), CC_UTF8);
    return NoError;
}

GSErrCode WorkbenchHost::SpecialFolder(API_SpecFolderID id, IO::Location& location) {
    const std::filesystem::path& base = application.GetSettings().dataFolder;
    switch (id) {
        // The maker's folder stands in the path as in an installation; add-ons derive their own folders from
        // it.
        case API_DataFolderID:
            location = hostkit::ToLocation(base / "GRAPHISOFT" / "Archicad");
            break;
        case API_TemporaryFolderID:
            location = hostkit::ToLocation(base / "Temporary");
            break;
        default:
            return APIERR_BADPARS;
    }
    return NoError;
}

GSErrCode WorkbenchHost::Save(const API_FileSavePars& pars, const void* formatRecord) {
    if (pars.file == nullptr) return APIERR_BADPARS;
    if (pars.fileTypeID != APIFType_IfcFile) return APIERR_REFUSEDPAR;
    if (formatRecord == nullptr) return APIERR_BADPARS;

    const auto& ifc = *static_cast<const API_SavePars_Ifc*>(formatRecord);
    if (ifc.subType != API_IFC) return APIERR_REFUSEDPAR;
    if (!IsGeneralTranslator(ifc.translatorIdentifier.innerReference)) return APIERR_BADPARS;

    const std::filesystem::path file = hostkit::ToPath(*pars.file);
    switch (ifc.elementsToIfcExport) {
        case API_EntireProject:
            return ErrorOf(application.Write(file, nullptr).outcome);
        case API_FilteredElements:
            if (ifc.elementsSet == nullptr) return APIERR_BADPARS;
            return ErrorOf(application.Write(file, ifc.elementsSet).outcome);
        default:
            return APIERR_REFUSEDPAR;
    }
}

GSErrCode WorkbenchHost::ExportTranslators(GS::Array<API_IFCTranslatorIdentifier>& translators) {
    API_IFCTranslatorIdentifier translator;
    translator.innerReference =
        BMAllocateHandle(static_cast<GSSize>(generalTranslator.size()), ALLOCATE_CLEAR, 0);
    if (translator.innerReference == nullptr) return APIERR_MEMFULL;
    std::copy(generalTranslator.begin(), generalTranslator.end(), *translator.innerReference);
    translator.name = std::string(generalTranslator).c_str();
    translators.Push(translator);
    return NoError;
}

GSErrCode WorkbenchHost::ElementList(const API_ElemType& type, API_ElemFilterFlags filter,
                                     GS::Array<API_Guid>& elements) {
    if (type.typeID != API_ZombieElemID) return APIERR_REFUSEDPAR;
    if ((filter & ~static_cast<API_ElemFilterFlags>(APIFilt_In3D)) != 0) return APIERR_REFUSEDPAR;
    for (const workbench::Element& element : application.OpenProject().Elements()) {
        if ((filter & APIFilt_In3D) != 0 && !application.IsShown(element)) continue;
        elements.Push(element.guid);
    }
    return NoError;
}

GSErrCode WorkbenchHost::ElementHeader(API_Elem_Head& header) {
    const workbench::Element* element = application.OpenProject().FindByGuid(header.guid);
    if (element == nullptr) return APIERR_BADID;
    header.floorInd = static_cast<short>(element->storey);
    return NoError;
}

GSErrCode WorkbenchHost::Element(API_Element& element) {
    return ElementHeader(element.header);
}

GSErrCode WorkbenchHost::Element3DInfo(const API_Elem_Head& header, API_ElemInfo3D& info) {
    const workbench::Element* element = application.OpenProject().FindByGuid(header.guid);
    if (element == nullptr) return APIERR_BADID;
    const std::optional<Box3> box = application.BoundsOf(*element);
    if (!box) return APIERR_GENERAL;
    info.bounds = {box->min.x, box->min.y, box->min.z, box->max.x, box->max.y, box->max.z};
    return NoError;
}

void WorkbenchHost::MenuItemFlagsChanged(short, Int32, GSFlags) {
    application.Tell([](ApplicationObserver& observer) { observer.MenuFlagsChanged(); });
}

}  // namespace workbench
