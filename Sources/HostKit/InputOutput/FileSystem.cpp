#include "FileSystem.hpp"

#include "HostKit/InputOutput/Errors.hpp"

namespace fs = std::filesystem;

namespace IO {

namespace {

bool Exists(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(path, ignored));
}

// What both ends of a copy or move must be like.
GSErrCode CheckTransfer(const Location& from, const Location& to) {
    if (from.IsEmpty() || to.IsEmpty()) return FileSystem::BadLocation;
    if (!Exists(hostkit::ToPath(from))) return FileSystem::TargetNotFound;
    if (to.ToDisplayText().BeginsWith(from.ToDisplayText() + "/")) return FileSystem::BadLocation;
    if (Exists(hostkit::ToPath(to))) return FileSystem::TargetExists;
    return NoError;
}

}  // namespace

GSErrCode FileSystem::Contains(const Location& location, bool* contains) const {
    if (location.IsEmpty() || contains == nullptr) return BadLocation;
    *contains = Exists(hostkit::ToPath(location));
    return NoError;
}

GSErrCode FileSystem::CreateFolderTree(const Location& location) const {
    if (location.IsEmpty()) return BadLocation;
    std::error_code error;
    fs::create_directories(hostkit::ToPath(location), error);
    return hostkit::ToHostError(error);
}

GSErrCode FileSystem::Copy(const Location& from, const Location& to) const {
    if (const GSErrCode error = CheckTransfer(from, to)) return error;
    std::error_code error;
    fs::copy(hostkit::ToPath(from), hostkit::ToPath(to),
             fs::copy_options::recursive | fs::copy_options::copy_symlinks, error);
    return hostkit::ToHostError(error);
}

GSErrCode FileSystem::Move(const Location& from, const Location& to) const {
    const GSErrCode refused = CheckTransfer(from, to);
    if (refused == TargetExists && from == to) return NoError;
    if (refused != NoError) return refused;
    std::error_code error;
    fs::rename(hostkit::ToPath(from), hostkit::ToPath(to), error);
    if (error != std::errc::cross_device_link) return hostkit::ToHostError(error);

    if (const GSErrCode copyError = Copy(from, to)) {
        Delete(to);
        return copyError;
    }
    return Delete(from);
}

GSErrCode FileSystem::Rename(const Location& location, const Name& newName) const {
    Location renamed = location;
    if (const GSErrCode error = renamed.SetLastLocalName(newName)) return error;
    return Move(location, renamed);
}

GSErrCode FileSystem::Delete(const Location& location) const {
    if (location.IsEmpty()) return BadLocation;
    std::error_code error;
    const auto count = fs::remove_all(hostkit::ToPath(location), error);
    if (error) return hostkit::ToHostError(error);
    return count == 0 ? TargetNotFound : NoError;
}

}  // namespace IO
