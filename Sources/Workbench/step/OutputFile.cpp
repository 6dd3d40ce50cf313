#include "Workbench/step/OutputFile.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace workbench::step {
namespace {

constexpr size_t pendingLimit = 1 << 20;

[[noreturn]] void Fail(int error) {
    throw std::system_error(error, std::generic_category());
}

}  // namespace

OutputFile::OutputFile(const std::filesystem::path& file) : target(std::filesystem::weakly_canonical(file)) {
    struct stat old = {};
    const bool replaces = stat(target.c_str(), &old) == 0;
    if (replaces && S_ISDIR(old.st_mode)) Fail(EISDIR);
    if (replaces && access(target.c_str(), W_OK) != 0) Fail(errno);
    for (int attempt = 0; attempt < 1000; ++attempt) {
        temporary = target;
        temporary += "." + std::to_string(getpid()) + "-" + std::to_string(attempt) + ".part";
        descriptor = open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor >= 0 || errno != EEXIST) break;
    }
    if (descriptor < 0) Fail(errno);
    if (replaces) fchmod(descriptor, old.st_mode & 07777);
}

OutputFile::~OutputFile() {
    if (descriptor < 0) return;
    close(descriptor);
    unlink(temporary.c_str());
}

void OutputFile::Write(std::string_view bytes) {
    if (pending.size() + bytes.size() < pendingLimit) {
        pending += bytes;
        return;
    }
    WriteThrough(pending);
    pending.clear();
    WriteThrough(bytes);
}

void OutputFile::WriteThrough(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) Fail(errno);
        bytes.remove_prefix(static_cast<size_t>(written));
    }
}

void OutputFile::Commit() {
    WriteThrough(pending);
    pending.clear();
    const int closing = descriptor;
    descriptor = -1;
    if (close(closing) == 0 && rename(temporary.c_str(), target.c_str()) == 0) return;
    const int error = errno;
    unlink(temporary.c_str());
    Fail(error);
}

}  // namespace workbench::step
