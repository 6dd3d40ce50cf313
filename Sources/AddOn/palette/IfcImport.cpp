#include "host/Elements.hpp"
#include "host/Ifc.hpp"
#include "palette/KestranePalette.hpp"
#include "script/JsonRequest.hpp"
#include "transfer/ImportIFC.hpp"
#include "transfer/WatchThread.hpp"

#include "File.hpp"
#include "RunnableTask.hpp"

#include <cstring>
#include <memory>
#include <optional>

namespace {

/// A model as the page names it.
struct ModelInfo {
    GS::UniString id;
    GS::UniString name;
    Int32 version;
    GS::UniString extension;
};

/// Throws for a member that is missing or of another kind.
ModelInfo ReadModelInfo(const JSON::ValueRef& value) {
    const JSON::ObjectValue& info = JSON::ObjectValue::Cast(*value);
    const auto text = [&info](const char* name) { return JSON::StringValue::Cast(*info.Get(name)).Get(); };
    return {text("id"), text("name"), JSON::NumberValue::Cast(*info.Get("version")).GetInt32(),
            text("extension")};
}

/// Empty when the request does not have the array.
GS::Array<ModelInfo> ReadModelInfos(const JsonRequest& request) {
    GS::Array<ModelInfo> models;
    const JSON::ArrayValueRef infos = request.GetArray("modelInfos");
    if (infos != nullptr) {
        infos->Enumerate([&models](const JSON::ValueRef& info) { models.Push(ReadModelInfo(info)); });
    }
    return models;
}

/// Each element is a step of its own; the host keeps those it refuses out.
void CreateElements(const GS::Array<API_Element>& elements) {
    for (const API_Element& element : elements) {
        RunUndoable("Create Element", [&element] { return CreateElement(element); });
    }
}

}  // namespace

void KestranePalette::ImportIfcModels(const GS::UniString& json) {
    GetInstance().ImportIfcFiles(json);
}

void KestranePalette::ImportIfcFiles(const GS::UniString& json) {
    const JsonRequest request(json);
    const std::optional<GS::UniString> token = request.GetString("token");
    // All are read before the first download starts: one that cannot be read leaves nothing half done.
    const GS::Array<ModelInfo> models = token ? ReadModelInfos(request) : GS::Array<ModelInfo>();

    GS::Array<GS::Thread*> threads;
    GS::Array<GS::UniString> paths;
    for (const ModelInfo& model : models) {
        const GS::UniString path = GetFileName(model.name, model.version, model.extension);
        if (path.IsEmpty()) continue;
        threads.Push(ImportIfcAsync(*token, model.id, path));
        paths.Push(path);
    }
    if (threads.IsEmpty()) {
        CompleteImportModels({});
        return;
    }
    GS::Thread thread(GS::RunnableTask(new WatchThread(threads, paths)), "watchThread");
    thread.Start();
}

GS::UniString KestranePalette::GetFileName(const GS::UniString& name, Int32 version,
                                           const GS::UniString& extension) {
    const GS::UniString folder = GetResourceFolder();
    if (folder.IsEmpty()) return GS::UniString();
    return folder + "/" + name + "-V" + GS::UniString::Printf("%d", version) + "." + extension;
}

GS::Thread* KestranePalette::ImportIfcAsync(const GS::UniString& token, const GS::UniString& modelId,
                                            const GS::UniString& targetPath) {
    auto thread =
        std::make_unique<GS::Thread>(GS::RunnableTask(new ImportIFC(token, modelId, targetPath)), modelId);
    thread->Start();
    return thread.release();
}

void KestranePalette::CompleteImportModels(const GS::Array<GS::UniString>& filePaths) {
    std::atomic_store(&importedModelPaths, std::make_shared<const GS::Array<GS::UniString>>(filePaths));
    browser.ExecuteJS("CompleteImportModels()");
}

GS::UniString KestranePalette::WriteIfcContent(const GS::UniString& content) {
    if (ifcFileName.IsEmpty()) return GS::UniString();
    const GS::UniString folder = GetResourceFolder();
    if (folder.IsEmpty()) return GS::UniString();

    GS::UniString path = folder + "/" + ifcFileName;
    IO::File file(IO::Location(path), IO::File::Create);
    if (file.Open(IO::File::WriteEmptyMode) != NoError) return GS::UniString();
    const auto bytes = content.ToCStr();
    const auto size = static_cast<USize>(std::strlen(bytes.Get()));
    if (file.WriteBin(bytes.Get(), size) != NoError || file.Close() != NoError) return GS::UniString();
    return path;
}

bool KestranePalette::OpenIfcModel(const GS::UniString& path) {
    return !path.IsEmpty() && OpenProjectAsIfc(IO::Location(path)) == NoError;
}

void KestranePalette::ImportIfcModel(const GS::UniString& content) {
    OpenIfcModel(GetInstance().WriteIfcContent(content));
}

void KestranePalette::OpenIfcModels() {
    GetInstance().OpenAndMergeIFCFiles();
}

void KestranePalette::OpenAndMergeIFCFiles() {
    std::shared_ptr<const GS::Array<GS::UniString>> paths = std::atomic_load(&importedModelPaths);
    if (paths == nullptr || paths->IsEmpty()) return;

    const char* const message =
        IsGerman()
            ? "Modell wird heruntergeladen. Jetzt lädt Archicad das Modell. Es dauert einige Minuten."
            : "Model is downloaded. Now Archicad is going to load the model. It will take several minutes.";
    DG::InformationAlert(GS::UniString(message, CC_UTF8), GS::UniString(), "OK");

    GS::Array<API_Element> elements;
    for (UIndex i = 0; i < paths->GetSize(); ++i) {
        if (!OpenIfcModel((*paths)[i])) continue;
        if (i == paths->GetSize() - 1) {
            CreateElements(elements);
        } else {
            elements.Append(GetElementInfos());
        }
    }
    // A newer list, of a request that ended meanwhile, stays.
    std::atomic_compare_exchange_strong(&importedModelPaths, &paths, {});
}
