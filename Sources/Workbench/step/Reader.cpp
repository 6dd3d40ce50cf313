#include "Workbench/step/Reader.hpp"

#include <algorithm>
#include <cstring>
#include <limits>

#include "Workbench/step/Arguments.hpp"
#include "Workbench/step/Buffer.hpp"
#include "Workbench/step/Lexer.hpp"

namespace workbench::step {
namespace {

constexpr size_t problemsKept = 100;

/// The word at p in upper case; '-' belongs to it, as in "END-ISO-10303-21".
std::string Word(const char* p, const char* end) {
    std::string word;
    for (; p < end && (IsWordCharacter(*p) || *p == '-') && word.size() < 40; ++p)
        word += ToUpper(*p);
    return word;
}

char LineEndOf(std::string_view bytes) {
    return bytes.substr(0, 1 << 16).find('\n') == std::string_view::npos ? '\r' : '\n';
}

}  // namespace

Reader::Reader(step::Document& document)
    : document(document),
      base(document.Bytes().data()),
      begin(base),
      end(base + document.Bytes().size()),
      lineEnd(LineEndOf(document.Bytes())),
      specials(lineEnd),
      types(document.typeNames),
      countedTo(begin) {
    char* margin = document.buffer->Data() + document.Bytes().size();
    std::fill_n(margin, Buffer::margin, ';');
}

bool Reader::Read(const Progress& progress) {
    if (!BeginsAsStep()) return true;
    constexpr ptrdiff_t portion = 8 << 20;
    document.records.reserve(static_cast<size_t>(end - begin) / 40);
    PreferLargePages(document.records.data(), document.records.capacity() * sizeof(Record));
    const char* pause = begin + portion;
    const char* p = SkipBlanks(begin, end);
    while (p < end && !sawEnd) {
        p = section == Section::data && *p == '#' ? ReadRecord(p) : ReadKeyword(p);
        p = SkipBlanks(p, end);
        if (p >= pause) {
            pause = p + portion;
            if (progress && !progress(static_cast<double>(p - begin) / static_cast<double>(end - begin)))
                return false;
        }
    }
    Finish();
    BuildIndex();
    return true;
}

bool Reader::BeginsAsStep() {
    if (begin == end) {
        Report(ProblemKind::empty, begin);
        return false;
    }
    if (std::string_view(begin, end).starts_with("\xEF\xBB\xBF")) begin += 3;
    const char* p = SkipBlanks(begin, end);
    if (Word(p, end) == "ISO-10303-21") return true;
    Report(ProblemKind::notStep, p);
    return false;
}

/// Looks for the ';' of the statement that p is in, outside strings and comments. A line within it that
/// begins a new record shows that its ';' or an apostrophe is missing.
Reader::Statement Reader::FindEnd(const char* p) {
    specials.Seek(p);
    for (;;) {
        const char* found = specials.Next();
        if (found >= end) return {End::file, end};
        if (*found == ';') return {End::found, found + 1};
        if (*found == '\'') {
            const char* content = found + 1;
            do {
                found = specials.Next();
                if (found >= end) return {End::file, end};
                if (*found == lineEnd && StartsStatement(found + 1)) return {End::damaged, found + 1};
            } while (*found != '\'' || IsShiftedApostrophe(content, found));
        } else if (*found == lineEnd) {
            if (StartsStatement(found + 1)) return {End::damaged, found + 1};
        } else if (found[1] == '*') {
            const char* content = found + 2;
            do {
                found = specials.Next();
                if (found >= end) return {End::file, end};
            } while (*found != '/' || found - 1 < content || found[-1] != '*');
        }
    }
}

/// "#12=" or "ENDSEC" at the beginning of a line: no argument list goes on like that.
bool Reader::StartsStatement(const char* line) const {
    while (line < end && (*line == ' ' || *line == '\t'))
        ++line;
    if (line == end) return false;
    if (*line != '#') return (*line == 'E' || *line == 'e') && Word(line, end) == "ENDSEC";
    uint64_t id = 0;
    const char* p = ReadId(line + 1, end, id);
    while (p && p < end && (*p == ' ' || *p == '\t'))
        ++p;
    return p && p < end && *p == '=';
}

const char* Reader::NextStatementLine(const char* p, const char* limit) const {
    while (p < limit) {
        const void* found = std::memchr(p, lineEnd, static_cast<size_t>(limit - p));
        if (!found) return limit;
        p = static_cast<const char*>(found) + 1;
        if (StartsStatement(p)) return p;
    }
    return limit;
}

/// Where the arguments of a record begin, whose type name begins at p; null when there are none.
const char* Reader::ReadType(const char* p, uint32_t& type) {
    constexpr ptrdiff_t longName = 64;
    const void* bracket = std::memchr(p, '(', static_cast<size_t>(std::min(longName, end - p)));
    if (const char* open = static_cast<const char*>(bracket); open && types.WasRecent({p, open}, type))
        return open;

    const char* name = p;
    while (p < end && IsWordCharacter(*p))
        ++p;
    type = types.NumberOf({name, p});
    p = SkipBlanks(p, end);
    return p < end && *p == '(' ? p : nullptr;
}

const char* Reader::ReadRecord(const char* start) {
    Record record;
    record.offset = static_cast<uint64_t>(start - base);
    const char* p = ReadId(start + 1, end, record.id);
    if (p) p = SkipBlanks(p, end);
    const bool begunWell = p && p < end && *p == '=' && (p = ReadType(SkipBlanks(p + 1, end), record.type));
    const Statement statement = FindEnd(begunWell ? p : start + 1);
    if (statement.end == End::file) {
        Report(ProblemKind::cutOff, start, record.id);
        return end;
    }
    const auto length = static_cast<uint64_t>(statement.behind - start);
    const char* last = statement.behind - 2;
    while (last > start && IsBlank(*last))
        --last;
    const bool endsWell = statement.end == End::found && (*last == ')' || *last == '/');
    if (!begunWell || !endsWell || length > std::numeric_limits<uint32_t>::max()) {
        Report(ProblemKind::damagedRecord, start, record.id);
        return statement.behind;
    }
    record.length = static_cast<uint32_t>(length);
    document.records.push_back(record);
    return statement.behind;
}

const char* Reader::ReadKeyword(const char* p) {
    const std::string keyword = Word(p, end);
    const Statement statement = FindEnd(p);
    if (keyword == "END-ISO-10303-21") {
        if (section == Section::data) Report(ProblemKind::missingEndsec, p);
        if (section == Section::data) document.dataEnd = static_cast<size_t>(p - base);
        section = Section::none;
        sawEnd = true;
    } else if (keyword == "ENDSEC") {
        EndSection(p, statement.behind);
    } else if (section == Section::data) {
        Report(ProblemKind::damagedRecord, p);
        return NextStatementLine(p, statement.behind);
    } else if (section == Section::header) {
        if (statement.end == End::found) ReadHeaderStatement(keyword, {p, statement.behind});
    } else if (keyword == "HEADER") {
        section = Section::header;
    } else if (keyword == "DATA") {
        section = Section::data;
        sawData = true;
    } else if (keyword == "ANCHOR" || keyword == "REFERENCE" || keyword == "SIGNATURE") {
        section = Section::other;
    }
    return statement.behind;
}

void Reader::ReadHeaderStatement(std::string_view keyword, std::string_view statement) {
    Header& header = document.header;
    const std::vector<std::string_view> arguments = Arguments(statement);
    const auto text = [&](size_t n) { return n < arguments.size() ? AsText(arguments[n]).value_or("") : ""; };
    if (keyword == "FILE_NAME") {
        document.fileNameBegin = static_cast<size_t>(statement.data() - base);
        document.fileNameLength = statement.size();
        header.name = text(0);
        header.timeStamp = text(1);
        header.preprocessor = text(4);
        header.originatingSystem = text(5);
    } else if (keyword == "FILE_DESCRIPTION" && !arguments.empty()) {
        for (const std::string_view line : Arguments(arguments[0])) {
            header.description += (header.description.empty() ? "" : "\n") + AsText(line).value_or("");
        }
    } else if (keyword == "FILE_SCHEMA" && !arguments.empty()) {
        for (const std::string_view item : Arguments(arguments[0])) {
            std::string name = AsText(item).value_or("");
            std::erase_if(name, IsBlank);
            std::ranges::transform(name, name.begin(), ToUpper);
            header.schemas.push_back(std::move(name));
        }
    }
}

void Reader::EndSection(const char* keyword, const char* behind) {
    if (section == Section::header) document.headerEnd = static_cast<size_t>(behind - base);
    if (section == Section::data) document.dataEnd = static_cast<size_t>(keyword - base);
    section = Section::none;
}

void Reader::Finish() {
    const bool alreadyCutOff =
        !document.problems.empty() && document.problems.back().kind == ProblemKind::cutOff;
    if (alreadyCutOff) return;
    if (section == Section::data || section == Section::header) {
        Report(ProblemKind::cutOff, end);
    } else if (!sawData) {
        Report(sawEnd ? ProblemKind::noData : ProblemKind::cutOff, end);
    }
}

void Reader::BuildIndex() {
    const std::vector<Record>& records = document.records;
    for (const Record& record : records)
        document.highestId = std::max(document.highestId, record.id);
    const auto reportDuplicate = [&](const Record& record) {
        Report(ProblemKind::duplicateId, base + record.offset, record.id);
    };
    if (document.highestId < 8 * records.size() + 1024) {
        document.denseIndex.resize(document.highestId + 1);
        for (size_t i = 0; i < records.size(); ++i) {
            uint32_t& place = document.denseIndex[records[i].id];
            if (place) reportDuplicate(records[i]);
            place = static_cast<uint32_t>(i) + 1;
        }
        return;
    }
    std::vector<std::pair<uint64_t, uint32_t>>& index = document.sparseIndex;
    index.reserve(records.size());
    for (size_t i = 0; i < records.size(); ++i)
        index.emplace_back(records[i].id, static_cast<uint32_t>(i));
    if (!std::ranges::is_sorted(index)) std::ranges::sort(index);
    for (size_t i = 1; i < index.size(); ++i) {
        if (index[i].first == index[i - 1].first) reportDuplicate(records[index[i].second]);
    }
}

void Reader::Report(ProblemKind kind, const char* where, uint64_t id) {
    if (kind == ProblemKind::damagedRecord || kind == ProblemKind::missingEndsec ||
        kind == ProblemKind::cutOff) {
        document.whole = false;
    }
    if (document.problemCount++ >= problemsKept && kind != ProblemKind::cutOff) return;
    if (where < countedTo) {
        countedTo = begin;
        countedLine = 1;
    }
    countedLine += static_cast<uint64_t>(std::count(countedTo, where, lineEnd));
    countedTo = where;
    document.problems.push_back({kind, countedLine, static_cast<uint64_t>(where - base), id});
}

}  // namespace workbench::step
