#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "Workbench/step/Lexer.hpp"

namespace workbench {

/// Without the blanks around it.
inline std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && step::IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && step::IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

/// Trimmed, in upper case.
inline std::string WordOf(std::string_view text) {
    std::string word(Trimmed(text));
    std::ranges::transform(word, word.begin(), step::ToUpper);
    return word;
}

}  // namespace workbench
