#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Workbench/project/Project.hpp"

namespace workbench {

/// The units that a model's numbers are in, as far as a merge converts them.
struct ModelUnits {
    enum Kind : std::size_t { length, area, volume, angle, count };
    struct Unit {
        uint64_t record = 0;    // 0: the model names none
        std::string signature;  // equal for equal units
    };

    double metres = 1;   // in a unit of length
    double radians = 1;  // in a unit of plane angle
    std::array<Unit, count> units;
};

ModelUnits UnitsOf(const Project& project);

/// The unit that a value of this measure ("IFCPOSITIVELENGTHMEASURE(1.5)") is in when it names none.
std::optional<ModelUnits::Kind> KindOfMeasure(std::string_view value);

}  // namespace workbench
