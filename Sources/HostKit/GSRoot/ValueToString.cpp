#include "ValueToString.hpp"

#include <charconv>

#include "GSException.hpp"

namespace GS {

void valuetostr(double value, char* buffer, USize bufferSize) {
    if (bufferSize == 0) throw IllegalArgumentException();
    const auto [end, error] = std::to_chars(buffer, buffer + bufferSize - 1, value);
    if (error != std::errc()) throw IllegalArgumentException();
    *end = '\0';
}

}  // namespace GS
