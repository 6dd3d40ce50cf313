#include "palette/Folders.hpp"

#include "host/Environment.hpp"
#include "palette/KestranePalette.hpp"

#include "FileSystem.hpp"
#include "Folder.hpp"
#include "TreeEnumerator.hpp"

namespace {

/// Collects the names of the files that a walk comes by.
class FileNameGetter : public IO::TreeEnumerator {
  public:
    FileNameGetter(const IO::Folder& folder, const IO::Location& location, bool recursive)
        : IO::TreeEnumerator(folder), recursive(recursive), start(location) {}

    const GS::Array<GS::UniString>& GetNames() const { return names; }

  protected:
    bool FileFound(const IO::Name& name) override {
        if (!recursive) {
            IO::Location parent;
            GetParent().GetLocation(&parent);
            if (parent != start) return false;
        }
        names.Push(name.ToString());
        return true;
    }

  private:
    GS::Array<GS::UniString> names;
    bool recursive;
    IO::Location start;
};

GS::UniString CreateFolderBelow(IO::Location location, const GS::UniString& name) {
    if (location.AppendToLocal(IO::Name(name)) != NoError) return GS::UniString();
    return CreateFolders(location);
}

}  // namespace

GS::UniString CreateFolders(const IO::Location& location) {
    const GSErrCode error = IO::fileSystem.CreateFolderTree(location);
    if (error != NoError && error != IO::FileSystem::TargetExists) return GS::UniString();

    GS::UniString path;
    if (location.ToPath(&path) != NoError) return GS::UniString();
    return path;
}

GS::UniString GetKestraneDataFolder() {
    const std::optional<IO::Location> base = GetSpecialFolder(API_DataFolderID);
    GS::UniString path;
    if (!base || base->ToPath(&path) != NoError) return GS::UniString();

    // The cut keeps the separator in front of the maker's name. A path without the maker's name is kept
    // whole, and the add-on's name continues its last component.
    const UIndex maker = path.FindFirst("GRAPHISOFT");
    if (maker != MaxUIndex) path = path.GetPrefix(maker);
    return CreateFolders(IO::Location(path + "Kestrane" + "/" + "ArchiCAD"));
}

GS::UniString GetFolderPath(const GS::UniString& name) {
    const GS::UniString dataFolder = GetKestraneDataFolder();
    if (dataFolder.IsEmpty()) return GS::UniString();
    return CreateFolderBelow(IO::Location(dataFolder), name);
}

GS::UniString CreateTemporaryFolder(const GS::UniString& name, bool clear) {
    std::optional<IO::Location> location = GetSpecialFolder(API_TemporaryFolderID);
    if (!location || location->AppendToLocal(IO::Name(name)) != NoError) return GS::UniString();
    if (clear) IO::fileSystem.Delete(*location);
    return CreateFolders(*location);
}

GS::UniString CreatePublishTemporaryFolder() {
    return CreateTemporaryFolder("Publish", true);
}

GS::Array<GS::UniString> GetFileNamesInFolder(const IO::Location& folder, bool recursive) {
    FileNameGetter getter(IO::Folder(folder), folder, recursive);
    getter.Do();
    return getter.GetNames();
}

GS::UniString KestranePalette::GetResourceFolder() {
    return GetFolderPath("resources");
}
