#include "script/ScriptObject.hpp"

#include "palette/PublisherSets.hpp"
#include "palette/Viewpoint.hpp"
#include "script/ScriptValues.hpp"

namespace {

using Value = GS::Ref<DG::JSBase>;

struct ScriptFunction {
    const char* name;
    Value (*body)(const Value& argument);
};

Value Text(const GS::UniString& text) {
    return ConvertToJavaScriptVariable(text);
}

Value Done() {
    return ConvertToJavaScriptVariable(true);
}

Value GetResourceFolder(const Value&) {
    return Text(KestranePalette::GetInstance().GetResourceFolder());
}

void Tell(const GS::UniString& message) {
    DG::InformationAlert(message, GS::UniString(), "OK");
}

GS::Array<API_Guid> ElementsOf(const Value& ifcGuids) {
    return KestranePalette::GetElementsFromJSIfcGuids(GetStringArrayFromJSVariable(ifcGuids));
}

Value HighlightElements(const Value& ifcGuids) {
    KestranePalette::HighlightSelectedElements(KestranePalette::GetElementNeigs(ElementsOf(ifcGuids)));
    return Done();
}

Value ZoomToElement(const Value& ifcGuids) {
    const GS::Array<API_Guid> elements = ElementsOf(ifcGuids);
    const bool zoomed = elements.GetSize() == 1 && KestranePalette::ZoomToElement(elements.GetFirst());
    return ConvertToJavaScriptVariable(zoomed);
}

Value GetElementNames(const Value& ifcGuids) {
    return ConvertToJavaScriptVariable(
        KestranePalette::GetElementNames(GetStringArrayFromJSVariable(ifcGuids)));
}

Value AlertAPI(const Value& message) {
    Tell(GetStringFromJavaScriptVariable(message));
    return Done();
}

Value SelectViewpoint(const Value& viewpoint) {
    KestranePalette::ACViewpoint read;
    const bool readable =
        KestranePalette::GetViewpointFromJSObject(GetObjectFromJSVariable(viewpoint), &read);
    if (readable) KestranePalette::SelectViewpoint(read);
    return ConvertToJavaScriptVariable(readable);
}

Value GetSelectedElements(const Value&) {
    return ConvertToJavaScriptVariable(KestranePalette::GetSelectedElements());
}

Value AddComponent(const Value& argument) {
    bool flag = false;
    GetBoolFromJSVariable(argument, &flag);
    KestranePalette::SetAddComponentFlag(flag);
    return Done();
}

Value AddViewpoint(const Value&) {
    return Text(KestranePalette::GetViewpoint());
}

Value ImportIfcModel(const Value& content) {
    KestranePalette::ImportIfcModel(GetStringFromJavaScriptVariable(content));
    return Done();
}

Value RegisterIfcFileName(const Value& name) {
    KestranePalette::SetIfcFileName(GetStringFromJavaScriptVariable(name));
    return Done();
}

Value RequestFileName(const Value&) {
    return Text(KestranePalette::GetProjectName());
}

Value GetIfcFile(const Value& fileName) {
    return Text(KestranePalette::ExportIfcFile(GetStringFromJavaScriptVariable(fileName)));
}

Value GetApplicationInfo(const Value&) {
    return Text(KestranePalette::GetApplicationInfo());
}

Value ImportIfcFiles(const Value& request) {
    KestranePalette::ImportIfcModels(GetStringFromJavaScriptVariable(request));
    return Done();
}

Value OpenIfcModels(const Value&) {
    KestranePalette::OpenIfcModels();
    return Done();
}

Value ExportIFCModel(const Value& request) {
    KestranePalette::ExportIFCModel(GetStringFromJavaScriptVariable(request));
    return Done();
}

Value GetIfcDocuments(const Value&) {
    return Text(KestranePalette::GetIfcDoucments());
}

Value Create2dPlan(const Value& argument) {
    if (KestranePalette::Is3DView()) {
        Tell(KestranePalette::IsGerman() ? "Die aktuelle Ansicht ist keine 2D Ansicht."
                                         : "Current view isn't 2D view.");
        return Text(GS::UniString());
    }
    int kind = 0;
    GetIntegerFromJSVariable(argument, &kind);
    const GS::UniString path = KestranePalette::Create2dPlan(kind);
    if (path.IsEmpty()) Tell("Can't create a 2D Plan.");
    return Text(path);
}

Value Export2dPlan(const Value& request) {
    KestranePalette::Export2dPlan(GetStringFromJavaScriptVariable(request));
    return Done();
}

Value GetPlanDocuments(const Value&) {
    return Text(KestranePalette::GetPlanDocuments());
}

Value ExportSnapshot(const Value& request) {
    KestranePalette::ExportImage(GetStringFromJavaScriptVariable(request));
    return Done();
}

Value GetExportHistory(const Value& request) {
    return Text(KestranePalette::GetExportHistoryData(GetStringFromJavaScriptVariable(request)));
}

Value SaveExportHistoryData(const Value& request) {
    KestranePalette::SaveExportHistoryData(GetStringFromJavaScriptVariable(request));
    return Done();
}

Value OpenMappingFile(const Value&) {
    return Text(KestranePalette::OpenMappingFile());
}

Value SetNewPropertyName(const Value& namesInUse) {
    return Text(KestranePalette::GetInstance().GetNewPropertyName(GetStringArrayFromJSVariable(namesInUse)));
}

Value GetPublishSetHeaders(const Value&) {
    return Text(::GetPublishSetHeaders());
}

Value GetPublishSetItems(const Value& request) {
    return Text(::GetPublishSetItems(GetStringFromJavaScriptVariable(request)));
}

Value HandlePublishSets(const Value& order) {
    KestranePalette::PublishSeletedItems(GetStringFromJavaScriptVariable(order));
    return Done();
}

Value CompleteExportPublish(const Value&) {
    return Text(KestranePalette::GetInstance().GetExportedPublishItemData());
}

Value PreparePublishDocs(const Value& request) {
    return Text(KestranePalette::PreparePublishDoc(GetStringFromJavaScriptVariable(request)));
}

Value GetPublishHistory(const Value& projectId) {
    KestranePalette::GetPublishHistory(GetStringFromJavaScriptVariable(projectId));
    return Done();
}

Value SavePublishHistory(const Value&) {
    KestranePalette::GetInstance().RegisterPublishHistory();
    return Done();
}

Value SetPublishHistory(const Value& history) {
    KestranePalette::SetPublishHistory(GetStringFromJavaScriptVariable(history));
    return Done();
}

Value GetPublishItems(const Value& projectId) {
    return Text(KestranePalette::GetPublishItems(GetStringFromJavaScriptVariable(projectId)));
}

/// In the order in which the page sees them.
constexpr ScriptFunction scriptFunctions[] = {
    {"GetResourceFolder", GetResourceFolder},
    {"HighlightElements", HighlightElements},
    {"ZoomToElement", ZoomToElement},
    {"GetElementNames", GetElementNames},
    {"AlertAPI", AlertAPI},
    {"SelectViewpoint", SelectViewpoint},
    {"GetSelectedElements", GetSelectedElements},
    {"AddComponent", AddComponent},
    {"AddViewpoint", AddViewpoint},
    {"ImportIfcModel", ImportIfcModel},
    {"RegisterIfcFileName", RegisterIfcFileName},
    {"RequestFileName", RequestFileName},
    {"GetIfcFile", GetIfcFile},
    {"GetApplicationInfo", GetApplicationInfo},
    {"ImportIfcFiles", ImportIfcFiles},
    {"OpenIfcModels", OpenIfcModels},
    {"ExportIFCModel", ExportIFCModel},
    {"GetIfcDocuments", GetIfcDocuments},
    {"Create2dPlan", Create2dPlan},
    {"Export2dPlan", Export2dPlan},
    {"ExportSnapshot", ExportSnapshot},
    {"GetExportHistory", GetExportHistory},
    {"SaveExportHistoryData", SaveExportHistoryData},
    {"GetPlanDocuments", GetPlanDocuments},
    {"OpenMappingFile", OpenMappingFile},
    {"SetNewPropertyName", SetNewPropertyName},
    {"GetPublishSetHeaders", GetPublishSetHeaders},
    {"GetPublishSetItems", GetPublishSetItems},
    {"HandlePublishSets", HandlePublishSets},
    {"CompleteExportPublish", CompleteExportPublish},
    {"PreparePublishDocs", PreparePublishDocs},
    {"GetPublishHistory", GetPublishHistory},
    {"SavePublishHistory", SavePublishHistory},
    {"SetPublishHistory", SetPublishHistory},
    {"GetPublishItems", GetPublishItems},
};

}  // namespace

void RegisterAPIJavaScriptObject(DG::Browser& browser) {
    GS::Ref<DG::JSObject> object = new DG::JSObject("KESTAPI");
    for (const ScriptFunction& function : scriptFunctions) {
        object->AddItem(new DG::JSFunction(function.name, function.body));
    }
    browser.RegisterAsynchJSObject(object);
}
