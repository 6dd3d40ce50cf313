#include "Workbench/step/Document.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

#include "Workbench/step/Buffer.hpp"
#include "Workbench/step/Reader.hpp"

namespace workbench::step {
namespace {

/// Reading the bytes is about a quarter of the work, indexing them the rest.
constexpr double readShare = 0.25;

class OpenFile {
  public:
    explicit OpenFile(const std::filesystem::path& file)
        : descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC)) {
        if (descriptor < 0) throw std::system_error(errno, std::generic_category());
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile() { close(descriptor); }

    int Descriptor() const { return descriptor; }
    size_t Size() const {
        struct stat status = {};
        if (fstat(descriptor, &status) != 0) throw std::system_error(errno, std::generic_category());
        if (S_ISDIR(status.st_mode)) throw std::system_error(EISDIR, std::generic_category());
        if (!S_ISREG(status.st_mode)) throw std::system_error(EINVAL, std::generic_category());
        return static_cast<size_t>(status.st_size);
    }

  private:
    int descriptor;
};

Progress Part(const Progress& whole, double from, double to) {
    if (!whole) return {};
    return [&whole, from, to](double fraction) { return whole(from + (to - from) * fraction); };
}

}  // namespace

Document::Document(std::unique_ptr<Buffer> bytes) : buffer(std::move(bytes)) {}
Document::~Document() = default;

std::shared_ptr<const Document> Document::Read(const std::filesystem::path& file, const Progress& progress) {
    const OpenFile source(file);
    auto bytes = std::make_unique<Buffer>(source.Size());
    if (!bytes->Fill(source.Descriptor(), Part(progress, 0, readShare))) return nullptr;
    std::shared_ptr<Document> document(new Document(std::move(bytes)));
    if (!Reader(*document).Read(Part(progress, readShare, 1))) return nullptr;
    return document;
}

std::shared_ptr<const Document> Document::FromBytes(std::string_view bytes, const Progress& progress) {
    return FromPieces(std::span(&bytes, 1), progress);
}

std::shared_ptr<const Document> Document::FromPieces(std::span<const std::string_view> pieces,
                                                     const Progress& progress) {
    size_t size = 0;
    for (const std::string_view piece : pieces)
        size += piece.size();
    auto copy = std::make_unique<Buffer>(size);
    char* at = copy->Data();
    for (const std::string_view piece : pieces)
        at = std::copy(piece.begin(), piece.end(), at);
    std::shared_ptr<Document> document(new Document(std::move(copy)));
    if (!Reader(*document).Read(progress)) return nullptr;
    return document;
}

std::string_view Document::Bytes() const {
    return buffer->Bytes();
}

const Record* Document::Find(uint64_t id) const {
    if (!denseIndex.empty()) {
        const uint32_t place = id < denseIndex.size() ? denseIndex[id] : 0;
        return place ? &records[place - 1] : nullptr;
    }
    const auto behind =
        std::ranges::upper_bound(sparseIndex, id, {}, [](const auto& entry) { return entry.first; });
    if (behind == sparseIndex.begin() || std::prev(behind)->first != id) return nullptr;
    return &records[std::prev(behind)->second];
}

std::vector<const Record*> Document::RecordsOf(std::initializer_list<std::string_view> types) const {
    std::vector<bool> wanted(typeNames.size());
    for (size_t i = 0; i < typeNames.size(); ++i) {
        wanted[i] = std::ranges::find(types, typeNames[i]) != types.end();
    }
    std::vector<const Record*> found;
    for (const Record& record : records) {
        if (wanted[record.type]) found.push_back(&record);
    }
    return found;
}

}  // namespace workbench::step
