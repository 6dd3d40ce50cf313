#include "Workbench/api/WorkbenchHost.hpp"

#include <algorithm>
#include <string_view>

#include "ACAPinc.h"
#include "HostKit/API/PropertyMappingCommands.hpp"
#include "HostKit/GSRoot/Text.hpp"
#include "Workbench/api/Application.hpp"

namespace workbench {

namespace {

constexpr API_ModulID dxfDwgAddOn = {1198731108, 1322668197};

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
    const Project& project = Settled().OpenProject();
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

// The host's own add-ons that are installed.
GSErrCode WorkbenchHost::CallCommand(const hostkit::CommandCall& call,
                                     const hostkit::CommandParameters& parameters, GSPtr result) {
    const auto isFor = [&module = call.module](const API_ModulID& addOn) {
        return module.developerID == addOn.developerID && module.localID == addOn.localID;
    };
    if (isFor(dxfDwgAddOn)) return CallDxfDwg(call, parameters, result);
    if (isFor(hostkit::mapping::addOn)) return presets.Call(call, parameters);
    return APIERR_MODULNOTINSTALLED;
}

// What the add-on asks is answered from what it has created, too.
Application& WorkbenchHost::Settled() const {
    application.Settle();
    return application;
}

GSErrCode WorkbenchHost::Save(const API_FileSavePars& pars, const void* formatRecord) {
    if (pars.file == nullptr) return APIERR_BADPARS;
    if (formatRecord == nullptr) return APIERR_BADPARS;
    Settled();
    const std::filesystem::path file = hostkit::ToPath(*pars.file);
    switch (pars.fileTypeID) {
        case APIFType_IfcFile:
            return SaveAsIfc(file, *static_cast<const API_SavePars_Ifc*>(formatRecord));
        case APIFType_PNGFile:
        case APIFType_JPEGFile:
            return SaveAsPicture(file, pars.fileTypeID,
                                 *static_cast<const API_SavePars_Picture*>(formatRecord));
        case APIFType_PdfFile:
            return SaveAsPdf(file, *static_cast<const API_SavePars_Pdf*>(formatRecord));
        default:
            return APIERR_REFUSEDPAR;
    }
}

GSErrCode WorkbenchHost::SaveAsIfc(const std::filesystem::path& file, const API_SavePars_Ifc& pars) {
    if (pars.subType != API_IFC) return APIERR_REFUSEDPAR;
    if (!IsGeneralTranslator(pars.translatorIdentifier.innerReference)) return APIERR_BADPARS;
    switch (pars.elementsToIfcExport) {
        case API_EntireProject:
            return ErrorOf(WriteMapped(file, nullptr).outcome);
        case API_FilteredElements:
            if (pars.elementsSet == nullptr) return APIERR_BADPARS;
            return ErrorOf(WriteMapped(file, pars.elementsSet).outcome);
        default:
            return APIERR_REFUSEDPAR;
    }
}

SaveResult WorkbenchHost::WriteMapped(const std::filesystem::path& file,
                                      const GS::Array<API_Guid>* elements) {
    SaveResult result = application.Write(file, elements, presets.Applying());
    presets.Unapply();
    return result;
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
    for (const workbench::Element& element : Settled().OpenProject().Elements()) {
        if ((filter & APIFilt_In3D) != 0 && !application.IsShown(element)) continue;
        elements.Push(element.guid);
    }
    return NoError;
}

GSErrCode WorkbenchHost::ElementHeader(API_Elem_Head& header) {
    const workbench::Element* element = Settled().OpenProject().FindByGuid(header.guid);
    if (element == nullptr) return APIERR_BADID;
    header.floorInd = static_cast<short>(element->storey);
    return NoError;
}

GSErrCode WorkbenchHost::Element(API_Element& element) {
    const GSErrCode error = ElementHeader(element.header);
    if (error == NoError) element.header.origin = application.project;
    return error;
}

GSErrCode WorkbenchHost::Open(const API_FileOpenPars& pars) {
    if (pars.fileTypeID != APIFType_IfcFile) return APIERR_REFUSEDPAR;
    switch (application.Open(hostkit::ToPath(*pars.file), Who::addOn)) {
        case Application::OpenOutcome::opened:
            return NoError;
        case Application::OpenOutcome::kept:
            return APIERR_CANCEL;
        case Application::OpenOutcome::failed:
            break;
    }
    return APIERR_GENERAL;
}

void WorkbenchHost::BeginUndoable(const GS::UniString& name) {
    application.BeginCommand(hostkit::ToUtf8(name));
}

void WorkbenchHost::EndUndoable(bool succeeded) {
    application.EndCommand(succeeded);
}

GSErrCode WorkbenchHost::CreateElement(API_Element& element) {
    const auto source = std::static_pointer_cast<const Project>(element.header.origin);
    const EditHistory::Created created = application.Create(source, element.header.guid);
    switch (created.refusal) {
        case EditHistory::Refusal::none:
            element.header.guid = created.guid;
            return NoError;
        case EditHistory::Refusal::otherSchema:
            return APIERR_REFUSEDPAR;
        case EditHistory::Refusal::noElement:
            return APIERR_BADPARS;
        case EditHistory::Refusal::noStep:
            break;
    }
    return APIERR_NEEDSUNDOSCOPE;
}

GSErrCode WorkbenchHost::Element3DInfo(const API_Elem_Head& header, API_ElemInfo3D& info) {
    const workbench::Element* element = Settled().OpenProject().FindByGuid(header.guid);
    if (element == nullptr) return APIERR_BADID;
    const std::optional<Box3> box = application.BoundsOf(*element);
    if (!box) return APIERR_GENERAL;
    info.bounds = {box->min.x, box->min.y, box->min.z, box->max.x, box->max.y, box->max.z};
    return NoError;
}

bool WorkbenchHost::PassesFilter(const API_Guid& guid, API_ElemFilterFlags filter) {
    const workbench::Element* element = Settled().OpenProject().FindByGuid(guid);
    if (element == nullptr || (filter & ~static_cast<API_ElemFilterFlags>(APIFilt_In3D)) != 0) return false;
    return (filter & APIFilt_In3D) == 0 || application.IsShown(*element);
}

GSErrCode WorkbenchHost::ElementInfoString(const API_Guid& guid, GS::UniString& text) {
    const workbench::Element* element = Settled().OpenProject().FindByGuid(guid);
    if (element == nullptr) return APIERR_BADID;
    text = GS::UniString(element->idText.c_str(), CC_UTF8);
    return NoError;
}

GSErrCode WorkbenchHost::IfcIdentifier(const API_Guid& guid, API_Guid& own, API_Guid& external) {
    const workbench::Element* element = Settled().OpenProject().FindByGuid(guid);
    if (element == nullptr) return APIERR_BADID;
    own = element->guid;
    external = element->externalIfcId;
    return NoError;
}

GSErrCode WorkbenchHost::ElementsByIfcIdentifier(const API_Guid* own, const API_Guid* external,
                                                 GS::Array<API_Guid>& elements) {
    const Project& project = Settled().OpenProject();
    if (external == nullptr) {
        if (project.FindByGuid(*own) != nullptr) elements.Push(*own);
        return NoError;
    }
    for (const workbench::Element* element : project.FindByExternalIfcId(*external))
        if (own == nullptr || element->guid == *own) elements.Push(element->guid);
    return NoError;
}

bool WorkbenchHost::KnowsAny(const std::vector<API_Guid>& elements) const {
    const Project& project = Settled().OpenProject();
    return std::any_of(elements.begin(), elements.end(),
                       [&](const API_Guid& guid) { return project.FindByGuid(guid) != nullptr; });
}

GSErrCode WorkbenchHost::Select(const GS::Array<API_Neig>& elements, bool add) {
    std::vector<API_Guid> guids;
    guids.reserve(elements.GetSize());
    for (const API_Neig& neig : elements)
        guids.push_back(neig.guid);
    if (!guids.empty() && !KnowsAny(guids)) return APIERR_BADID;
    if (add) {
        application.AddToSelection(guids, Who::addOn);
    } else {
        application.TakeFromSelection(guids, Who::addOn);
    }
    return NoError;
}

GSErrCode WorkbenchHost::DeselectAll() {
    application.Select({}, Who::addOn);
    return NoError;
}

GSErrCode WorkbenchHost::Selection(API_SelectionInfo& info, GS::Array<API_Neig>& elements) {
    const auto& selection = application.Selection();
    if (selection.empty()) return APIERR_NOSEL;
    info.typeID = API_SelElems;
    info.sel_nElem = info.sel_nElemEdit = static_cast<Int32>(selection.size());
    for (const workbench::Element* element : selection)
        elements.PushNew(element->guid);
    return NoError;
}

void WorkbenchHost::MenuItemFlagsChanged(short, Int32, GSFlags) {
    application.Tell([](ApplicationObserver& observer) { observer.MenuFlagsChanged(); });
}

}  // namespace workbench
