#pragma once

#include <unistd.h>

#include <utility>

namespace service {

// A file descriptor that closes itself.
class FileHandle {
  public:
    explicit FileHandle(int descriptor = -1) : descriptor(descriptor) {}
    FileHandle(FileHandle&& other) noexcept : descriptor(std::exchange(other.descriptor, -1)) {}
    FileHandle& operator=(FileHandle&& other) noexcept {
        std::swap(descriptor, other.descriptor);
        return *this;
    }
    ~FileHandle() {
        if (descriptor >= 0) close(descriptor);
    }

    int Get() const { return descriptor; }

  private:
    int descriptor;
};

}  // namespace service
