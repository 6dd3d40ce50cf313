#include "TreeEnumerator.hpp"

#include "HostKit/InputOutput/Errors.hpp"

namespace IO {

bool TreeEnumerator::FileFound(const Name&) {
    return true;
}

bool TreeEnumerator::FolderEntered(const Name&, const Folder&) {
    return true;
}

void TreeEnumerator::FolderLeft(const Name&, const Folder&) {}

GSErrCode TreeEnumerator::Do() {
    return Walk(Folder(parent));
}

GSErrCode TreeEnumerator::Walk(const Folder& folder) {
    Location location;
    if (const GSErrCode error = folder.GetLocation(&location)) return error;

    std::vector<Name> folders;
    parent = folder;
    GSErrCode result = folder.Enumerate([&](const Name& name, bool isFolder) {
        if (!isFolder) {
            FileFound(name);
        } else if (!std::filesystem::is_symlink(hostkit::ToPath(Location(location, name)))) {
            folders.push_back(name);
        }
    });
    for (const Name& name : folders) {
        const Folder inner(Location(location, name));
        if (!FolderEntered(name, inner)) continue;
        const GSErrCode error = Walk(inner);
        if (result == NoError) result = error;
        parent = folder;
        FolderLeft(name, inner);
    }
    return result;
}

}  // namespace IO
