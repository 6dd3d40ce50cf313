#pragma once

#include <string_view>

#include "Workbench/step/Document.hpp"
#include "Workbench/step/Specials.hpp"
#include "Workbench/step/TypeTable.hpp"

namespace workbench::step {

/// Fills a document from its bytes, in one pass over them.
class Reader {
  public:
    explicit Reader(step::Document& document);

    /// False when the progress function stopped it.
    bool Read(const Progress& progress);

  private:
    enum class Section { none, header, data, other };
    enum class End { found, damaged, file };
    struct Statement {
        End end;
        const char* behind;  // the ';', or where reading goes on
    };

    step::Document& document;
    const char* base;
    const char* begin;  // behind a byte order mark
    const char* end;
    char lineEnd;
    Specials specials;
    TypeTable types;
    Section section = Section::none;
    bool sawData = false, sawEnd = false;
    const char* countedTo;  // line numbers are counted on from here
    uint64_t countedLine = 1;

    bool BeginsAsStep();
    Statement FindEnd(const char* p);
    bool StartsStatement(const char* line) const;
    const char* NextStatementLine(const char* p, const char* limit) const;
    const char* ReadType(const char* p, uint32_t& type);
    const char* ReadRecord(const char* start);
    const char* ReadKeyword(const char* p);
    void ReadHeaderStatement(std::string_view keyword, std::string_view statement);
    void EndSection(const char* keyword, const char* behind);
    void Finish();
    void BuildIndex();
    void Report(ProblemKind kind, const char* where, uint64_t id = 0);
};

}  // namespace workbench::step
