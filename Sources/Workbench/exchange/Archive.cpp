#include "Workbench/exchange/Archive.hpp"

#include <unzip.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <fstream>
#include <memory>
#include <string_view>

namespace workbench {
namespace {

/// Packed IFC is a fifth to a tenth of its size: what claims more is made to fill the memory.
constexpr uint64_t mostTimesPacked = 200;
constexpr uint64_t harmlessSize = uint64_t{64} << 20;

struct Close {
    void operator()(void* archive) const { unzClose(archive); }
};

bool EndsWith(const std::string& name, std::string_view lowerCaseEnding) {
    if (name.size() < lowerCaseEnding.size()) return false;
    return std::equal(lowerCaseEnding.rbegin(), lowerCaseEnding.rend(), name.rbegin(),
                      [](char a, char b) { return a == std::tolower(static_cast<unsigned char>(b)); });
}

ArchivedModel Unpack(unzFile archive, const unz_file_info64& info, const Progress& progress) {
    const uint64_t most = std::max<uint64_t>(harmlessSize, info.compressed_size * mostTimesPacked);
    if (info.uncompressed_size > most || unzOpenCurrentFile(archive) != UNZ_OK) return {};
    ArchivedModel model;
    bool stopped = false;
    int got = 0;
    std::array<char, 1 << 18> portion;
    while ((got = unzReadCurrentFile(archive, portion.data(), portion.size())) > 0 && !stopped) {
        model.bytes.append(portion.data(), static_cast<size_t>(got));
        if (model.bytes.size() > info.uncompressed_size) break;
        stopped = progress && !progress(static_cast<double>(model.bytes.size()) /
                                        static_cast<double>(std::max<uint64_t>(info.uncompressed_size, 1)));
    }
    const bool sumIsRight = unzCloseCurrentFile(archive) == UNZ_OK;
    const bool whole = got == 0 && sumIsRight && model.bytes.size() == info.uncompressed_size;
    model.kind = stopped ? ArchivedModel::Kind::stopped
                 : whole ? ArchivedModel::Kind::model
                         : ArchivedModel::Kind::damaged;
    return model;
}

}  // namespace

bool IsArchive(const std::filesystem::path& file) {
    std::array<char, 4> begin = {};
    std::ifstream(file, std::ios::binary).read(begin.data(), begin.size());
    return std::string_view(begin.data(), begin.size()) == std::string_view("PK\x03\x04", 4);
}

ArchivedModel ReadArchive(const std::filesystem::path& file, const Progress& progress) {
    const std::unique_ptr<void, Close> archive(unzOpen64(file.c_str()));
    if (!archive) return {};
    bool sawXml = false;
    for (int at = unzGoToFirstFile(archive.get()); at == UNZ_OK; at = unzGoToNextFile(archive.get())) {
        unz_file_info64 info = {};
        std::array<char, 1024> name = {};
        if (unzGetCurrentFileInfo64(archive.get(), &info, name.data(), name.size() - 1, nullptr, 0, nullptr,
                                    0) != UNZ_OK) {
            return {};
        }
        if (EndsWith(name.data(), ".ifc")) return Unpack(archive.get(), info, progress);
        sawXml |= EndsWith(name.data(), ".ifcxml");
    }
    return {.kind = sawXml ? ArchivedModel::Kind::xml : ArchivedModel::Kind::damaged, .bytes = {}};
}

}  // namespace workbench
