#include "AddOn/PlayedHost.hpp"

#include <algorithm>
#include <fstream>
#include <sstream>

#include "HostKit/API/CommandParameters.hpp"
#include "HostKit/API/IfcGuid.hpp"
#include "HostKit/API/PropertyMappingCommands.hpp"
#include "HostKit/GSRoot/Text.hpp"

namespace tests {

PlayedHost::PlayedElement* PlayedHost::Find(const API_Guid& guid) {
    const auto found = std::find_if(elements.begin(), elements.end(),
                                    [&](const PlayedElement& element) { return element.guid == guid; });
    return found == elements.end() ? nullptr : &*found;
}

GSErrCode PlayedHost::ApplicationInfo(API_ServerApplicationInfo& info) {
    info.language = language.c_str();
    return NoError;
}

GSErrCode PlayedHost::SpecialFolder(API_SpecFolderID id, IO::Location& location) {
    if (id != API_TemporaryFolderID && id != API_DataFolderID) return APIERR_BADPARS;
    location = hostkit::ToLocation(id == API_DataFolderID ? temporaryFolder / "GRAPHISOFT" : temporaryFolder);
    return NoError;
}

GSErrCode PlayedHost::Save(const API_FileSavePars& pars, const void* formatRecord) {
    calls.push_back("Save");
    std::ostringstream words;
    if (pars.fileTypeID == APIFType_PdfFile) {
        const auto& page = *static_cast<const API_SavePars_Pdf*>(formatRecord);
        words << "PDF " << page.sizeX << " x " << page.sizeY << " margins "
              << page.leftMargin + page.topMargin + page.rightMargin + page.bottomMargin;
    } else {
        const auto& picture = *static_cast<const API_SavePars_Picture*>(formatRecord);
        words << "picture " << pars.fileTypeID << " depth " << picture.colorDepth
              << (picture.view2D ? " 2D" : "") << (picture.crop ? " cropped" : "")
              << (picture.keepSelectionHighlight ? " highlighted" : "")
              << (picture.dithered ? " dithered" : "");
    }
    saved.push_back(words.str());
    std::ofstream(hostkit::ToPath(*pars.file)) << saved.back();
    return NoError;
}

GSErrCode PlayedHost::CallCommand(const hostkit::CommandCall& call,
                                  const hostkit::CommandParameters& parameters, GSPtr result) {
    if (call.module.developerID != 1198731108 ||
        (call.module.localID != 1322668197 && call.module.localID != hostkit::mapping::addOn.localID))
        return APIERR_MODULNOTINSTALLED;
    if (call.version != 1) return APIERR_MODULCMDVERSNOTSUPPORTED;
    std::string words = call.silent ? "" : "loud ";
    for (int shift = 24; shift >= 0; shift -= 8)
        words += static_cast<char>(call.command >> shift);
    for (const char* name : {"Mode", "FileName", "ConfigFile", "presetType", "presetName"})
        if (const auto* text = parameters.FindText(name)) words += " " + std::string(name) + "=" + *text;
    commands.push_back(words);
    if (const auto* text = static_cast<const GS::UniString*>(parameters.FindPointer("newMappings")))
        mappings = ToText(*text);
    if (result != nullptr) {
        *reinterpret_cast<IO::Location*>(result) = dwgConfiguration;
    } else if (const auto* url = parameters.FindText("FileName")) {
        std::ofstream(hostkit::ToPath(hostkit::LocationOfUrl(*url))) << "drawing";
    }
    return NoError;
}

GSErrCode PlayedHost::Open(const API_FileOpenPars& pars) {
    calls.push_back("Open");
    if (pars.fileTypeID != APIFType_IfcFile || pars.libGiven || pars.useStoredLib || pars.enableSaveAlert ||
        pars.archiveLib != nullptr)
        return APIERR_BADPARS;
    opened.push_back(hostkit::ToPath(*pars.file));
    whileOpening();
    const auto model = models.find(opened.back().filename().string());
    if (model == models.end()) return APIERR_BADNAME;
    elements = model->second;
    return NoError;
}

void PlayedHost::BeginUndoable(const GS::UniString& name) {
    calls.push_back("Begin " + ToText(name));
}

void PlayedHost::EndUndoable(bool succeeded) {
    calls.push_back(succeeded ? "End" : "Revert");
}

GSErrCode PlayedHost::CreateElement(API_Element& element) {
    created.push_back(element.header.guid.timeLow);
    return NoError;
}

GSErrCode PlayedHost::PublisherSetCount(Int32& count) {
    count = static_cast<Int32>(publisherSets.size());
    return NoError;
}

GSErrCode PlayedHost::PublisherSet(Int32 index, API_NavigatorSet& set) {
    const PlayedSet& played = publisherSets.at(static_cast<std::size_t>(index));
    played.name.copy(set.name, sizeof set.name - 1);
    set.guid = played.guid;
    set.rootGuid = played.root;
    return NoError;
}

GSErrCode PlayedHost::PublisherItems(const API_Guid& parent, GS::Array<API_NavigatorItem>& list) {
    const auto found = publisherItems.find(parent);
    if (found == publisherItems.end()) return NoError;
    for (const PlayedItem& played : found->second) {
        API_NavigatorItem& item = list.PushNew();
        hostkit::Utf16(played.name).copy(item.uName, API_UniLongNameLen - 1);
        item.guid = played.guid;
    }
    return NoError;
}

GSErrCode PlayedHost::Publish(const API_PublishPars& pars, const GS::Array<API_Guid>* items) {
    published.push_back(hostkit::ToPath(*pars.path));
    if (publisherSets.empty() || pars.guid != publisherSets[0].guid || items->GetSize() != 1)
        return APIERR_BADPARS;
    const auto found = publisherFiles.find(items->GetFirst());
    if (found == publisherFiles.end()) return APIERR_BADID;
    for (const std::string& file : found->second)
        std::ofstream(published.back() / file) << file;
    return NoError;
}

GSErrCode PlayedHost::ElementList(const API_ElemType&, API_ElemFilterFlags, GS::Array<API_Guid>& list) {
    calls.push_back("ElementList");
    for (const auto& element : elements)
        list.Push(element.guid);
    return NoError;
}

GSErrCode PlayedHost::Element(API_Element& element) {
    const auto* found = Find(element.header.guid);
    return found != nullptr && found->readable ? NoError : static_cast<GSErrCode>(APIERR_BADID);
}

GSErrCode PlayedHost::ElementHeader(API_Elem_Head& header) {
    return Find(header.guid) != nullptr ? NoError : static_cast<GSErrCode>(APIERR_BADID);
}

GSErrCode PlayedHost::Element3DInfo(const API_Elem_Head& header, API_ElemInfo3D& info) {
    const auto& bounds = Find(header.guid)->bounds;
    if (!bounds) return APIERR_GENERAL;
    info.bounds = *bounds;
    return NoError;
}

bool PlayedHost::PassesFilter(const API_Guid& guid, API_ElemFilterFlags filter) {
    const auto* found = Find(guid);
    return found != nullptr && filter == APIFilt_In3D && found->shown;
}

GSErrCode PlayedHost::ElementInfoString(const API_Guid& guid, GS::UniString& text) {
    text = GS::UniString(Find(guid)->idText.c_str(), CC_UTF8);
    return text.IsEmpty() ? static_cast<GSErrCode>(APIERR_BADELEMENTTYPE) : NoError;
}

GSErrCode PlayedHost::IfcIdentifier(const API_Guid& guid, API_Guid& own, API_Guid& external) {
    own = guid;
    external = Find(guid)->external;
    return NoError;
}

GSErrCode PlayedHost::ElementsByIfcIdentifier(const API_Guid*, const API_Guid* external,
                                              GS::Array<API_Guid>& list) {
    calls.push_back("ElementsByIfcIdentifier");
    for (const auto& element : elements)
        if (external != nullptr && element.external == *external) list.Push(element.guid);
    return NoError;
}

GSErrCode PlayedHost::Projection3D(API_3DProjectionInfo& info) {
    calls.push_back("Projection3D");
    info = projection;
    return NoError;
}

GSErrCode PlayedHost::ChangeProjection3D(const API_3DProjectionInfo& info, bool onlyMode) {
    calls.push_back(onlyMode ? info.isPersp ? "SwitchToPerspective" : "SwitchToAxonometry"
                             : "ChangeProjection3D");
    if (!onlyMode) {
        projection = info;
    } else if (info.isPersp) {
        projection = {};
        projection.isPersp = true;
        projection.u.persp.viewCone = viewConeAfterSwitch;
    }
    return NoError;
}

GSErrCode PlayedHost::Window3D(API_3DWindowInfo& info) {
    calls.push_back("Window3D");
    info = window;
    return NoError;
}

GSErrCode PlayedHost::ChangeWindow3D(const API_3DWindowInfo& info) {
    calls.push_back("ChangeWindow3D");
    window = info;
    return NoError;
}

GSErrCode PlayedHost::CuttingPlanes(API_3DCutPlanesInfo& info) {
    calls.push_back("CuttingPlanes");
    info.isCutPlanes = planesOn;
    info.nShapes = static_cast<short>(planes.size());
    if (planes.empty()) return NoError;
    info.shapes = reinterpret_cast<API_3DCutShapeType**>(
        BMAllocateHandle(static_cast<GSSize>(planes.size() * sizeof(planes[0])), ALLOCATE_CLEAR, 0));
    std::copy(planes.begin(), planes.end(), *info.shapes);
    return NoError;
}

GSErrCode PlayedHost::ChangeCuttingPlanes(const API_3DCutPlanesInfo& info) {
    calls.push_back("ChangeCuttingPlanes");
    planesOn = info.isCutPlanes;
    planes.clear();
    if (info.shapes != nullptr) planes.assign(*info.shapes, *info.shapes + info.nShapes);
    return NoError;
}

GSErrCode PlayedHost::SurveyPointTransformation(API_Tranmat& matrix) {
    matrix = survey;
    return NoError;
}

GSErrCode PlayedHost::ShowAllIn3D() {
    calls.push_back("ShowAllIn3D");
    for (auto& element : elements)
        element.shown = true;
    return NoError;
}

GSErrCode PlayedHost::ShowSelectionIn3D() {
    calls.push_back("ShowSelectionIn3D");
    for (auto& element : elements)
        element.shown = std::find(selection.begin(), selection.end(), element.guid) != selection.end();
    return NoError;
}

GSErrCode PlayedHost::ZoomToFit() {
    calls.push_back("ZoomToFit");
    return NoError;
}

GSErrCode PlayedHost::ZoomToElements(const GS::Array<API_Guid>& list) {
    calls.push_back("ZoomToElements");
    zoomed.assign(list.begin(), list.end());
    return NoError;
}

GSErrCode PlayedHost::ChangeWindow(const API_WindowInfo& info) {
    calls.push_back("ChangeWindow");
    front = info.typeID;
    return NoError;
}

GSErrCode PlayedHost::CurrentWindow(API_WindowInfo& info) {
    info.typeID = front;
    return NoError;
}

GSErrCode PlayedHost::Select(const GS::Array<API_Neig>& list, bool add) {
    calls.push_back(add ? "Select" : "Deselect");
    for (const API_Neig& neig : list) {
        std::erase(selection, neig.guid);
        if (add) selection.push_back(neig.guid);
    }
    return NoError;
}

GSErrCode PlayedHost::DeselectAll() {
    calls.push_back("DeselectAll");
    selection.clear();
    return NoError;
}

GSErrCode PlayedHost::Selection(API_SelectionInfo& info, GS::Array<API_Neig>& list) {
    // A marquee comes with the answer even when it is an error: the caller's to release.
    info.marquee.coords = reinterpret_cast<API_Coord**>(BMAllocateHandle(sizeof(API_Coord), 0, 0));
    for (const API_Guid& guid : selection)
        list.PushNew(guid);
    return selection.empty() ? static_cast<GSErrCode>(APIERR_NOSEL) : NoError;
}

PlayedHostTest::PlayedHostTest()
    : session(std::in_place, host, driver,
              hostkit::Resources::Load(std::filesystem::path(KESTRANE_SHARE) / "resources", "INT")) {
    host.temporaryFolder = folder.Path();
    host.elements = {{Guid(1), APINULLGuid, "W-001"}, {Guid(2), Guid(0xF2), "W-\"002\\\""}};
    hostkit::LoadAddOn();
    session->GetRegistry().SendPaletteMessage(APIPalMsg_OpenPalette);
}

PlayedHostTest::~PlayedHostTest() {
    EndHost();
    EXPECT_EQ(hostkit::LiveHandles(), 0) << "a host handle was not released";
}

void PlayedHostTest::EndHost() {
    hostkit::UnloadAddOn();
    session.reset();
}

std::size_t PlayedHostTest::CountScripts(const std::string& script) const {
    const auto scripts = driver.Scripts();
    return static_cast<std::size_t>(std::count_if(
        scripts.begin(), scripts.end(), [&](const auto& executed) { return executed.text == script; }));
}

bool PlayedHostTest::CallForBool(const std::string& function, const nlohmann::json& argument) {
    const auto result = GS::DynamicCast<DG::JSValue>(Call(function, ToScript(argument)));
    EXPECT_EQ(result->GetType(), DG::JSValue::BOOL);
    return result->GetBool();
}

std::string PlayedHostTest::CallForText(const std::string& function, const std::string& argument) {
    try {
        return ToText(GS::DynamicCast<DG::JSValue>(Call(function, Text(argument)))->GetString());
    } catch (const GS::Exception& exception) {
        return exception.what();
    }
}

std::vector<nlohmann::json> PlayedHostTest::CallForComponents(const std::string& function,
                                                              const nlohmann::json& argument) {
    std::vector<nlohmann::json> components;
    const auto result = GS::DynamicCast<DG::JSArray>(Call(function, ToScript(argument)));
    for (const auto& item : result->GetItemArray())
        components.push_back(nlohmann::json::parse(ToText(GS::DynamicCast<DG::JSValue>(item)->GetString())));
    return components;
}

API_Guid Guid(UInt32 number) {
    return {number, 0x1111, 0x2222, {1, 2, 3, 4, 5, 6, 7, 8}};
}

std::string IfcGuid(UInt32 number) {
    return hostkit::ToIfcGuid(Guid(number));
}

std::vector<std::pair<std::string, std::string>> SpoilEach(const nlohmann::ordered_json& request,
                                                           const std::string& place,
                                                           const std::set<std::string>& mayBeMissing) {
    std::vector<std::pair<std::string, std::string>> cases;
    const nlohmann::ordered_json::json_pointer pointer(place);
    for (const auto& member : request[pointer].items()) {
        nlohmann::ordered_json spoilt = request;
        spoilt[pointer][member.key()] = 5;
        cases.emplace_back(spoilt.dump(), "Bad cast.");
        spoilt[pointer].erase(member.key());
        cases.emplace_back(spoilt.dump(), mayBeMissing.count(member.key()) != 0 ? "" : "Null reference.");
    }
    return cases;
}

GS::Ref<DG::JSBase> ToScript(const nlohmann::json& value) {
    if (value.is_boolean()) return new DG::JSValue(value.get<bool>());
    if (value.is_number_integer()) return new DG::JSValue(value.get<Int32>());
    if (value.is_number()) return new DG::JSValue(value.get<double>());
    if (value.is_string()) return Text(value.get<std::string>());
    if (value.is_array()) {
        GS::Ref<DG::JSArray> array = new DG::JSArray();
        for (const auto& item : value)
            array->AddItem(ToScript(item));
        return array;
    }
    if (value.is_object()) {
        GS::Ref<DG::JSObject> object = new DG::JSObject();
        for (const auto& [name, item] : value.items())
            object->AddItem(GS::UniString(name.c_str()), ToScript(item));
        return object;
    }
    return nullptr;
}

}  // namespace tests
