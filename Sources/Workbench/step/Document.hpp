#pragma once

#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Workbench/step/Progress.hpp"

namespace workbench::step {

class Buffer;

/// One entity instance, "#12=IFCWALL(...);", and where it stands in the document's bytes.
struct Record {
    uint64_t id = 0;
    uint64_t offset = 0;  // of the '#'
    uint32_t length = 0;  // up to and including the ';'
    uint32_t type = 0;    // see Document::TypeName
};

enum class ProblemKind {
    empty,          // not one byte
    notStep,        // does not begin with ISO-10303-21
    noData,         // a header, but no DATA section
    damagedRecord,  // skipped; reading went on at the next record
    duplicateId,    // the later record wins
    missingEndsec,  // the DATA section does not end, but the file does
    cutOff,         // the file ends inside the DATA section
};

struct Problem {
    ProblemKind kind = ProblemKind::damagedRecord;
    uint64_t line = 1;  // counted from 1
    uint64_t byte = 0;  // counted from 0
    uint64_t id = 0;    // of the record concerned; 0: none known
};

/// What the HEADER section says, decoded to UTF-8.
struct Header {
    std::string description;
    std::string name;
    std::string timeStamp;
    std::string preprocessor;
    std::string originatingSystem;
    std::vector<std::string> schemas;  // without blanks, upper case
};

/// An ISO 10303-21 file, read once and never changed: its bytes as they are, and an index of its records.
/// What is not understood stays in the bytes, so that writing loses nothing.
class Document {
  public:
    /// Reads a file. Content never makes it fail, see Problems(); null when the progress function stopped it.
    /// Throws std::system_error when the file cannot be read.
    static std::shared_ptr<const Document> Read(const std::filesystem::path& file,
                                                const Progress& progress = {});
    /// The same for bytes that are in memory already.
    static std::shared_ptr<const Document> FromBytes(std::string_view bytes, const Progress& progress = {});
    /// The same for bytes in several pieces, one behind the other.
    static std::shared_ptr<const Document> FromPieces(std::span<const std::string_view> pieces,
                                                      const Progress& progress = {});

    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;
    ~Document();

    /// The whole file.
    std::string_view Bytes() const;
    /// All undamaged records, in file order; of several with one id, all.
    std::span<const Record> Records() const { return records; }
    /// The record with that id, or null.
    const Record* Find(uint64_t id) const;
    /// Its place in Records().
    size_t IndexOf(const Record& record) const { return static_cast<size_t>(&record - records.data()); }
    /// The records of any of these types (upper case), in file order.
    std::vector<const Record*> RecordsOf(std::initializer_list<std::string_view> types) const;

    /// "#12=IFCWALL(...);" exactly as it stands in the file.
    std::string_view Text(const Record& record) const { return Bytes().substr(record.offset, record.length); }
    /// In upper case, empty for a complex instance "#1=(A()B());".
    std::string_view TypeName(const Record& record) const { return typeNames[record.type]; }
    /// All types that occur; Record::type counts in this list.
    std::span<const std::string> TypeNames() const { return typeNames; }

    const Header& FileHeader() const { return header; }
    /// The bytes of the header's FILE_NAME statement, "FILE_NAME(...);"; empty when there is none.
    std::string_view FileNameStatement() const { return Bytes().substr(fileNameBegin, fileNameLength); }
    /// The bytes up to and including the header's "ENDSEC;".
    std::string_view HeaderText() const { return Bytes().substr(0, headerEnd); }
    /// Where new records go: the byte at which the last data section's ENDSEC begins.
    size_t DataEnd() const { return dataEnd; }

    /// At most the first 100; ProblemCount() tells how many there are.
    std::span<const Problem> Problems() const { return problems; }
    size_t ProblemCount() const { return problemCount; }
    /// True when no byte of the DATA section was skipped or is missing.
    bool IsWhole() const { return whole; }
    uint64_t HighestId() const { return highestId; }

  private:
    friend class Reader;
    explicit Document(std::unique_ptr<Buffer> bytes);

    std::unique_ptr<Buffer> buffer;
    std::vector<Record> records;
    std::vector<std::string> typeNames;
    Header header;
    size_t fileNameBegin = 0, fileNameLength = 0, headerEnd = 0, dataEnd = 0;
    std::vector<Problem> problems;
    size_t problemCount = 0;
    bool whole = true;
    uint64_t highestId = 0;
    std::vector<uint32_t> denseIndex;                        // by id: place in records + 1
    std::vector<std::pair<uint64_t, uint32_t>> sparseIndex;  // sorted; used when ids are far apart
};

}  // namespace workbench::step
