#include "Workbench/step/TypeTable.hpp"

#include <algorithm>

#include "Workbench/step/Lexer.hpp"

namespace workbench::step {

uint32_t TypeTable::NumberOf(std::string_view name) {
    uint32_t number = 0;
    if (WasRecent(name, number)) return number;
    auto spelling = spellings.find(name);
    if (spelling == spellings.end()) {
        std::string upper(name);
        std::ranges::transform(upper, upper.begin(), ToUpper);
        const auto [type, isNew] = numbers.try_emplace(upper, static_cast<uint32_t>(names.size()));
        if (isNew) names.push_back(upper);
        spelling = spellings.emplace(name, type->second).first;
    }
    recent[Slot(name)] = {name, spelling->second};
    return spelling->second;
}

}  // namespace workbench::step
