#include "Folder.hpp"

#include <unistd.h>

#include <algorithm>
#include <vector>

#include "HostKit/GSRoot/Text.hpp"
#include "HostKit/InputOutput/Errors.hpp"

namespace fs = std::filesystem;

namespace IO {

namespace {

GSErrCode Prepare(const Location& location, Folder::OnNotFound onNotFound) {
    if (location.IsEmpty()) return FileSystem::BadLocation;
    std::error_code error;
    const fs::file_status found = fs::status(hostkit::ToPath(location), error);
    if (fs::is_directory(found)) return NoError;
    if (fs::exists(found)) return FileSystem::BadLocation;
    if (found.type() != fs::file_type::not_found) return hostkit::ToHostError(error);
    if (onNotFound == Folder::Create) return fileSystem.CreateFolderTree(location);
    return onNotFound == Folder::Fail ? static_cast<GSErrCode>(FileSystem::TargetNotFound) : NoError;
}

}  // namespace

Folder::Folder(const Location& location, OnNotFound onNotFound)
    : location(location), status(Prepare(location, onNotFound)) {}

GSErrCode Folder::GetLocation(Location* result) const {
    if (location.IsEmpty() || result == nullptr) return FileSystem::BadLocation;
    *result = location;
    return NoError;
}

bool Folder::IsWriteable() const {
    return access(hostkit::ToPath(location).c_str(), W_OK) == 0;
}

GSErrCode Folder::Enumerate(const std::function<void(const Name& name, bool isFolder)>& visit) const {
    if (location.IsEmpty()) return FileSystem::BadLocation;
    std::error_code error;
    std::vector<fs::directory_entry> entries;
    for (fs::directory_iterator entry(hostkit::ToPath(location), error), end; !error && entry != end;
         entry.increment(error)) {
        entries.push_back(*entry);
    }
    if (error) return hostkit::ToHostError(error);

    std::sort(entries.begin(), entries.end());
    for (const fs::directory_entry& entry : entries) {
        std::error_code gone;  // deleted meanwhile, or a link to nowhere: passed by
        if (entry.exists(gone)) {
            visit(hostkit::ToUniString(entry.path().filename().string()), entry.is_directory(gone));
        }
    }
    return NoError;
}

}  // namespace IO
