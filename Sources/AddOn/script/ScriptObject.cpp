#include "script/ScriptObject.hpp"

#include "palette/KestranePalette.hpp"
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

Value AlertAPI(const Value& message) {
    DG::InformationAlert(GetStringFromJavaScriptVariable(message), GS::UniString(), "OK");
    return Done();
}

Value AddComponent(const Value& argument) {
    bool flag = false;
    GetBoolFromJSVariable(argument, &flag);
    KestranePalette::SetAddComponentFlag(flag);
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

Value ExportIFCModel(const Value& request) {
    KestranePalette::ExportIFCModel(GetStringFromJavaScriptVariable(request));
    return Done();
}

Value GetIfcDocuments(const Value&) {
    return Text(KestranePalette::GetIfcDoucments());
}

/// In the order in which the page sees them.
constexpr ScriptFunction scriptFunctions[] = {
    {"GetResourceFolder", GetResourceFolder},
    {"AlertAPI", AlertAPI},
    {"AddComponent", AddComponent},
    {"RegisterIfcFileName", RegisterIfcFileName},
    {"RequestFileName", RequestFileName},
    {"GetIfcFile", GetIfcFile},
    {"GetApplicationInfo", GetApplicationInfo},
    {"ExportIFCModel", ExportIFCModel},
    {"GetIfcDocuments", GetIfcDocuments},
};

}  // namespace

void RegisterAPIJavaScriptObject(DG::Browser& browser) {
    GS::Ref<DG::JSObject> object = new DG::JSObject("KESTAPI");
    for (const ScriptFunction& function : scriptFunctions) {
        object->AddItem(new DG::JSFunction(function.name, function.body));
    }
    browser.RegisterAsynchJSObject(object);
}
