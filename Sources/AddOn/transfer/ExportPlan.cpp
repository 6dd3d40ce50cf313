#include "transfer/ExportPlan.hpp"

#include "Config.hpp"
#include "palette/KestranePalette.hpp"

#include "FileSystem.hpp"

ExportPlan::ExportPlan(const GS::UniString& token, const GS::UniString& projectId,
                       const GS::UniString& folderId, const GS::UniString& filePath)
    : BaseExport(token, projectId), folderId(folderId), filePath(filePath) {}

GS::UniString ExportPlan::GetEndPoint() const {
    return GS::UniString::Printf("%s/document?folderId=%s", apiBaseUrl, folderId.ToCStr().Get());
}

void ExportPlan::Run() {
    const std::optional<Outcome> outcome = Post(filePath);
    IO::fileSystem.Delete(IO::Location(filePath));
    if (!outcome || !outcome->transferred) return;

    KestranePalette::WithInstance([&outcome](KestranePalette& palette) {
        if (outcome->IsAccepted()) {
            palette.CompleteExportPlan(outcome->body);
        } else {
            palette.FailExportPlan();
        }
    });
}
