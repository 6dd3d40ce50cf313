#include "Service/http/Form.hpp"

#include <strings.h>

#include <algorithm>
#include <charconv>
#include <utility>
#include <vector>

#include "Service/Errors.hpp"

namespace service {

namespace {

constexpr size_t maxHeadSize = 16 * 1024;
constexpr size_t maxBoundarySize = 200;  // RFC 2046 allows 70

struct Parameter {
    std::string name;
    std::string value;
};

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

std::string_view Trim(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    const size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

// Whether the quote at `at` ends its string: a parameter or nothing follows.
bool ClosesString(std::string_view text, size_t at) {
    const std::string_view rest = Trim(text.substr(at + 1));
    return rest.empty() || rest.front() == ';';
}

// Takes a quoted string off the front. Old curl versions write a quote as \", and a name may end in a
// backslash, so that \" is a quote only when the string goes on behind it.
std::string TakeQuoted(std::string_view& text) {
    std::string value;
    for (size_t at = 1; at < text.size(); ++at) {
        const bool escaped = text[at] == '\\' && at + 1 < text.size() && text[at + 1] == '"';
        if (escaped && !ClosesString(text, at + 1)) {
            value += '"';
            ++at;
        } else if (text[at] == '"') {
            text.remove_prefix(at + 1);
            return value;
        } else {
            value += text[at];
        }
    }
    throw HttpError(400, "A name in the form lacks its closing quote.");
}

// "; a=b; c="d"" as pairs.
std::vector<Parameter> ParseParameters(std::string_view text) {
    std::vector<Parameter> parameters;
    while (true) {
        text = text.substr(std::min(text.find(';'), text.size()));
        if (text.empty()) return parameters;
        text.remove_prefix(1);
        const size_t equals = text.find_first_of("=;");
        if (equals == std::string_view::npos || text[equals] == ';') continue;
        Parameter parameter{std::string(Trim(text.substr(0, equals))), {}};
        text = Trim(text.substr(equals + 1));
        if (!text.empty() && text.front() == '"') {
            parameter.value = TakeQuoted(text);
        } else {
            parameter.value = Trim(text.substr(0, text.find(';')));
        }
        parameters.push_back(std::move(parameter));
    }
}

std::optional<char> HexPair(std::string_view text) {
    unsigned value = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    if (text.size() != 2 || error != std::errc{} || rest != text.data() + 2) return std::nullopt;
    return static_cast<char>(value);
}

std::string PercentDecode(std::string_view text) {
    std::string decoded;
    for (size_t at = 0; at < text.size(); ++at) {
        const auto byte = text[at] == '%' ? HexPair(text.substr(at + 1, 2)) : std::nullopt;
        decoded += byte.value_or(text[at]);
        if (byte) at += 2;
    }
    return decoded;
}

// What the HTML standard escapes in a form's names, and nothing else: other percent signs are the name's.
std::string DecodeFormName(std::string_view text) {
    std::string decoded;
    for (size_t at = 0; at < text.size(); ++at) {
        const std::string_view three = text.substr(at, 3);
        const bool escaped =
            three == "%22" || EqualIgnoringCase(three, "%0D") || EqualIgnoringCase(three, "%0A");
        decoded += escaped ? *HexPair(three.substr(1)) : text[at];
        if (escaped) at += 2;
    }
    return decoded;
}

std::string Utf8FromLatin1(std::string_view text) {
    std::string utf8;
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        if (code < 0x80) {
            utf8 += character;
        } else {
            utf8 += static_cast<char>(0xC0 | (code >> 6));
            utf8 += static_cast<char>(0x80 | (code & 0x3F));
        }
    }
    return utf8;
}

// charset'language'percent-encoded text
std::string DecodeExtended(std::string_view value) {
    const size_t first = value.find('\'');
    const size_t second = first == std::string_view::npos ? first : value.find('\'', first + 1);
    if (second == std::string_view::npos) throw HttpError(400, "The form's filename* is malformed.");
    const std::string_view charset = value.substr(0, first);
    std::string text = PercentDecode(value.substr(second + 1));
    if (EqualIgnoringCase(charset, "utf-8")) return text;
    if (EqualIgnoringCase(charset, "iso-8859-1")) return Utf8FromLatin1(text);
    throw HttpError(400, "The form's filename* uses an unknown character set; use UTF-8.");
}

}  // namespace

std::optional<std::string> FormBoundary(std::string_view contentType) {
    const std::string_view type = Trim(contentType.substr(0, contentType.find(';')));
    if (!EqualIgnoringCase(type, "multipart/form-data")) return std::nullopt;
    for (Parameter& parameter : ParseParameters(contentType)) {
        if (!EqualIgnoringCase(parameter.name, "boundary")) continue;
        if (parameter.value.empty() || parameter.value.size() > maxBoundarySize) return std::nullopt;
        return std::move(parameter.value);
    }
    return std::nullopt;
}

FormPart ParseDisposition(std::string_view value) {
    FormPart part;
    std::optional<std::string> extended;
    for (const Parameter& parameter : ParseParameters(value)) {
        if (EqualIgnoringCase(parameter.name, "name")) part.name = DecodeFormName(parameter.value);
        if (EqualIgnoringCase(parameter.name, "filename")) part.fileName = DecodeFormName(parameter.value);
        if (EqualIgnoringCase(parameter.name, "filename*")) extended = DecodeExtended(parameter.value);
    }
    if (extended) part.fileName = std::move(extended);
    return part;
}

FormReader::FormReader(const std::string& boundary, OnPart onPart, OnContent onContent)
    : delimiter("\r\n--" + boundary),
      onPart(std::move(onPart)),
      onContent(std::move(onContent)),
      pending("\r\n") {}  // so that a delimiter at the very beginning is found like the others

void FormReader::Feed(std::string_view piece) {
    if (state == State::End) return;
    pending += piece;
    while (Advance()) {
    }
}

bool FormReader::Advance() {
    switch (state) {
        case State::Preamble:
        case State::Content:
            return TakeContent();
        case State::Delimiter:
            return TakeDelimiter();
        case State::Head:
            return TakeHead();
        case State::End:
            return false;
    }
    return false;
}

bool FormReader::TakeContent() {
    const size_t found = pending.find(delimiter);
    const bool ends = found != std::string::npos;
    // The last bytes may be a delimiter's beginning.
    const size_t sure = ends ? found : pending.size() - std::min(pending.size(), delimiter.size() - 1);
    if (state == State::Content && sure > 0) onContent(std::string_view(pending).substr(0, sure));
    pending.erase(0, ends ? sure + delimiter.size() : sure);
    if (ends) state = State::Delimiter;
    return ends;
}

bool FormReader::TakeDelimiter() {
    if (pending.size() < 2) return false;
    if (pending.starts_with("--")) {
        state = State::End;
        pending.clear();
        return false;
    }
    const size_t blanks = pending.find_first_not_of(" \t");
    if (blanks > maxHeadSize && pending.size() > maxHeadSize) throw HttpError(400, "The form is malformed.");
    if (blanks == std::string::npos || pending.size() < blanks + 2) return false;
    if (pending.compare(blanks, 2, "\r\n") != 0) throw HttpError(400, "The form is malformed.");
    // The line end stays: a part without headers has its blank line right here.
    pending.erase(0, blanks);
    state = State::Head;
    return true;
}

bool FormReader::TakeHead() {
    const size_t end = pending.find("\r\n\r\n");
    if (std::min(end, pending.size()) > maxHeadSize) throw HttpError(400, "A part's head is too long.");
    if (end == std::string::npos) return false;
    constexpr std::string_view wanted = "content-disposition:";
    FormPart part;
    std::string_view head(pending.data(), end);
    while (!head.empty()) {
        head.remove_prefix(2);
        const std::string_view line = head.substr(0, head.find("\r\n"));
        if (EqualIgnoringCase(line.substr(0, wanted.size()), wanted)) {
            part = ParseDisposition(line.substr(wanted.size()));
        }
        head.remove_prefix(line.size());
    }
    pending.erase(0, end + 4);
    state = State::Content;
    onPart(part);
    return true;
}

}  // namespace service
