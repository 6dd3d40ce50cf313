#include "palette/PublishPreparation.hpp"

#include "dialogs/PublishReportDialog.hpp"
#include "host/Publisher.hpp"
#include "palette/Folders.hpp"
#include "palette/KestranePalette.hpp"
#include "palette/PickedItem.hpp"

#include "FileSystem.hpp"
#include "Folder.hpp"
#include "TreeEnumerator.hpp"

namespace {

/// Keeps the path of the last file that the walk comes by.
class PublishFolderEnumerator : public IO::TreeEnumerator {
  public:
    explicit PublishFolderEnumerator(const IO::Folder& folder) : IO::TreeEnumerator(folder) {}

    const GS::UniString& GetFilePath() const { return filePath; }

  protected:
    bool FileFound(const IO::Name& name) override {
        IO::Location parent;
        GetParent().GetLocation(&parent);
        return IO::Location(parent, name).ToPath(&filePath) == NoError;
    }

  private:
    GS::UniString filePath;
};

IO::Name GetFileName(const GS::UniString& path) {
    IO::Name name;
    IO::Location(path).GetLastLocalName(&name);
    return name;
}

GS::UniString PathBelow(const GS::UniString& folder, const GS::UniString& name) {
    GS::UniString path;
    if (IO::Location(IO::Location(folder), IO::Name(name)).ToPath(&path) != NoError) return GS::UniString();
    return path;
}

JSON::ObjectValueRef MakePrepared(const PickedItem& item, const GS::UniString& path) {
    JSON::ObjectValueRef prepared = new JSON::ObjectValue();
    AddText(*prepared, "filePath", path);
    AddText(*prepared, "key", item.key);
    AddText(*prepared, "ext", GetFileName(path).GetExtension());
    AddText(*prepared, "title", item.title);
    AddCarriedMembers(*prepared, item);
    return prepared;
}

}  // namespace

GS::UniString KestranePalette::PreparePublishDoc(const GS::UniString& json) {
    return HasInstance() ? GetInstance().PreparePublishDocuments(json) : GS::UniString();
}

GS::UniString KestranePalette::PreparePublishDocuments(const GS::UniString& json) {
    const bool german = IsGerman();
    const char* const notice =
        german ? "Jetzt wird Archicad einige Artikel veröffentlichen. Es dauert einige Minuten."
               : "Now Archicad is going to publish the some items. It will take several minutes.";
    DG::InformationAlert(GS::UniString(notice, CC_UTF8), GS::UniString(), "OK");

    ClearPublishHistory();
    GS::Array<GS::UniString> failedTitles;
    GS::UniString prepared = PreparePublishDocs(json, &failedTitles);
    if (!prepared.IsEmpty()) {
        const JsonObject request(ParseJson(json));
        const GS::UniString projectId = request.GetText("projectId");
        publishHistory = {projectId, request.GetText("publishSet"), prepared};
    }
    if (!failedTitles.IsEmpty()) PublishReportDialog(failedTitles, german).Invoke();
    return prepared;
}

GS::UniString PreparePublishDocs(const GS::UniString& json, GS::Array<GS::UniString>* failedTitles) {
    const JSON::ValueRef root = ParseJson(json);
    if (root == nullptr) return GS::UniString();
    const JsonObject request(root);
    if (!request.Has("guid") || !request.Has("publishItems")) return GS::UniString();
    const API_Guid set = ToGuid(request.GetText("guid"));
    const JSON::ArrayValueRef picked = request.GetArray("publishItems");

    const GS::UniString scratchFolder = CreateTemporaryFolder("TempPublish", true);
    const GS::UniString preparedFolder = CreateTemporaryFolder(preparedFolderName, false);
    if (scratchFolder.IsEmpty() || preparedFolder.IsEmpty()) return GS::UniString();
    const GS::Array<GS::UniString> fileNames = GetFileNamesInFolder(IO::Location(preparedFolder), false);

    JSON::ArrayValue prepared;
    for (USize i = 0; i < picked->GetSize(); ++i) {
        const PickedItem item = ReadPickedItem(JsonObject(picked->Get(i)));
        GS::UniString path = GetFilePathInPreparedFolder(item.key, fileNames, preparedFolder);
        if (path.IsEmpty()) {
            const GS::UniString published =
                PublishItem(set, ToGuid(item.key), GS::UniString::Printf("%u", i), scratchFolder);
            if (!published.IsEmpty()) path = MovedAsGuidFile(item.key, published, preparedFolder);
        }
        if (path.IsEmpty()) {
            failedTitles->Push(item.title);
        } else {
            prepared.AddValue(MakePrepared(item, path));
        }
    }
    return WriteJson(prepared);
}

GS::UniString PublishItem(const API_Guid& set, const API_Guid& item, const GS::UniString& folderName,
                          const GS::UniString& baseFolder) {
    IO::Location output(baseFolder);
    if (output.AppendToLocal(IO::Name(folderName)) != NoError || CreateFolders(output).IsEmpty() ||
        PublishToFolder(set, item, output) != NoError) {
        return GS::UniString();
    }
    PublishFolderEnumerator enumerator{IO::Folder(output)};
    enumerator.Do();
    return enumerator.GetFilePath();
}

GS::UniString GetFilePathInPreparedFolder(const GS::UniString& key, const GS::Array<GS::UniString>& fileNames,
                                          const GS::UniString& preparedFolder) {
    const GS::UniString name = FindNameWithKey(key, fileNames);
    return name.IsEmpty() ? GS::UniString() : PathBelow(preparedFolder, name);
}

GS::UniString MovedAsGuidFile(const GS::UniString& key, const GS::UniString& filePath,
                              const GS::UniString& preparedFolder) {
    IO::Name name(key);
    name.AppendExtension(GetFileName(filePath).GetExtension());
    GS::UniString target = PathBelow(preparedFolder, name.ToString());
    if (target.IsEmpty() || IO::fileSystem.Move(IO::Location(filePath), IO::Location(target)) != NoError) {
        return GS::UniString();
    }
    return target;
}
