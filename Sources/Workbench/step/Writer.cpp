#include "Workbench/step/Writer.hpp"

#include <algorithm>
#include <chrono>
#include <ctime>

#include "Workbench/step/Arguments.hpp"
#include "Workbench/step/OutputFile.hpp"
#include "Workbench/step/Text.hpp"

namespace workbench::step {
namespace {

/// Writes in portions, so that the progress function is asked now and then.
class Pen {
  public:
    Pen(const std::filesystem::path& file, size_t expected, const Progress& progress)
        : output(file), expected(static_cast<double>(expected)), progress(progress) {}

    void Write(std::string_view bytes) {
        while (!bytes.empty() && !stopped) {
            const std::string_view part = bytes.substr(0, portion);
            output.Write(part);
            bytes.remove_prefix(part.size());
            written += part.size();
            if (written < pause) continue;
            pause = written + portion;
            stopped = progress && !progress(std::min(1.0, static_cast<double>(written) / expected));
        }
    }

    bool Finish() {
        if (!stopped) output.Commit();
        return !stopped;
    }

  private:
    static constexpr size_t portion = 4 << 20;
    OutputFile output;
    double expected;
    const Progress& progress;
    size_t written = 0, pause = portion;
    bool stopped = false;
};

/// A piece of the document's bytes and what is written in its place.
struct Patch {
    size_t offset = 0;
    size_t length = 0;
    std::string_view text;
};

std::vector<Patch> PatchesOf(const Document& document, const Changes& changes) {
    std::vector<Patch> patches;
    if (const std::string_view old = document.FileNameStatement();
        !changes.fileNameStatement.empty() && !old.empty()) {
        const auto offset = static_cast<size_t>(old.data() - document.Bytes().data());
        patches.push_back({offset, old.size(), changes.fileNameStatement});
    }
    for (const uint64_t id : changes.removed) {
        if (const Record* record = document.Find(id)) patches.push_back({record->offset, record->length, ""});
    }
    for (const auto& [id, text] : changes.records) {
        if (const Record* record = document.Find(id))
            patches.push_back({record->offset, record->length, text});
    }
    std::ranges::sort(patches, {}, &Patch::offset);
    return patches;
}

/// With their line ends.
std::vector<std::string_view> NewRecords(const Document& document, const Changes& changes) {
    std::vector<std::string_view> added;
    for (const auto& [id, text] : changes.records) {
        if (!document.Find(id)) added.insert(added.end(), {text, "\n"});
    }
    if (!changes.added.empty()) added.push_back(changes.added);
    return added;
}

/// What a file with the chosen records consists of, from its beginning to its end.
template <typename Take>
void ForEachPiece(const Document& document, std::span<const Record* const> chosen, const Changes& changes,
                  Take take) {
    const std::string_view header = document.HeaderText();
    const std::string_view name = document.FileNameStatement();
    if (changes.fileNameStatement.empty() || name.empty()) {
        take(header);
    } else {
        const auto offset = static_cast<size_t>(name.data() - header.data());
        take(header.substr(0, offset));
        take(changes.fileNameStatement);
        take(header.substr(offset + name.size()));
    }
    take("\nDATA;\n");
    for (const Record* record : chosen) {
        const auto changed = changes.records.find(record->id);
        take(changed == changes.records.end() ? document.Text(*record) : std::string_view(changed->second));
        take("\n");
    }
    for (const std::string_view text : NewRecords(document, changes))
        take(text);
    take("ENDSEC;\nEND-ISO-10303-21;\n");
}

}  // namespace

bool WriteWhole(const Document& document, const Changes& changes, const std::filesystem::path& file,
                const Progress& progress) {
    const std::string_view bytes = document.Bytes();
    Pen pen(file, bytes.size(), progress);
    size_t at = 0;
    const auto copyTo = [&](size_t offset) {
        pen.Write(bytes.substr(at, offset - at));
        at = offset;
    };
    for (const Patch& patch : PatchesOf(document, changes)) {
        copyTo(patch.offset);
        pen.Write(patch.text);
        at += patch.length;
    }
    if (const auto added = NewRecords(document, changes); !added.empty()) {
        copyTo(document.DataEnd());
        for (const std::string_view text : added)
            pen.Write(text);
    }
    copyTo(bytes.size());
    return pen.Finish();
}

bool WriteSelected(const Document& document, std::span<const Record* const> chosen, const Changes& changes,
                   const std::filesystem::path& file, const Progress& progress) {
    size_t expected = document.HeaderText().size();
    for (const Record* record : chosen)
        expected += record->length + 1;
    Pen pen(file, expected, progress);
    ForEachPiece(document, chosen, changes, [&pen](std::string_view piece) { pen.Write(piece); });
    return pen.Finish();
}

std::shared_ptr<const Document> Selected(const Document& document, std::span<const Record* const> chosen,
                                         const Changes& changes) {
    std::vector<std::string_view> pieces;
    ForEachPiece(document, chosen, changes, [&pieces](std::string_view piece) { pieces.push_back(piece); });
    return Document::FromPieces(pieces);
}

std::string FileNameStatement(const Document& document, const std::filesystem::path& file) {
    const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm local = {};
    localtime_r(&now, &local);
    char time[32];
    std::strftime(time, sizeof time, "'%Y-%m-%dT%H:%M:%S'", &local);
    const std::string name = EncodeText(file.filename().string());
    const std::string_view old = document.FileNameStatement();
    if (Arguments(old).size() < 7) return "FILE_NAME(" + name + "," + time + ",(''),(''),'','','');";
    return WithArgument(WithArgument(old, 0, name), 1, time);
}

}  // namespace workbench::step
