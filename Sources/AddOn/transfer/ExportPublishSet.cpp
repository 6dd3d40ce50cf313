#include "transfer/ExportPublishSet.hpp"

#include "Config.hpp"
#include "palette/KestranePalette.hpp"
#include "palette/PublishUpload.hpp"
#include "script/Json.hpp"

ExportPublishSet::ExportPublishSet(const GS::UniString& token, const GS::UniString& projectId,
                                   const std::shared_ptr<PublishRun>& run, UIndex item)
    : BaseExport(token, projectId), run(run), item(item) {}

GS::UniString ExportPublishSet::GetEndPoint() const {
    return GS::UniString::Printf("%s/document?folderId=%s", apiBaseUrl,
                                 run->items[item].folderId.ToCStr().Get());
}

void ExportPublishSet::Run() {
    const std::optional<Outcome> outcome = Post(run->items[item].filePath);
    if (!outcome) return;

    const GS::UniString documentId = outcome->IsAccepted() ? GetDocumentId(outcome->body) : GS::UniString();
    if (!documentId.IsEmpty()) run->StoreDocumentId(item, documentId);
    KestranePalette::WithInstance(
        [this](KestranePalette& palette) { palette.CompleteExportPublishItem(*run); });
}

GS::UniString ExportPublishSet::GetDocumentId(const GS::UniString& body) {
    const JSON::ValueRef root = ParseJson(body);
    if (root == nullptr || !root->IsArray()) return GS::UniString();
    const JSON::ArrayValue& documents = JSON::ArrayValue::Cast(*root);
    if (documents.GetSize() == 0 || !documents.Get(0)->IsObject()) return GS::UniString();
    const JSON::ValueRef id = JSON::ObjectValue::Cast(*documents.Get(0)).Get("id");
    if (id == nullptr || !id->IsString()) return GS::UniString();
    return JSON::StringValue::Cast(*id).Get();
}
