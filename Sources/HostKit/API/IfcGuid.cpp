#include "HostKit/API/IfcGuid.hpp"

namespace hostkit {

namespace {

constexpr std::string_view digits = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_$";
constexpr std::size_t length = 22;

// The value of each character as a digit; 64 for one that is none.
constexpr auto valueOf = [] {
    std::array<UInt8, 256> values{};
    values.fill(64);
    for (std::size_t i = 0; i < digits.size(); ++i)
        values[static_cast<unsigned char>(digits[i])] = static_cast<UInt8>(i);
    return values;
}();

// The GUID as one number, the first digit of its text in the highest place.
struct Number {
    UInt64 high;
    UInt64 low;
};

Number ToNumber(const API_Guid& guid) {
    Number number = {
        static_cast<UInt64>(guid.timeLow) << 32 | static_cast<UInt64>(guid.timeMid) << 16 | guid.timeHigh, 0};
    for (const UInt8 byte : guid.node)
        number.low = number.low << 8 | byte;
    return number;
}

API_Guid ToGuid(const Number& number) {
    API_Guid guid = {static_cast<UInt32>(number.high >> 32),
                     static_cast<UInt16>(number.high >> 16),
                     static_cast<UInt16>(number.high),
                     {}};
    for (int i = 0; i < 8; ++i)
        guid.node[i] = static_cast<UInt8>(number.low >> (56 - 8 * i));
    return guid;
}

}  // namespace

std::array<char, 22> IfcGuidCharacters(const API_Guid& guid) {
    Number number = ToNumber(guid);
    std::array<char, length> text{};
    for (std::size_t i = length; i-- > 0;) {
        text[i] = digits[number.low & 0x3F];
        number.low = number.low >> 6 | number.high << 58;
        number.high >>= 6;
    }
    return text;
}

std::string ToIfcGuid(const API_Guid& guid) {
    const auto text = IfcGuidCharacters(guid);
    return {text.begin(), text.end()};
}

std::optional<API_Guid> FromIfcGuid(std::string_view text) {
    if (text.size() != length) return std::nullopt;
    Number number = {0, 0};
    for (const char c : text) {
        const UInt8 digit = valueOf[static_cast<unsigned char>(c)];
        if (digit == 64 || number.high >> 58 != 0) return std::nullopt;
        number.high = number.high << 6 | number.low >> 58;
        number.low = number.low << 6 | digit;
    }
    return ToGuid(number);
}

}  // namespace hostkit
