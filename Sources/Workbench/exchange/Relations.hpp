#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace workbench {

/// What a subset takes of the records that point at its own records while nothing points at them.
enum class Follow : uint8_t {
    bothEnds,    // kept when something on each side is in
    definition,  // the rest of the record comes with any of its members (properties, types, materials,
                 // groups)
    part,        // the other side comes with a chosen product (openings, projections)
    container,   // the other side comes without its shape (storeys, spaces)
    whole,       // a chosen whole brings its parts; a part brings its whole only when that is spatial
};

/// A relationship: one attribute holds the members, another what they are related to (both may be lists).
struct Relation {
    std::string_view type;
    size_t members;
    size_t related;
    Follow follow;
};

/// A record that describes what its anchor attribute holds: it comes with any of that.
struct Description {
    std::string_view type;
    size_t anchor;
};

std::span<const Relation> Relations();
std::span<const Description> Descriptions();

}  // namespace workbench
