#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace workbench::step {

/// A file with these records.
inline std::string StepFile(std::string_view data, std::string_view schema = "IFC4") {
    return "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION((''),'2;1');\n"
           "FILE_NAME('model.ifc','2025-06-01T12:00:00',(''),(''),'','','');\nFILE_SCHEMA(('" +
           std::string(schema) + "'));\nENDSEC;\nDATA;\n" + std::string(data) +
           "ENDSEC;\nEND-ISO-10303-21;\n";
}

inline std::string FileBytes(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

inline std::filesystem::path WriteFile(const std::filesystem::path& file, std::string_view bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
    return file;
}

/// A folder of the test's own, gone with it.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "kestrane-test-XXXXXX").string();
        path = mkdtemp(pattern.data());
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    std::filesystem::path operator/(const std::filesystem::path& name) const { return path / name; }
    const std::filesystem::path& Path() const { return path; }

  private:
    std::filesystem::path path;
};

}  // namespace workbench::step
