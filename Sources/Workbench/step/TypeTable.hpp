#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace workbench::step {

/// Numbers type names. Nearly every record's type was seen shortly before, so a small table of the last ones
/// stands before the map.
class TypeTable {
  public:
    explicit TypeTable(std::vector<std::string>& names) : names(names) {}

    /// True and its number when the name is among the last ones.
    bool WasRecent(std::string_view name, uint32_t& number) const {
        const Recent& last = recent[Slot(name)];
        number = last.number;
        return !name.empty() && last.name == name;
    }
    /// `name` must stay where it is.
    uint32_t NumberOf(std::string_view name);

  private:
    struct Recent {
        std::string_view name;
        uint32_t number = 0;
    };
    static constexpr size_t slots = 512;
    std::array<Recent, slots> recent;
    std::unordered_map<std::string_view, uint32_t> spellings;
    std::unordered_map<std::string, uint32_t> numbers;  // by name in upper case
    std::vector<std::string>& names;                    // likewise

    /// Names all begin alike; they differ in length, middle and last letters.
    static size_t Slot(std::string_view name) {
        const size_t size = name.size();
        if (size < 4) return size;
        const auto letter = [name](size_t i) {
            return static_cast<size_t>(static_cast<unsigned char>(name[i]));
        };
        return (size * 37 + letter(size - 1) + letter(size - 3) * 5 + letter(size / 2) * 17) % slots;
    }
};

}  // namespace workbench::step
