#include "Service/Names.hpp"

#include <cstdint>
#include <optional>

#include "Service/Errors.hpp"

namespace service {

namespace {

constexpr size_t maxNameLength = 255;

// Takes one character off the front; none when it is not UTF-8 (RFC 3629: shortest form, no surrogates).
std::optional<char32_t> TakeCharacter(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text.front());
    size_t size = 1;
    char32_t code = lead;
    char32_t smallest = 0;
    if (lead >= 0x80) {
        if (lead >= 0xF0 && lead < 0xF8) {
            size = 4, code = lead & 0x07, smallest = 0x10000;
        } else if (lead >= 0xE0 && lead < 0xF0) {
            size = 3, code = lead & 0x0F, smallest = 0x800;
        } else if (lead >= 0xC0 && lead < 0xE0) {
            size = 2, code = lead & 0x1F, smallest = 0x80;
        } else {
            return std::nullopt;
        }
    }
    if (text.size() < size) return std::nullopt;
    for (const char next : text.substr(1, size - 1)) {
        const auto byte = static_cast<unsigned char>(next);
        if ((byte & 0xC0) != 0x80) return std::nullopt;
        code = (code << 6) | (byte & 0x3F);
    }
    text.remove_prefix(size);
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < smallest || code > 0x10FFFF || surrogate) return std::nullopt;
    return code;
}

bool IsControl(char32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

bool IsUnreserved(char character) {
    const bool letter = (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
    const bool digit = character >= '0' && character <= '9';
    return letter || digit || character == '-' || character == '.' || character == '_' || character == '~';
}

}  // namespace

void CheckName(std::string_view name) {
    if (name.find_first_not_of(' ') == std::string_view::npos) throw HttpError(400, "A name is missing.");
    size_t length = 0;
    while (!name.empty()) {
        const auto code = TakeCharacter(name);
        if (!code) throw HttpError(400, "The name is not UTF-8 text.");
        if (IsControl(*code)) throw HttpError(400, "The name holds a control character.");
        if (++length > maxNameLength) throw HttpError(400, "The name is longer than 255 characters.");
    }
}

std::string AttachmentHeader(std::string_view name) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string plain;
    std::string encoded;
    for (const char character : name) {
        const auto byte = static_cast<unsigned char>(character);
        const bool harmless = byte >= 0x20 && byte < 0x7F && character != '"' && character != '\\';
        plain += harmless ? character : '_';
        if (IsUnreserved(character)) {
            encoded += character;
        } else {
            encoded += {'%', digits[byte >> 4], digits[byte & 15]};
        }
    }
    return "attachment; filename=\"" + plain + "\"; filename*=UTF-8''" + encoded;
}

}  // namespace service
