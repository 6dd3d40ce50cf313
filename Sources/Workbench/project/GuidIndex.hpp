#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

#include "API_Guid.hpp"

namespace workbench {

/// Finds the place of a GUID in a list that does not change: a table of places with open addressing, so that
/// a search reads little memory besides the list.
class GuidIndex {
  public:
    static constexpr std::size_t none = SIZE_MAX;

    GuidIndex() = default;
    /// `guidAt(place)` for places below `count`. Of equal GUIDs the first counts.
    template <class GuidAt>
    GuidIndex(std::size_t count, const GuidAt& guidAt) {
        std::size_t size = 16;
        while (size < 2 * count)
            size *= 2;
        table.assign(size, 0);
        for (std::size_t place = 0; place < count; ++place) {
            std::uint32_t& slot = table[SlotOf(guidAt(place), guidAt)];
            if (slot == 0) slot = static_cast<std::uint32_t>(place + 1);
        }
    }

    template <class GuidAt>
    std::size_t Find(const API_Guid& guid, const GuidAt& guidAt) const {
        if (table.empty()) return none;
        const std::uint32_t slot = table[SlotOf(guid, guidAt)];
        return slot == 0 ? none : slot - 1;
    }

  private:
    /// Where the GUID is, or the free slot where it would be.
    template <class GuidAt>
    std::size_t SlotOf(const API_Guid& guid, const GuidAt& guidAt) const {
        std::size_t slot = Hash(guid) & (table.size() - 1);
        while (table[slot] != 0 && guidAt(table[slot] - 1) != guid)
            slot = (slot + 1) & (table.size() - 1);
        return slot;
    }

    static std::uint64_t Hash(const API_Guid& guid) {
        std::uint64_t words[2];
        static_assert(sizeof words == sizeof guid);
        std::memcpy(words, &guid, sizeof words);
        const std::uint64_t mixed = (words[0] ^ (words[1] * 0x9E3779B97F4A7C15U)) * 0xD6E8FEB86659FD93U;
        return mixed ^ (mixed >> 32);
    }

    std::vector<std::uint32_t> table;  // place + 1; 0: free
};

}  // namespace workbench
