#include "palette/PublishHistory.hpp"

#include "host/TextFile.hpp"
#include "palette/Folders.hpp"
#include "palette/KestranePalette.hpp"
#include "palette/PickedItem.hpp"
#include "palette/PublishPreparation.hpp"

namespace {

IO::Location HistoryFile(const GS::UniString& folder, const GS::UniString& projectId) {
    return IO::Location(IO::Location(folder), IO::Name(projectId + ".phs"));
}

GS::UniString GetHistoryFolder() {
    return GetFolderPath("Publish History");
}

}  // namespace

GS::UniString CheckPublishHistory(const GS::UniString& itemsText) {
    const JSON::ValueRef root = ParseJson(itemsText);
    if (root == nullptr) return GS::UniString();
    const JSON::ArrayValue& items = JSON::ArrayValue::Cast(*root);

    const GS::UniString folder = CreateTemporaryFolder(preparedFolderName, false);
    if (folder.IsEmpty()) return GS::UniString();
    const GS::Array<GS::UniString> fileNames = GetFileNamesInFolder(IO::Location(folder), false);

    JSON::ArrayValue present;
    items.Enumerate([&](const JSON::ValueRef& value) {
        const JsonObject stored(value);
        const PickedItem item = ReadPickedItem(stored);
        stored.GetText("filePath");  // must be there, but the file may lie elsewhere by now
        const GS::UniString ext = stored.GetText("ext");
        const GS::UniString name = FindNameWithKey(item.key, fileNames);
        if (name.IsEmpty()) return;

        // Not quite the order in which preparation writes them: "ext" comes behind the title.
        const JSON::ObjectValueRef kept = new JSON::ObjectValue();
        AddText(*kept, "filePath", name);
        AddText(*kept, "key", item.key);
        AddText(*kept, "title", item.title);
        AddText(*kept, "ext", ext);
        AddCarriedMembers(*kept, item);
        present.AddValue(kept);
    });
    return WriteJson(present);
}

void KestranePalette::RegisterPublishHistory() {
    if (publishHistory.projectId.IsEmpty()) return;
    JSON::ObjectValue stored;
    AddText(stored, "publishSet", publishHistory.publishSet);
    AddText(stored, "publishItems", publishHistory.publishItems);
    WriteTextFile(HistoryFile(GetHistoryFolder(), publishHistory.projectId), WriteJson(stored));
}

void KestranePalette::SavePublishHistory() {
    GetInstance().RegisterPublishHistory();
}

void KestranePalette::GetPublishHistory(const GS::UniString& projectId) {
    if (HasInstance()) GetInstance().RetrievePublishHistory(projectId);
}

void KestranePalette::RetrievePublishHistory(const GS::UniString& projectId) {
    if (publishHistory.projectId == projectId) return;
    const GS::UniString folder = GetHistoryFolder();
    if (folder.IsEmpty()) return;
    const std::optional<GS::UniString> text = ReadTextFile(HistoryFile(folder, projectId));
    if (!text) return;
    const JSON::ValueRef root = ParseJson(*text);
    if (root == nullptr) return;

    const JsonObject stored(root);
    const GS::UniString publishSet = stored.GetText("publishSet");
    const GS::UniString publishItems = CheckPublishHistory(stored.GetText("publishItems"));
    if (!publishItems.IsEmpty()) publishHistory = {projectId, publishSet, publishItems};
}

void KestranePalette::SetPublishHistory(const GS::UniString& json) {
    const JSON::ValueRef root = ParseJson(json);
    if (root == nullptr) return;
    const JsonObject request(root);
    PublishHistory history;
    history.projectId = request.GetText("projectId");
    history.publishItems = request.GetText("publishItems");
    history.publishSet = request.GetText("publishSet");
    GetInstance().publishHistory = history;
}

void KestranePalette::ClearPublishHistory() {
    publishHistory = PublishHistory();
}
