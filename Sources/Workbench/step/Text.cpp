#include "Workbench/step/Text.hpp"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>

namespace workbench::step {
namespace {

void AppendUtf8(std::string& out, char32_t c) {
    if (c > 0x10FFFF || (c >= 0xD800 && c < 0xE000)) c = 0xFFFD;
    if (c < 0x80) {
        out += static_cast<char>(c);
        return;
    }
    const int tails = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
    constexpr std::array<unsigned, 4> leads = {0, 0xC0, 0xE0, 0xF0};
    out += static_cast<char>(leads[static_cast<size_t>(tails)] | (c >> (6 * tails)));
    for (int i = tails - 1; i >= 0; --i)
        out += static_cast<char>(0x80 | ((c >> (6 * i)) & 0x3F));
}

/// One code point at text[i], moving i behind it; nothing when the bytes there are not UTF-8.
std::optional<char32_t> ReadUtf8(std::string_view text, size_t& i) {
    const auto byte = [&](size_t at) { return static_cast<unsigned char>(text[at]); };
    const unsigned lead = byte(i);
    if (lead < 0x80) return text[i++];
    const size_t tails = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    if (lead < 0xC2 || lead > 0xF4 || i + tails >= text.size()) return std::nullopt;
    char32_t c = lead & (0x3Fu >> tails);
    for (size_t k = 1; k <= tails; ++k) {
        if ((byte(i + k) & 0xC0) != 0x80) return std::nullopt;
        c = (c << 6) | (byte(i + k) & 0x3F);
    }
    constexpr std::array<char32_t, 4> least = {0, 0x80, 0x800, 0x10000};
    if (c < least[tails] || c > 0x10FFFF || (c >= 0xD800 && c < 0xE000)) return std::nullopt;
    i += tails + 1;
    return c;
}

bool IsUtf8(std::string_view text) {
    for (size_t i = 0; i < text.size();) {
        if (!ReadUtf8(text, i)) return false;
    }
    return true;
}

std::optional<std::string> Convert(std::string bytes, const char* charset) {
    const iconv_t converter = iconv_open("UTF-8", charset);
    if (converter == reinterpret_cast<iconv_t>(-1)) return std::nullopt;
    std::string out(bytes.size() * 4, '\0');
    char* in = bytes.data();
    char* to = out.data();
    size_t inLeft = bytes.size(), outLeft = out.size();
    const bool failed = iconv(converter, &in, &inLeft, &to, &outLeft) == static_cast<size_t>(-1);
    iconv_close(converter);
    if (failed) return std::nullopt;
    out.resize(out.size() - outLeft);
    return out;
}

bool HasKana(std::string_view utf8) {
    for (size_t i = 0; i < utf8.size();) {
        const auto c = ReadUtf8(utf8, i);
        if (!c) return false;
        if (*c >= 0x3040 && *c <= 0x30FF) return true;
    }
    return false;
}

/// Bytes of a charset that nothing in the file names: UTF-8, or Shift-JIS (Japanese versions of several
/// programs write it byte by byte), or else Latin-1, which the standard asks for.
std::string DecodeBytes(const std::string& bytes) {
    if (IsUtf8(bytes)) return bytes;
    if (auto japanese = Convert(bytes, "CP932"); japanese && HasKana(*japanese)) return *japanese;
    std::string out;
    for (const char c : bytes)
        AppendUtf8(out, static_cast<unsigned char>(c));
    return out;
}

std::optional<uint32_t> ReadHex(std::string_view text, size_t at, size_t digits) {
    if (at + digits > text.size()) return std::nullopt;
    uint32_t value = 0;
    for (const char c : text.substr(at, digits)) {
        const int digit = c >= '0' && c <= '9'   ? c - '0'
                          : c >= 'A' && c <= 'F' ? c - 'A' + 10
                          : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                                 : -1;
        if (digit < 0) return std::nullopt;
        value = value << 4 | static_cast<uint32_t>(digit);
    }
    return value;
}

class Decoder {
  public:
    explicit Decoder(std::string_view encoded) : text(encoded) {}

    std::string Decode() {
        while (at < text.size()) {
            if (!Directive()) Plain();
        }
        FlushBytes();
        return std::move(out);
    }

