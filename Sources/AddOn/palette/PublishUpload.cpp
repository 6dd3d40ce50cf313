#include "palette/PublishUpload.hpp"

#include "palette/Folders.hpp"
#include "palette/KestranePalette.hpp"
#include "palette/PickedItem.hpp"
#include "transfer/ExportPublishSet.hpp"

#include "FileSystem.hpp"
#include "RunnableTask.hpp"
#include "Thread.hpp"

void PublishRun::StoreDocumentId(UIndex item, const GS::UniString& documentId) {
    const std::lock_guard<std::mutex> lock(guard);
    items[item].documentId = documentId;
    items[item].uploaded = true;
}

GS::UniString PublishRun::GetDocumentIds() const {
    const std::lock_guard<std::mutex> lock(guard);
    JSON::ObjectValue ids;
    for (const PublishSetItem& item : items) {
        if (item.uploaded) ids.AddValue(item.key, new JSON::StringValue(item.documentId));
    }
    return WriteJson(ids);
}

bool HandlePublishSets(const GS::UniString& json, GS::UniString* projectId, GS::UniString* token,
                       std::shared_ptr<PublishRun>* current) {
    const GS::UniString publishFolder = CreatePublishTemporaryFolder();
    if (publishFolder.IsEmpty()) return false;

    const auto run = std::make_shared<PublishRun>();
    std::atomic_store(current, run);  // jobs of the one before may be looking
    return GetExportingItems(json, projectId, token, publishFolder, &run->items);
}

bool GetExportingItems(const GS::UniString& json, GS::UniString* projectId, GS::UniString* token,
                       const GS::UniString& publishFolder, GS::Array<PublishSetItem>* items) {
    const JSON::ValueRef root = ParseJson(json);
    if (root == nullptr) return false;
    const JsonObject order(root);
    *projectId = order.GetText("projectId");
    *token = order.GetText("token");
    if (!order.Has("publishItems")) return true;

    order.GetArray("publishItems")->Enumerate([&](const JSON::ValueRef& value) {
        const JsonObject item(value);
        const GS::UniString key = item.GetText("key");
        const GS::UniString docName = item.GetText("docName");
        const GS::UniString ext = item.GetText("ext");
        const GS::UniString filePath = item.GetText("filePath");
        const GS::UniString folderId = item.GetText("folder");
        const GS::UniString copy = CopyGuidFile(filePath, docName, ext, publishFolder);
        if (!copy.IsEmpty()) items->Push({copy, folderId, key, GS::UniString(), false});
    });
    return true;
}

GS::UniString CopyGuidFile(const GS::UniString& sourcePath, const GS::UniString& docName,
                           const GS::UniString& ext, const GS::UniString& folder) {
    IO::Name name(docName);
    name.AppendExtension(ext);
    const IO::Location target(IO::Location(folder), name);
    GS::UniString path;
    if (IO::fileSystem.Copy(IO::Location(sourcePath), target) != NoError || target.ToPath(&path) != NoError) {
        return GS::UniString();
    }
    return path;
}

void KestranePalette::PublishSeletedItems(const GS::UniString& json) {
    if (HasInstance()) GetInstance().PublisherItems(json);
}

void KestranePalette::PublisherItems(const GS::UniString& json) {
    GS::UniString projectId;
    GS::UniString token;
    if (!HandlePublishSets(json, &projectId, &token, &publishRun) || publishRun->items.IsEmpty()) {
        browser.ExecuteJS("FailedExportPublish()");
        return;
    }
    const std::shared_ptr<PublishRun> run = publishRun;
    for (UIndex i = 0; i < run->items.GetSize(); ++i) {
        GS::Thread thread(GS::RunnableTask(new ExportPublishSet(token, projectId, run, i)),
                          GS::UniString::Printf("exportPublishSet%u", i));
        try {
            thread.Start();
        } catch (...) {
            CompleteExportPublishItem(*run);  // this one has failed; others may have begun
        }
    }
}

void KestranePalette::CompleteExportPublishItem(PublishRun& run) {
    if (!run.FinishItem()) return;
    // The page would take the end of an earlier run for the end of the one it waits for.
    if (std::atomic_load(&publishRun).get() == &run) browser.ExecuteJS("CompleteExportPublish()");
}

GS::UniString KestranePalette::GetExportedPublishItemData() {
    return publishRun ? publishRun->GetDocumentIds() : PublishRun().GetDocumentIds();
}

GS::UniString KestranePalette::GetExportedPublishItemIds() {
    return HasInstance() ? GetInstance().GetExportedPublishItemData() : GS::UniString();
}
