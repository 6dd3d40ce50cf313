#include "Service/store/Vault.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "Service/Errors.hpp"
#include "Service/store/Secrets.hpp"

namespace service {

namespace {

constexpr size_t bufferSize = 256 * 1024;

[[noreturn]] void ThrowError(const char* what) {
    const int error = errno;
    if (error == ENOSPC || error == EDQUOT || error == EFBIG) throw StorageFull();
    throw std::system_error(error, std::generic_category(), what);
}

void SyncFolder(const std::filesystem::path& folder) {
    const FileHandle handle(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (handle.Get() < 0 || fsync(handle.Get()) != 0)
        ThrowError("The folder of stored files cannot be synced");
}

}  // namespace

Incoming::Incoming(const std::filesystem::path& arrivingFolder, const std::filesystem::path& storedFolder)
    : id(NewId()),
      arriving(arrivingFolder / id),
      stored(storedFolder / id),
      file(open(arriving.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600)) {
    if (file.Get() < 0) ThrowError("An upload cannot be stored");
    buffer.reserve(bufferSize);
}

Incoming::~Incoming() {
    if (kept) return;
    unlink(arriving.c_str());
    unlink(stored.c_str());
}

void Incoming::Write(std::string_view data) {
    if (buffer.size() + data.size() > bufferSize) Flush();
    buffer += data;
    size += static_cast<int64_t>(data.size());
}

void Incoming::Flush() {
    std::string_view rest = buffer;
    while (!rest.empty()) {
        const ssize_t count = write(file.Get(), rest.data(), rest.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) ThrowError("An upload cannot be stored");
        rest.remove_prefix(static_cast<size_t>(count));
    }
    // Starts writing out what has come so far, so that Store() has little to wait for.
    sync_file_range(file.Get(), 0, 0, SYNC_FILE_RANGE_WRITE);
    buffer.clear();
}

void Incoming::Store() {
    Flush();
    if (fsync(file.Get()) != 0) ThrowError("An upload cannot be stored");
    file = FileHandle();
    if (rename(arriving.c_str(), stored.c_str()) != 0) ThrowError("An upload cannot be stored");
    SyncFolder(stored.parent_path());
}

Vault::Vault(const std::filesystem::path& dataDir)
    : arriving(dataDir / "arriving"), stored(dataDir / "stored") {
    std::filesystem::create_directories(arriving);
    std::filesystem::create_directories(stored);
}

void Vault::Sweep(const std::function<bool(const std::string& id)>& isKnown) const {
    // Only names of our own form: somebody may have pointed the service at a folder with other files.
    for (const auto& entry : std::filesystem::directory_iterator(arriving)) {
        if (IsId(entry.path().filename().native())) std::filesystem::remove(entry.path());
    }
    for (const auto& entry : std::filesystem::directory_iterator(stored)) {
        const std::string id = entry.path().filename();
        if (IsId(id) && !isKnown(id)) std::filesystem::remove(entry.path());
    }
}

void Vault::Remove(const std::string& id) const {
    std::error_code remains;
    std::filesystem::remove(PathOf(id), remains);
}

}  // namespace service
