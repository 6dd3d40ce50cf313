#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "API_Guid.hpp"

namespace workbench {

/// The GUID in an IFC GlobalId of 22 characters ("32vZ_y6Kf8bQUeOicmrSnx"); nothing when it is none.
std::optional<API_Guid> GuidFromGlobalId(std::string_view globalId);
/// And back.
std::string GlobalIdFromGuid(const API_Guid& guid);
/// A GUID made of a text: always the same for the same text, never null.
API_Guid GuidFromName(std::string_view name);

/// For hash tables; the hash of its sixteen bytes.
struct GuidHash {
    size_t operator()(const API_Guid& guid) const {
        return std::hash<std::string_view>()({reinterpret_cast<const char*>(&guid), sizeof guid});
    }
};

}  // namespace workbench
