#include "transfer/ExportIFC.hpp"

#include "Config.hpp"
#include "palette/KestranePalette.hpp"

ExportIFC::ExportIFC(const GS::UniString& token, const GS::UniString& projectId,
                     const GS::UniString& folderId, const GS::UniString& filePath)
    : BaseExport(token, projectId), folderId(folderId), filePath(filePath) {}

GS::UniString ExportIFC::GetEndPoint() const {
    return GS::UniString::Printf("%s/document?folderId=%s", apiBaseUrl, folderId.ToCStr().Get());
}

void ExportIFC::Run() {
    const std::optional<Outcome> outcome = Post(filePath);
    if (!outcome) return;

    KestranePalette::WithInstance([&outcome](KestranePalette& palette) {
        if (outcome->transferred) {
            palette.CompleteExportModel(outcome->body);
        } else {
            palette.FailExportModel();
        }
    });
}
