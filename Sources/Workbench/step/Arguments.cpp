#include "Workbench/step/Arguments.hpp"

#include <charconv>

#include "Workbench/step/Lexer.hpp"
#include "Workbench/step/Text.hpp"

namespace workbench::step {
namespace {

/// Behind the "#12 =" that a record begins with.
const char* SkipOwnId(std::string_view text) {
    const char* end = text.data() + text.size();
    const char* p = SkipBlanks(text.data(), end);
    uint64_t id = 0;
    if (p == end || *p != '#' || !(p = ReadId(p + 1, end, id))) return text.data();
    p = SkipBlanks(p, end);
    return p < end && *p == '=' ? p + 1 : text.data();
}

/// Behind the '(' of the argument list; null for a complex instance and for what has no arguments.
const char* ArgumentsBegin(std::string_view text) {
    const char* end = text.data() + text.size();
    const char* own = SkipOwnId(text);
    const char* word = SkipBlanks(own, end);
    const char* p = word;
    while (p < end && IsWordCharacter(*p))
        ++p;
    const bool isComplex = own != text.data() && p == word;
    p = SkipBlanks(p, end);
    return !isComplex && p < end && *p == '(' ? p + 1 : nullptr;
}

/// Calls take(argument) for each until it answers false.
template <typename Take>
void Split(std::string_view text, Take take) {
    const char* end = text.data() + text.size();
    const char* p = ArgumentsBegin(text);
    if (!p) return;
    p = SkipBlanks(p, end);
    if (p < end && *p == ')') return;
    const char* begin = p;
    const char* behind = p;
    for (int depth = 0; p < end; p = SkipBlanks(p, end)) {
        if (depth == 0 && (*p == ',' || *p == ')')) {
            if (!take({begin, behind}) || *p == ')') return;
            begin = behind = p = SkipBlanks(p + 1, end);
            continue;
        }
        depth += *p == '(' ? 1 : *p == ')' ? -1 : 0;
        behind = p = *p == '\'' ? SkipString(p, end) : p + 1;
    }
}

/// "1.5" of "IFCLENGTHMEASURE(1.5)"; the argument itself when it has no type.
std::string_view Untyped(std::string_view argument) {
    return !argument.empty() && IsWordCharacter(argument[0]) && argument.back() == ')' ? Argument(argument, 0)
                                                                                       : argument;
}

bool IsDelimiter(char c) {
    return c == '(' || c == ')' || c == ',' || c == '/' || IsBlank(c);
}

/// The reference that begins at the '#' at p, or nothing: it has an id and stands alone ("1.#INF" is a
/// number). Moves p behind it.
std::optional<uint64_t> ReferenceAt(const char*& p, const char* begin, const char* end) {
    uint64_t id = 0;
    const bool isFree = p == begin || IsDelimiter(p[-1]);
    const char* behind = isFree ? ReadId(p + 1, end, id) : nullptr;
    if (!behind || (behind < end && !IsDelimiter(*behind))) {
        ++p;
        return std::nullopt;
    }
    p = behind;
    return id;
}

/// Calls found(from, to, id) for each reference behind the record's own id: where it stands, and what it is.
template <typename Found>
void ScanReferences(std::string_view text, Found found) {
    const char* end = text.data() + text.size();
    const char* p = SkipOwnId(text);
    const char* begin = p;
    while (p < end) {
        if (*p == '\'') {
            p = SkipString(p, end);
        } else if (*p == '/' && p + 1 < end && p[1] == '*') {
            p = SkipBlanks(p, end);
        } else if (*p != '#') {
            ++p;
        } else {
            const char* from = p;
            if (const auto id = ReferenceAt(p, begin, end)) found(from, p, *id);
        }
    }
}

}  // namespace

std::vector<std::string_view> Arguments(std::string_view text) {
    std::vector<std::string_view> arguments;
    Split(text, [&](std::string_view argument) {
        arguments.push_back(argument);
        return true;
    });
    return arguments;
}

std::string_view Argument(std::string_view text, size_t n) {
    std::string_view found = "$";
    Split(text, [&](std::string_view argument) {
        if (n-- > 0) return true;
        found = argument;
        return false;
    });
    return found;
}

std::optional<uint64_t> AsReference(std::string_view argument) {
    uint64_t id = 0;
    const char* end = argument.data() + argument.size();
    if (argument.empty() || argument[0] != '#' || ReadId(argument.data() + 1, end, id) != end)
        return std::nullopt;
    return id;
}

void ForEachReference(std::string_view text, const std::function<void(uint64_t)>& visit) {
    ScanReferences(text, [&](const char*, const char*, uint64_t id) { visit(id); });
}

std::vector<uint64_t> References(std::string_view text) {
    std::vector<uint64_t> ids;
    ForEachReference(text, [&](uint64_t id) { ids.push_back(id); });
    return ids;
}

std::optional<double> AsReal(std::string_view argument) {
    std::string_view text = Untyped(argument);
    if (text.starts_with('+')) text.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

std::optional<std::string> AsText(std::string_view argument) {
    const std::string_view text = Untyped(argument);
    if (text.size() < 2 || text.front() != '\'' || text.back() != '\'') return std::nullopt;
    return DecodeText(text.substr(1, text.size() - 2));
}

std::string_view AsEnum(std::string_view argument) {
    if (argument.size() < 3 || argument.front() != '.' || argument.back() != '.') return {};
    return argument.substr(1, argument.size() - 2);
}

bool IsUnset(std::string_view argument) {
    return argument == "$" || argument == "*";
}

void AppendRenumbered(std::string& out, std::string_view text, uint64_t ownId,
                      const std::function<uint64_t(uint64_t)>& idOf) {
    const auto appendReference = [&out](uint64_t id) {
        char digits[24] = {'#'};
        out.append(digits, std::to_chars(digits + 1, std::end(digits), id).ptr);
    };
    const char* copied = SkipOwnId(text);
    appendReference(ownId);
    out += '=';
    ScanReferences(text, [&](const char* from, const char* to, uint64_t id) {
        out.append(copied, from);
        appendReference(idOf(id));
        copied = to;
    });
    out.append(copied, text.data() + text.size());
}

std::string WithArgument(std::string_view text, size_t n, std::string_view replacement) {
    const std::vector<std::string_view> arguments = Arguments(text);
    if (n >= arguments.size()) return std::string(text);
    const auto begin = static_cast<size_t>(arguments[n].data() - text.data());
    std::string result(text.substr(0, begin));
    result += replacement;
    result += text.substr(begin + arguments[n].size());
    return result;
}

std::string WithoutReferences(std::string_view text, const std::function<bool(uint64_t)>& keep) {
    const char* end = text.data() + text.size();
    const char* begin = SkipOwnId(text);
    std::string out(text.data(), begin);
    std::vector<bool> inList;  // per open bracket: a list of values, not the arguments of a type
    const auto copyTo = [&out](const char* from, const char* to) {
        out.append(from, to);
        return to;
    };
    char before = '=';  // the last character that was not blank
    for (const char* p = begin; p < end;) {
        if (*p == '/' && p + 1 < end && p[1] == '*') {
            p = copyTo(p, SkipBlanks(p, end));
            continue;
        }
        const char c = *p;
        if (c == '\'') {
            p = copyTo(p, SkipString(p, end));
        } else if (c == '#') {
            const char* from = p;
            const auto id = ReferenceAt(p, begin, end);
            if (!id || keep(*id)) {
                copyTo(from, p);
            } else if (inList.empty() || !inList.back()) {
                out += '$';
            } else if (const char* next = SkipBlanks(p, end); next < end && *next == ',') {
                p = next + 1;
                continue;  // `before` stays what stood before the member
            } else if (before == ',') {
                out.erase(out.rfind(','));
            }
        } else {
            if (c == '(') inList.push_back(before == '(' || before == ',');
            if (c == ')' && !inList.empty()) inList.pop_back();
            p = copyTo(p, p + 1);
        }
        if (!IsBlank(c)) before = c;
    }
    return out;
}

}  // namespace workbench::step
