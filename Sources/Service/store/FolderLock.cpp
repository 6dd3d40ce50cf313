#include "Service/store/FolderLock.hpp"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "Service/Server.hpp"

namespace service {

FolderLock::FolderLock(const std::filesystem::path& folder)
    : file(open((folder / "lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
    if (file.Get() >= 0 && flock(file.Get(), LOCK_EX | LOCK_NB) == 0) return;
    if (file.Get() >= 0 && errno == EWOULDBLOCK) {
        throw StartError("The data folder " + folder.native() +
                         " is in use by another Kestrane service. "
                         "Stop that one, or choose another folder with --data.");
    }
    throw StartError("The data folder " + folder.native() + " cannot be used: " + std::strerror(errno) + ".");
}

}  // namespace service
