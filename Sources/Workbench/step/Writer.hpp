#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <string>

#include "Workbench/step/Document.hpp"

namespace workbench::step {

/// What a written file has that its document has not.
struct Changes {
    std::map<uint64_t, std::string> records;  // full text, "#12=...;", of edited and new records
    std::string added;                        // further new records, each on a line
    std::set<uint64_t> removed;
    std::string fileNameStatement;  // replaces the header's "FILE_NAME(...);" unless empty
};

/// Writes the whole document with the changes laid over it: all other bytes are copied as they are. The old
/// file at that path stays whole until the new one is complete. False when the progress function stopped it.
/// Throws std::system_error, e.g. std::errc::no_space_on_device.
bool WriteWhole(const Document& document, const Changes& changes, const std::filesystem::path& file,
                const Progress& progress = {});
/// The same, but only with the records chosen (in that order) and the new ones.
bool WriteSelected(const Document& document, std::span<const Record* const> chosen, const Changes& changes,
                   const std::filesystem::path& file, const Progress& progress = {});

/// The file that WriteSelected writes, as a document.
std::shared_ptr<const Document> Selected(const Document& document, std::span<const Record* const> chosen,
                                         const Changes& changes);

/// "FILE_NAME(...);" of the document with another file name and the time of now.
std::string FileNameStatement(const Document& document, const std::filesystem::path& file);

}  // namespace workbench::step
