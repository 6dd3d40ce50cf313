#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "Workbench/step/Progress.hpp"

namespace workbench {

/// What an .ifczip holds.
struct ArchivedModel {
    enum class Kind { model, xml, damaged, stopped };
    Kind kind = Kind::damaged;
    std::string bytes;  // of a model
};

/// True when the file begins as a ZIP archive does.
bool IsArchive(const std::filesystem::path& file);
/// Unpacks the first .ifc in the archive, whatever its name.
ArchivedModel ReadArchive(const std::filesystem::path& file, const Progress& progress);

}  // namespace workbench
