#include "File.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <limits>

#include "HostKit/InputOutput/Errors.hpp"

namespace IO {

namespace {

GSErrCode SystemError() {
    return hostkit::ToHostError({errno, std::generic_category()});
}

int OpenFlags(File::OpenMode mode) {
    switch (mode) {
        case File::ReadMode:
            return O_RDONLY;
        case File::ReadWriteMode:
            return O_RDWR;
        default:
            return O_WRONLY | O_TRUNC;
    }
}

// Moves all the bytes that can be moved; "move" is read or write.
template <class Move, class Byte>
GSErrCode MoveAll(Move move, int descriptor, Byte* bytes, USize count, USize& done) {
    done = 0;
    while (done < count) {
        const ssize_t moved = move(descriptor, bytes + done, count - done);
        if (moved < 0 && errno == EINTR) continue;
        if (moved < 0) return SystemError();
        if (moved == 0) break;
        done += static_cast<USize>(moved);
    }
    return NoError;
}

Location Below(const Folder& folder, const Name& name) {
    Location location;
    return folder.GetLocation(&location) == NoError ? Location(location, name) : Location();
}

}  // namespace

File::File(const Location& location, OnNotFound onNotFound) : location(location) {
    if (location.IsEmpty()) {
        status = FileSystem::BadLocation;
        return;
    }
    const std::filesystem::path path = hostkit::ToPath(location);
    if (onNotFound == Fail && access(path.c_str(), F_OK) != 0) status = SystemError();
    if (onNotFound == Create) {
        const int created = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
        if (created < 0) {
            status = SystemError();
        } else {
            close(created);
        }
    }
}

File::File(const Folder& folder, const Name& name, OnNotFound onNotFound)
    : File(Below(folder, name), onNotFound) {}

File::~File() {
    Close();
}

GSErrCode File::Open(OpenMode mode, AccessDeniedTreatment) {
    if (status != NoError) return status;
    Close();
    const int opened = open(hostkit::ToPath(location).c_str(), OpenFlags(mode) | O_CLOEXEC);
    if (opened < 0) return SystemError();
    struct stat facts = {};
    if (fstat(opened, &facts) != 0 || !S_ISREG(facts.st_mode)) {
        close(opened);
        return FileSystem::BadLocation;
    }
    descriptor = opened;
    return NoError;
}

GSErrCode File::Close() {
    if (descriptor < 0) return FileSystem::NotOpen;
    const int closed = close(descriptor);
    descriptor = -1;
    return closed == 0 ? NoError : SystemError();
}

GSErrCode File::GetDataLength(UInt64* length) const {
    if (descriptor < 0 || length == nullptr) return FileSystem::NotOpen;
    struct stat facts = {};
    if (fstat(descriptor, &facts) != 0) return SystemError();
    *length = static_cast<UInt64>(facts.st_size);
    return NoError;
}

GSErrCode File::SetDataLength(UInt64 length) {
    if (descriptor < 0) return FileSystem::NotOpen;
    if (length > static_cast<UInt64>(std::numeric_limits<off_t>::max())) return FileSystem::Failed;
    return ftruncate(descriptor, static_cast<off_t>(length)) == 0 ? NoError : SystemError();
}

GSErrCode File::ReadBin(char* bytes, USize count, USize* done) {
    if (descriptor < 0) return FileSystem::NotOpen;
    USize moved = 0;
    const GSErrCode error = MoveAll(read, descriptor, bytes, count, moved);
    if (done != nullptr) *done = moved;
    if (error != NoError) return error;
    return done == nullptr && moved < count ? static_cast<GSErrCode>(FileSystem::EndOfFile) : NoError;
}

GSErrCode File::WriteBin(const char* bytes, USize count, USize* done) {
    if (descriptor < 0) return FileSystem::NotOpen;
    USize moved = 0;
    const GSErrCode error = MoveAll(write, descriptor, bytes, count, moved);
    if (done != nullptr) *done = moved;
    return error;
}

}  // namespace IO
