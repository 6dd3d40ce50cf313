#include "host/TextFile.hpp"
#include "palette/Folders.hpp"
#include "palette/KestranePalette.hpp"
#include "script/Json.hpp"

namespace {

/// Empty when the project's id is no file name.
IO::Location HistoryFile(const GS::UniString& projectId, bool isModel) {
    return IO::Location(IO::Location(KestranePalette::GetExportHistoryFolderPath(isModel)),
                        IO::Name(projectId + ".his"));
}

}  // namespace

GS::UniString KestranePalette::GetExportHistoryFolderPath(bool isModel) {
    return GetFolderPath(isModel ? "Export Model History" : "Export Other History");
}

void KestranePalette::SaveExportHistoryData(const GS::UniString& json) {
    if (HasInstance()) GetInstance().SaveExportHistory(json);
}

void KestranePalette::SaveExportHistory(const GS::UniString& json) {
    const JSON::ValueRef root = ParseJson(json);
    if (root == nullptr) return;
    const JsonObject request(root);
    if (!request.Has("projectId") || !request.Has("data") || !request.Has("isModel")) return;

    const GS::UniString projectId = request.GetText("projectId");
    const GS::UniString data = request.GetText("data");
    WriteTextFile(HistoryFile(projectId, request.GetFlag("isModel")), data);
}

GS::UniString KestranePalette::GetExportHistoryData(const GS::UniString& json) {
    return HasInstance() ? GetInstance().GetExportHistory(json) : GS::UniString();
}

GS::UniString KestranePalette::GetExportHistory(const GS::UniString& json) {
    const JSON::ValueRef root = ParseJson(json);
    if (root == nullptr) return GS::UniString();
    const JsonObject request(root);
    if (!request.Has("projectId") || !request.Has("model")) return GS::UniString();

    const GS::UniString projectId = request.GetText("projectId");
    return ReadTextFile(HistoryFile(projectId, request.GetFlag("model"))).value_or(GS::UniString());
}
