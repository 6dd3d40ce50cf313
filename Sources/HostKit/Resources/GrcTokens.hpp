#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace hostkit {

struct GrcToken {
    enum class Kind { type, number, text, word, bar, open, close, end };

    Kind kind;
    std::string value;  // without quotes, escapes resolved
    int line;
};

// The tokens of a resource text, an "end" last; comments and a byte order mark are skipped. Throws
// std::runtime_error that names the file and the line.
std::vector<GrcToken> ReadGrcTokens(std::string_view text, const std::string& file);

[[noreturn]] void ThrowGrcError(const std::string& file, int line, const std::string& what);

}  // namespace hostkit
