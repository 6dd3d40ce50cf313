#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// Records that a document is to get, written one behind the other; millions of them take little more memory
/// than their text.
class NewRecords {
  public:
    /// The ids begin behind this one.
    explicit NewRecords(uint64_t highestId) : highestId(highestId) {}

    /// Writes a record "TYPE(...)"; its id.
    uint64_t Add(std::string_view typeAndArguments);
    /// The same, but the id of the one that is there already when it was added here with the same text.
    uint64_t AddOnce(std::string_view typeAndArguments);

    /// "#12=TYPE(...);" on a line each.
    std::string Take() { return std::move(text); }

  private:
    /// A table with open addressing.
    struct Slot {
        uint64_t id = 0;  // 0: free
        uint64_t offset = 0;
        uint32_t length = 0;
        uint32_t hash = 0;
    };

    std::string text;
    uint64_t highestId;
    std::vector<Slot> slots = std::vector<Slot>(1024);
    size_t used = 0;

    Slot& SlotFor(uint32_t hash, std::string_view typeAndArguments);
    void Grow();
};

}  // namespace workbench
