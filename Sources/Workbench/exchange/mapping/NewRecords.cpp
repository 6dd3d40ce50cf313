#include "Workbench/exchange/mapping/NewRecords.hpp"

#include <functional>

namespace workbench {

uint64_t NewRecords::Add(std::string_view typeAndArguments) {
    text.append("#").append(std::to_string(++highestId)).append("=");
    text.append(typeAndArguments).append(";\n");
    return highestId;
}

uint64_t NewRecords::AddOnce(std::string_view typeAndArguments) {
    if (2 * used >= slots.size()) Grow();
    const auto hash = static_cast<uint32_t>(std::hash<std::string_view>()(typeAndArguments));
    Slot& slot = SlotFor(hash, typeAndArguments);
    if (slot.id == 0) {
        ++used;
        slot.id = Add(typeAndArguments);
        slot.length = static_cast<uint32_t>(typeAndArguments.size());
        slot.offset = text.size() - 2 - slot.length;
        slot.hash = hash;
    }
    return slot.id;
}

NewRecords::Slot& NewRecords::SlotFor(uint32_t hash, std::string_view typeAndArguments) {
    size_t at = hash & (slots.size() - 1);
    const auto isOther = [&](const Slot& slot) {
        return slot.hash != hash ||
               std::string_view(text).substr(slot.offset, slot.length) != typeAndArguments;
    };
    while (slots[at].id != 0 && isOther(slots[at]))
        at = (at + 1) & (slots.size() - 1);
    return slots[at];
}

void NewRecords::Grow() {
    std::vector<Slot> old(2 * slots.size());
    old.swap(slots);
    for (const Slot& slot : old) {
        size_t at = slot.hash & (slots.size() - 1);
        while (slots[at].id != 0)
            at = (at + 1) & (slots.size() - 1);
        if (slot.id != 0) slots[at] = slot;
    }
}

}  // namespace workbench
