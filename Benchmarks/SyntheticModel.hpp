#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace benchmarks {

/// Writes a valid IFC4 model of at least that many bytes: storeys full of walls, each with a shape, a
/// placement and a property set of its own. Models of other names share no GlobalIds. Answers the number of
/// walls.
size_t WriteSyntheticModel(const std::filesystem::path& file, size_t bytes, const std::string& name = "");

}  // namespace benchmarks
