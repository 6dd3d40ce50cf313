#include "host/Environment.hpp"
#include "host/Picture.hpp"
#include "host/View3D.hpp"
#include "palette/KestranePalette.hpp"
#include "script/JsonRequest.hpp"
#include "transfer/ExportSnapshot.hpp"

#include "GSTime.hpp"
#include "RunnableTask.hpp"
#include "Thread.hpp"

namespace {

void Tell(const char* message) {
    DG::InformationAlert(GS::UniString(message, CC_UTF8), GS::UniString(), "OK");
}

}  // namespace

void KestranePalette::ExportImage(const GS::UniString& json) {
    ExportViewpointImage(json);
}

void KestranePalette::ExportViewpointImage(const GS::UniString& json) {
    const bool german = IsGerman();
    if (!Is3DView()) {
        Tell(german ? "Die aktuelle Ansicht ist keine perspektive Ansicht.\n Bitte fügen Sie einen Viewpoint "
                      "in der perspektiven Ansicht."
                    : "Current view is not perspective view.\n Please add a viewpoint in perspective view.");
        return;
    }
    const std::optional<API_3DProjectionInfo> projection = GetProjection();
    if (!projection) return;
    if (!projection->isPersp) {
        Tell(german ? "Sie befinden sich im 3D-Darstellungsmodus Axonometrie. \n bitte wechseln sie in den "
                      "Modus Perspektive (Alt+Umsch.+3)."
                    : "You are now in 3D-display mode Axonometry.\n Please change to perspective mode "
                      "(Alt+Shift+3).");
        return;
    }

    const GS::UniString path = GetSnapshot();
    if (path.IsEmpty()) return;
    const JsonRequest request(json);
    const std::optional<GS::UniString> token = request.GetString("token");
    const std::optional<GS::UniString> projectId = request.GetString("projectId");
    if (!token || !projectId) return;
    GS::Thread thread(GS::RunnableTask(new ExportSnapshot(*token, *projectId, path)), "exportSnapshot");
    thread.Start();
}

GS::UniString KestranePalette::GetSnapshot() {
    std::optional<IO::Location> location = GetSpecialFolder(API_TemporaryFolderID);
    GS::UniString path;
    if (!location || location->AppendToLocal(IO::Name(GetTimeString() + ".png")) != NoError ||
        SaveViewAsPng(*location) != NoError || location->ToPath(&path) != NoError) {
        return GS::UniString();
    }
    return path;
}

GS::UniString KestranePalette::GetTimeString() {
    GS::UniString time = TIGetISO8601TimeString(TIGetTime(), false);
    time.ReplaceAll(":", "_");
    return time;
}
