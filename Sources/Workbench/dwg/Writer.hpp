#pragma once

#include <chrono>
#include <filesystem>
#include <string>

#include "Workbench/dwg/Drawing.hpp"

namespace workbench::dwg {

/// The drawing as a file of AutoCAD 2000 (AC1015), the newest version that all CAD programs read and that
/// needs no compression. What has too few points or coordinates that are no numbers is left out. Long
/// outlines and large fills come in pieces. Throws std::length_error when the file would pass 2 GiB.
std::string Write(const Drawing& drawing,
                  std::chrono::system_clock::time_point made = std::chrono::system_clock::now());

/// Writes the file; it takes its name only when it is complete. Throws std::system_error as well.
void Save(const Drawing& drawing, const std::filesystem::path& file);

}  // namespace workbench::dwg
