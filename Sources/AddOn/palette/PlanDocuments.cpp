#include "host/DxfDwg.hpp"
#include "host/Environment.hpp"
#include "host/Picture.hpp"
#include "palette/Elements.hpp"
#include "palette/KestranePalette.hpp"
#include "script/Json.hpp"
#include "transfer/ExportPlan.hpp"

#include "FileSystem.hpp"
#include "RunnableTask.hpp"
#include "Thread.hpp"

#include <optional>

namespace {

/// What the page asks for by number.
enum PlanKind { dwgPlan = 1, pngPlan, jpegPlan, pdfPlan };

/// A file named by the time; no value when the host has no folder for it.
std::optional<IO::Location> GetPlanLocation(const char* extension) {
    std::optional<IO::Location> location = GetSpecialFolder(API_TemporaryFolderID);
    const IO::Name name(KestranePalette::GetTimeString() + extension);
    if (!location || location->AppendToLocal(name) != NoError) return std::nullopt;
    return location;
}

/// The location's path when there was no error, else empty.
GS::UniString PathUnless(GSErrCode error, const IO::Location& location) {
    GS::UniString path;
    if (error != NoError || location.ToPath(&path) != NoError) return GS::UniString();
    return path;
}

}  // namespace

GS::UniString KestranePalette::Create2dPlan(Int32 kind) {
    // One that was never sent is still there.
    if (HasInstance()) IO::fileSystem.Delete(IO::Location(GetInstance().planFilePath));
    GS::UniString path;
    switch (kind) {
        case dwgPlan:
            path = CreateDwgFile();
            break;
        case pngPlan:
        case jpegPlan:
            path = CreatePictureFile(kind == pngPlan);
            break;
        case pdfPlan:
            path = CreatePdfFile();
            break;
        default:
            break;
    }
    if (HasInstance()) GetInstance().planFilePath = path;
    return path;
}

GS::UniString KestranePalette::CreateDwgFile() {
    const std::optional<IO::Location> location = GetPlanLocation(".dwg");
    IO::Location configuration;
    if (!location || GetDwgConfiguration(&configuration) != NoError) return GS::UniString();
    return PathUnless(SaveViewAsDwg(*location, configuration), *location);
}

GS::UniString KestranePalette::CreatePictureFile(bool png) {
    const std::optional<IO::Location> location = GetPlanLocation(png ? ".png" : ".jpg");
    if (!location) return GS::UniString();
    const PictureFormat format = png ? PictureFormat::png : PictureFormat::jpeg;
    return PathUnless(SavePlanAsPicture(*location, format), *location);
}

GS::UniString KestranePalette::CreatePdfFile() {
    const std::optional<IO::Location> location = GetPlanLocation(".pdf");
    if (!location) return GS::UniString();
    const API_Box3D box = GetBoundingBox();
    return PathUnless(SavePlanAsPdf(*location, box.xMax - box.xMin, box.yMax - box.yMin), *location);
}

void KestranePalette::Export2dPlan(const GS::UniString& json) {
    if (!HasInstance()) return;
    KestranePalette& palette = GetInstance();
    if (!palette.planFilePath.IsEmpty() && palette.ExportPlanData(json)) return;
    palette.FailExportPlan();
}

bool KestranePalette::ExportPlanData(const GS::UniString& json) {
    const JSON::ValueRef root = ParseJson(json);
    if (root == nullptr) return false;
    const JsonObject request(root);
    for (const char* const member : {"token", "projectId", "folderId", "fileName"}) {
        if (!request.Has(member)) return false;
    }
    const GS::UniString token = request.GetText("token");
    const GS::UniString projectId = request.GetText("projectId");
    const GS::UniString folderId = request.GetText("folderId");
    const GS::UniString path = RenameFile(request.GetText("fileName"));
    if (path.IsEmpty()) return false;
    planFilePath.Clear();  // the file is the job's now

    GS::Thread thread(GS::RunnableTask(new ExportPlan(token, projectId, folderId, path)), "exportPlan");
    thread.Start();
    return true;
}

GS::UniString KestranePalette::RenameFile(const GS::UniString& name) {
    const IO::Location file(planFilePath);
    IO::Name oldName;
    if (file.GetLastLocalName(&oldName) != NoError) return GS::UniString();

    const GS::UniString base = oldName.GetBase();
    const UIndex place = planFilePath.FindLast(base);
    const IO::Location renamed(planFilePath.GetPrefix(place) + name +
                               planFilePath.GetSubstring(place + base.GetLength(), MaxUSize));
    IO::Location folder = file;
    IO::Location newFolder = renamed;
    folder.DeleteLastLocalName();
    newFolder.DeleteLastLocalName();
    if (newFolder != folder || !renamed.IsLegalInNativeFileSystem()) return GS::UniString();
    return PathUnless(IO::fileSystem.Move(file, renamed), renamed);
}

void KestranePalette::CompleteExportPlan(const GS::UniString& body) {
    // As with a model's answer: as a whole, without a lock.
    std::atomic_store(&exportedPlanResult, std::make_shared<const GS::UniString>(body));
    browser.ExecuteJS("CompleteExportPlan()");
}

void KestranePalette::FailExportPlan() {
    browser.ExecuteJS("FailExportPlan()");
}

GS::UniString KestranePalette::GetPlanDocuments() {
    if (!HasInstance()) return GS::UniString();
    const std::shared_ptr<const GS::UniString> result = std::atomic_load(&GetInstance().exportedPlanResult);
    return result ? *result : GS::UniString();
}
