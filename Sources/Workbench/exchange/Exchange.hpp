#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Workbench/exchange/PropertyMapping.hpp"
#include "Workbench/project/Project.hpp"
#include "Workbench/step/Progress.hpp"

namespace workbench {

enum class Language { english, german };

enum class RefusalReason {
    cannotRead,     // missing, a folder, no permission, read error
    empty,          // not one byte
    notIfc,         // not STEP, or STEP of another schema, or without data
    ifcXml,         // IFC, but written as XML
    cutOff,         // ends before its data does
    damagedArchive  // an .ifczip that does not unpack or has no model in it
};

/// Why a file was not opened.
struct Refusal {
    RefusalReason reason = RefusalReason::cannotRead;
    std::filesystem::path file;
    uint64_t line = 0;   // from 1; 0: the file has no lines that could be named
    uint64_t byte = 0;   // from 0
    std::string detail;  // the system's words or the schema found
};

struct OpenResult {
    std::shared_ptr<const Project> project;  // null when refused or stopped
    std::optional<Refusal> refusal;          // nothing when opened or stopped
};

enum class SaveOutcome {
    done,
    stopped,  // by the progress function
    refused,  // the source file is damaged and would be written over, or the name asks for another format
    cannotWrite,
    diskFull
};

struct SaveResult {
    SaveOutcome outcome = SaveOutcome::done;
    std::filesystem::path file;
    std::string detail;         // the system's words
    MappingCounts mapped = {};  // by the mapping that it was saved with
};

/// Opens an .ifc or .ifczip (told apart by content). A damaged file that is usable opens; what was skipped is
/// in project->Document().Problems().
OpenResult OpenIfc(const std::filesystem::path& file, const Progress& progress = {});

/// Writes the whole model, byte for byte as it was read, and with the property sets of the mapping where its
/// elements have values for them. On any failure the old file stays as it was.
SaveResult SaveIfc(const Project& project, const std::filesystem::path& file, const Progress& progress = {},
                   std::span<const MappedSet> mapping = {});
/// Writes these elements (with their parts, openings, types, properties, materials and spatial parents) and
/// no other. GUIDs that are not in the project are passed over.
SaveResult SaveIfcSubset(const Project& project, std::span<const API_Guid> elements,
                         const std::filesystem::path& file, const Progress& progress = {},
                         std::span<const MappedSet> mapping = {});

/// Sentences for a person, naming the file, what is wrong and what to do.
std::string Describe(const Refusal& refusal, Language language);
std::string Describe(const SaveResult& result, Language language);
std::string Describe(const step::Problem& problem, Language language);

}  // namespace workbench
