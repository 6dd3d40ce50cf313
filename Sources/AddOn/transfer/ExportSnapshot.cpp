#include "transfer/ExportSnapshot.hpp"

#include "Config.hpp"
#include "palette/KestranePalette.hpp"

ExportSnapshot::ExportSnapshot(const GS::UniString& token, const GS::UniString& projectId,
                               const GS::UniString& filePath)
    : BaseExport(token, projectId), filePath(filePath) {}

GS::UniString ExportSnapshot::GetEndPoint() const {
    return GS::UniString::Printf("%s/resource", apiBaseUrl);
}

void ExportSnapshot::Run() {
    const std::optional<Outcome> outcome = Post(filePath);
    if (!outcome || !outcome->transferred) return;
    KestranePalette::WithInstance(
        [&outcome](KestranePalette& palette) { palette.InsertViewpoint(outcome->body); });
}
