#pragma once

#include <cstddef>
#include <filesystem>
#include <string_view>

#include "Workbench/step/Progress.hpp"

namespace workbench::step {

/// Asks the system to give this memory, not yet touched, in large pages: fewer page faults, nothing else
/// changes.
void PreferLargePages(void* memory, size_t size);

/// A file's bytes in memory of our own: a file that another program shortens or writes anew while the
/// document lives (which a memory map answers with SIGBUS) changes nothing here. Some writable bytes follow
/// the last one.
class Buffer {
  public:
    static constexpr size_t margin = 128;

    explicit Buffer(size_t size);
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;
    ~Buffer();

    char* Data() { return data; }
    std::string_view Bytes() const { return {data, size}; }

    /// Fills it from a file; false when the progress function stopped it. Throws std::system_error.
    bool Fill(int descriptor, const Progress& progress);

  private:
    char* data = nullptr;
    size_t size = 0;
    size_t capacity = 0;
};

}  // namespace workbench::step
