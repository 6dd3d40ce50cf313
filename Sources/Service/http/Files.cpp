#include "Service/http/Files.hpp"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <map>
#include <memory>
#include <string_view>
#include <system_error>

#include "Service/Errors.hpp"
#include "Service/FileHandle.hpp"

namespace service {

namespace fs = std::filesystem;

namespace {

constexpr size_t pieceSize = 64 * 1024;

const std::string& TypeOf(const fs::path& file) {
    static const std::string other = "application/octet-stream";
    static const std::map<std::string, std::string, std::less<>> types = {
        {".css", "text/css; charset=utf-8"},
        {".html", "text/html; charset=utf-8"},
        {".ico", "image/x-icon"},
        {".jpg", "image/jpeg"},
        {".js", "text/javascript; charset=utf-8"},
        {".json", "application/json"},
        {".mjs", "text/javascript; charset=utf-8"},
        {".png", "image/png"},
        {".svg", "image/svg+xml"},
        {".txt", "text/plain; charset=utf-8"},
        {".wasm", "application/wasm"},
        {".woff2", "font/woff2"},
    };
    const auto found = types.find(file.extension().native());
    return found == types.end() ? other : found->second;
}

bool SendPiece(int file, size_t offset, size_t length, const httplib::DataSink& sink) {
    std::array<char, pieceSize> piece;
    const ssize_t count =
        pread(file, piece.data(), std::min(length, piece.size()), static_cast<off_t>(offset));
    return count > 0 && sink.write(piece.data(), static_cast<size_t>(count));
}

bool IsBelow(const fs::path& folder, const fs::path& file) {
    return std::mismatch(folder.begin(), folder.end(), file.begin(), file.end()).first == folder.end();
}

}  // namespace

void SendFile(httplib::Response& response, const fs::path& file, const std::string& type) {
    // Copied by the library along with the function that owns it.
    const auto handle = std::make_shared<FileHandle>(open(file.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat state {};
    if (handle->Get() < 0 || fstat(handle->Get(), &state) != 0) {
        throw std::system_error(errno, std::generic_category(), file.native());
    }
    if (state.st_size == 0) return response.set_content("", type);
    response.set_content_provider(static_cast<size_t>(state.st_size), type,
                                  [handle](size_t offset, size_t length, httplib::DataSink& sink) {
                                      return SendPiece(handle->Get(), offset, length, sink);
                                  });
}

WebRoot::WebRoot(const fs::path& folder) {
    std::error_code missing;
    this->folder = fs::canonical(folder, missing);
}

void WebRoot::Send(const std::string& path, httplib::Response& response) const {
    const HttpError notFound(404, "There is no such page.");
    if (folder.empty() || path.find('\0') != std::string::npos) throw notFound;
    std::error_code missing;
    fs::path file = fs::canonical(folder / fs::path(path).relative_path(), missing);
    if (!missing && fs::is_directory(file)) file = fs::canonical(file / "index.html", missing);
    if (missing || !IsBelow(folder, file) || !fs::is_regular_file(file)) throw notFound;
    SendFile(response, file, TypeOf(file));
    response.set_header("Cache-Control", "no-cache");
}

}  // namespace service