  private:
    std::string_view text;
    size_t at = 0;
    char page = 'A';    // of \S\: ISO 8859-1 and its sisters, set by \P.\.
    std::string bytes;  // in an unknown charset, not yet decoded
    std::string out;

    bool Next(std::string_view expected) const { return text.substr(at).starts_with(expected); }

    void FlushBytes() {
        out += DecodeBytes(bytes);
        bytes.clear();
    }

    void Plain() {
        const char c = text[at++];
        if (c == '\n' || c == '\r') return;
        if ((c == '\'' || c == '\\') && at < text.size() && text[at] == c) ++at;
        bytes += c;
    }

    bool Directive() {
        if (Next("\\S\\") && at + 3 < text.size()) return Shifted();
        if (Next("\\P") && at + 3 < text.size() && text[at + 3] == '\\' && text[at + 2] >= 'A' &&
            text[at + 2] <= 'I') {
            page = text[at + 2];
            at += 4;
            return true;
        }
        if (Next("\\X\\")) {
            const auto value = ReadHex(text, at + 3, 2);
            if (!value) return false;
            bytes += static_cast<char>(*value);
            at += 5;
            return true;
        }
        if (Next("\\X2\\")) return Wide(4);
        return Next("\\X4\\") && Wide(8);
    }

    bool Shifted() {
        const char shifted = static_cast<char>(static_cast<unsigned char>(text[at + 3]) | 0x80);
        at += 4;
        if (page == 'A') {
            bytes += shifted;
            return true;
        }
        FlushBytes();
        const std::string charset = std::string("ISO-8859-") + static_cast<char>(page - 'A' + '1');
        out += Convert(std::string(1, shifted), charset.c_str()).value_or("\xEF\xBF\xBD");
        return true;
    }

    /// UTF-16 (surrogate pairs included) or UTF-32 up to "\X0\".
    bool Wide(size_t digits) {
        size_t i = at + 4;
        std::u32string points;
        while (!text.substr(i).starts_with("\\X0\\")) {
            const auto value = ReadHex(text, i, digits);
            if (!value) return false;
            i += digits;
            const bool isPair = !points.empty() && points.back() >= 0xD800 && points.back() < 0xDC00 &&
                                *value >= 0xDC00 && *value < 0xE000;
            if (isPair) {
                points.back() = 0x10000 + ((points.back() - 0xD800) << 10) + (*value - 0xDC00);
            } else {
                points += static_cast<char32_t>(*value);
            }
        }
        FlushBytes();
        for (const char32_t c : points)
            AppendUtf8(out, c);
        at = i + 4;
        return true;
    }
};

void AppendHex(std::string& out, char32_t value, int digits) {
    for (int i = digits - 1; i >= 0; --i)
        out += "0123456789ABCDEF"[(value >> (4 * i)) & 0xF];
}

}  // namespace

std::string DecodeText(std::string_view encoded) {
    return Decoder(encoded).Decode();
}

std::string EncodeText(std::string_view utf8) {
    std::string out = "'";
    int open = 0;  // hexadecimal digits per character of the directive that is open, 0 when none is
    const auto switchTo = [&](int digits) {
        if (digits == open) return;
        if (open) out += "\\X0\\";
        if (digits) out += digits == 4 ? "\\X2\\" : "\\X4\\";
        open = digits;
    };
    for (size_t i = 0; i < utf8.size();) {
        const auto read = ReadUtf8(utf8, i);
        if (!read) ++i;
        const char32_t c = read.value_or(0xFFFD);
        if (c >= 0x20 && c < 0x7F) {
            switchTo(0);
            if (c == '\'' || c == '\\') out += static_cast<char>(c);
            out += static_cast<char>(c);
        } else {
            switchTo(c > 0xFFFF ? 8 : 4);
            AppendHex(out, c, open);
        }
    }
    switchTo(0);
    return out + "'";
}

std::string EncodeReal(double number) {
    char digits[32];
    std::string text(digits, std::to_chars(digits, std::end(digits), number).ptr);
    const size_t exponent = text.find('e');
    if (exponent != std::string::npos) text[exponent] = 'E';
    if (text.find('.') == std::string::npos) text.insert(std::min(exponent, text.size()), ".");
    return text;
}

}  // namespace workbench::step
