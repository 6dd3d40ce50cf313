#pragma once

#include <cstdint>
#include <string>

#include "Workbench/dwg/Entities.hpp"

namespace workbench::dwg {

/// A moment as the format counts it.
struct Moment {
    std::uint32_t day = 0;  // Julian
    std::uint32_t millisecond = 0;
};

/// The drawing's settings and its classes: whole sections, each between its marks.
std::string HeaderSection(const Extents& extents, std::uint32_t freeHandle, const Moment& made,
                          std::uint64_t fingerprint);
std::string ClassesSection();

}  // namespace workbench::dwg
