#include "Location.hpp"

#include <charconv>
#include <climits>
#include <string>

#include "FileSystem.hpp"
#include "HostKit/GSRoot/Text.hpp"

namespace IO {

namespace {

bool IsComponent(const GS::UniString& name) {
    return !name.IsEmpty() && name != "." && name != ".." && !name.Contains("/") &&
           name.FindFirst(u'\0') == MaxUIndex;
}

constexpr std::string_view urlScheme = "file://";

// RFC 3986's unreserved characters, and the separator.
bool IsPlainInUrl(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("-._~/").find(c) != std::string_view::npos;
}

}  // namespace

Location::Location(const Location& parent, const Name& name) : path(parent.path) {
    if (AppendToLocal(name) != NoError) path.Clear();
}

GSErrCode Location::Set(const GS::UniString& newPath) {
    USize length = newPath.GetLength();
    while (length > 1 && newPath[length - 1] == u'/')
        --length;
    path = newPath.GetPrefix(length);
    return NoError;
}

GSErrCode Location::AppendToLocal(const Name& name) {
    if (path.IsEmpty() || !IsComponent(name.ToString())) return FileSystem::BadLocation;
    if (!path.EndsWith("/")) path += "/";
    path += name.ToString();
    return NoError;
}

GSErrCode Location::DeleteLastLocalName() {
    const UIndex slash = path.FindLast(u'/');
    if (slash == MaxUIndex || path.GetLength() == 1) return FileSystem::BadLocation;
    path = path.GetPrefix(slash == 0 ? 1 : slash);
    return NoError;
}

GSErrCode Location::GetLastLocalName(Name* name) const {
    const UIndex slash = path.FindLast(u'/');
    const GS::UniString last = slash == MaxUIndex ? path : path.GetSubstring(slash + 1, MaxUSize);
    if (last.IsEmpty() || name == nullptr) return FileSystem::BadLocation;
    *name = last;
    return NoError;
}

GSErrCode Location::SetLastLocalName(const Name& name) {
    Location changed = *this;
    if (const GSErrCode error = changed.DeleteLastLocalName()) return error;
    if (const GSErrCode error = changed.AppendToLocal(name)) return error;
    *this = changed;
    return NoError;
}

GSErrCode Location::ToPath(GS::UniString* result) const {
    if (path.IsEmpty() || result == nullptr) return FileSystem::BadLocation;
    *result = path;
    return NoError;
}

GSErrCode Location::ToURLString(GS::UniString* result) const {
    if (path.IsEmpty() || result == nullptr) return FileSystem::BadLocation;
    std::string url(urlScheme);
    for (const char c : hostkit::ToUtf8(path)) {
        if (IsPlainInUrl(c)) {
            url += c;
        } else {
            constexpr auto digits = "0123456789ABCDEF";
            const auto byte = static_cast<unsigned char>(c);
            url += {'%', digits[byte >> 4], digits[byte & 15]};
        }
    }
    *result = GS::UniString(url.c_str());
    return NoError;
}

bool Location::IsLegalInNativeFileSystem() const {
    const std::string bytes = hostkit::ToUtf8(path);
    if (bytes.empty() || bytes[0] != '/' || bytes.size() >= PATH_MAX) return false;
    for (const auto& component : std::filesystem::path(bytes))
        if (component.native().size() > NAME_MAX) return false;
    return bytes.find('\0') == std::string::npos;
}

}  // namespace IO

namespace hostkit {

IO::Location LocationOfUrl(std::string_view url) {
    if (url.substr(0, IO::urlScheme.size()) != IO::urlScheme) return {};
    std::string path;
    for (std::size_t at = IO::urlScheme.size(); at < url.size(); ++at) {
        if (url[at] != '%') {
            path += url[at];
            continue;
        }
        unsigned byte = 0;
        const auto digits = url.substr(at + 1, 2);
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
        if (error != std::errc() || digits.size() != 2 || end != digits.data() + digits.size()) return {};
        path += static_cast<char>(byte);
        at += 2;
    }
    return ToLocation(path);
}

std::filesystem::path ToPath(const IO::Location& location) {
    return ToUtf8(location.ToDisplayText());
}

IO::Location ToLocation(const std::filesystem::path& path) {
    return IO::Location(ToUniString(path.generic_string()));
}

}  // namespace hostkit
