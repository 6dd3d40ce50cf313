#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace workbench::step {

/// A file that takes its name only when it is complete: what stood there before stays whole when the disk is
/// full or the program is killed. Every function may throw std::system_error.
class OutputFile {
  public:
    explicit OutputFile(const std::filesystem::path& file);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    /// Not committed: nothing remains.
    ~OutputFile();

    void Write(std::string_view bytes);
    void Commit();

  private:
    std::filesystem::path target, temporary;
    int descriptor = -1;
    std::string pending;

    void WriteThrough(std::string_view bytes);
};

}  // namespace workbench::step
