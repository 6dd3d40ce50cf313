#include "Workbench/exchange/Exchange.hpp"

#include <algorithm>
#include <cctype>
#include <system_error>

#include "Workbench/exchange/Archive.hpp"
#include "Workbench/exchange/Subset.hpp"
#include "Workbench/step/Writer.hpp"

namespace workbench {
namespace {

/// Unpacking and reading take this part of the whole, making a project of it the rest.
constexpr double readShare = 0.8;

/// So much of the time of saving goes into finding what a property mapping changes.
constexpr double mappingShare = 0.7;

Progress Scaled(const Progress& whole, double share, double from = 0) {
    if (!whole) return {};
    return [&whole, share, from](double fraction) { return whole(from + share * fraction); };
}

OpenResult Refuse(RefusalReason reason, const std::filesystem::path& file, std::string detail = {}) {
    return {.project = nullptr,
            .refusal =
                Refusal{.reason = reason, .file = file, .line = 0, .byte = 0, .detail = std::move(detail)}};
}

OpenResult Refuse(RefusalReason reason, const std::filesystem::path& file, const step::Problem& problem) {
    return {.project = nullptr,
            .refusal = Refusal{
                .reason = reason, .file = file, .line = problem.line, .byte = problem.byte, .detail = {}}};
}

bool LooksLikeXml(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    const size_t begin = bytes.find_first_not_of(" \t\r\n");
    return begin != std::string_view::npos && bytes[begin] == '<';
}

/// The problem that makes a document unusable, if one does.
std::optional<OpenResult> RefusalOf(const step::Document& document, const std::filesystem::path& file) {
    for (const step::Problem& problem : document.Problems()) {
        switch (problem.kind) {
            case step::ProblemKind::empty:
                return Refuse(RefusalReason::empty, file, problem);
            case step::ProblemKind::notStep:
                return Refuse(LooksLikeXml(document.Bytes()) ? RefusalReason::ifcXml : RefusalReason::notIfc,
                              file, problem);
            case step::ProblemKind::noData:
                return Refuse(RefusalReason::notIfc, file, problem);
            case step::ProblemKind::cutOff:
                return Refuse(RefusalReason::cutOff, file, problem);
            default:
                break;
        }
    }
    const std::vector<std::string>& schemas = document.FileHeader().schemas;
    const bool isIfc = std::ranges::any_of(schemas, [](const auto& name) { return name.starts_with("IFC"); });
    if (isIfc) return std::nullopt;
    return Refuse(RefusalReason::notIfc, file, schemas.empty() ? std::string("?") : schemas.front());
}

std::string Extension(const std::filesystem::path& file) {
    std::string extension = file.extension().string();
    for (char& c : extension)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return extension;
}

/// Runs a writing function and turns what it says or throws into a result.
template <typename Write>
SaveResult Save(const Project& project, const std::filesystem::path& file, Write write) {
    SaveResult result{.outcome = SaveOutcome::done, .file = file, .detail = {}, .mapped = {}};
    std::error_code ignored;
    const bool overDamaged =
        !project.Document().IsWhole() && std::filesystem::equivalent(file, project.Location(), ignored);
    if (overDamaged || Extension(file) == ".ifczip" || Extension(file) == ".ifcxml") {
        result.outcome = SaveOutcome::refused;
        return result;
    }
    try {
        if (!write(result)) result.outcome = SaveOutcome::stopped;
    } catch (const std::system_error& error) {
        const int code = error.code().value();
        const bool full = code == ENOSPC || code == EDQUOT || code == EFBIG;
        result.outcome = full ? SaveOutcome::diskFull : SaveOutcome::cannotWrite;
        result.detail = error.code().message();
    }
    return result;
}

bool WriteMapped(const step::Document& document, std::span<const MappedSet> mapping,
                 const std::filesystem::path& file, const Progress& progress, MappingCounts& counts) {
    const auto mapped = MapProperties(document, mapping, Scaled(progress, mappingShare));
    if (!mapped) return false;
    counts = mapped->counts;
    return step::WriteWhole(document, mapped->changes, file,
                            Scaled(progress, 1 - mappingShare, mappingShare));
}

}  // namespace

OpenResult OpenIfc(const std::filesystem::path& file, const Progress& progress) {
    std::shared_ptr<const step::Document> document;
    try {
        if (IsArchive(file)) {
            const ArchivedModel model = ReadArchive(file, Scaled(progress, readShare / 2));
            if (model.kind == ArchivedModel::Kind::stopped) return {};
            if (model.kind == ArchivedModel::Kind::xml) return Refuse(RefusalReason::ifcXml, file);
            if (model.kind == ArchivedModel::Kind::damaged)
                return Refuse(RefusalReason::damagedArchive, file);
            document = step::Document::FromBytes(model.bytes);
        } else {
            document = step::Document::Read(file, Scaled(progress, readShare));
        }
    } catch (const std::system_error& error) {
        return Refuse(RefusalReason::cannotRead, file, error.code().message());
    } catch (const std::bad_alloc&) {
        const std::error_code code = std::make_error_code(std::errc::not_enough_memory);
        return Refuse(RefusalReason::cannotRead, file, code.message());
    }
    if (!document) return {};
    if (auto refusal = RefusalOf(*document, file)) return *std::move(refusal);
    if (progress && !progress(readShare)) return {};
    auto project = std::make_shared<const Project>(std::move(document), std::filesystem::absolute(file));
    if (progress && !progress(1)) return {};
    return {.project = std::move(project), .refusal = std::nullopt};
}

SaveResult SaveIfc(const Project& project, const std::filesystem::path& file, const Progress& progress,
                   std::span<const MappedSet> mapping) {
    return Save(project, file, [&](SaveResult& result) {
        if (mapping.empty()) return step::WriteWhole(project.Document(), {}, file, progress);
        return WriteMapped(project.Document(), mapping, file, progress, result.mapped);
    });
}

SaveResult SaveIfcSubset(const Project& project, std::span<const API_Guid> elements,
                         const std::filesystem::path& file, const Progress& progress,
                         std::span<const MappedSet> mapping) {
    return Save(project, file, [&](SaveResult& result) {
        Subset subset = SubsetOf(project, elements);
        subset.changes.fileNameStatement = step::FileNameStatement(project.Document(), file);
        if (mapping.empty())
            return step::WriteSelected(project.Document(), subset.records, subset.changes, file, progress);
        const auto chosen = step::Selected(project.Document(), subset.records, subset.changes);
        return WriteMapped(*chosen, mapping, file, progress, result.mapped);
    });
}

}  // namespace workbench
