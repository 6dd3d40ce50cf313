#include "Location.hpp"

#include "FileSystem.hpp"
#include "HostKit/GSRoot/Text.hpp"

namespace IO {

namespace {

bool IsComponent(const GS::UniString& name) {
    return !name.IsEmpty() && name != "." && name != ".." && !name.Contains("/") &&
           name.FindFirst(u'\0') == MaxUIndex;
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

}  // namespace IO

namespace hostkit {

std::filesystem::path ToPath(const IO::Location& location) {
    return ToUtf8(location.ToDisplayText());
}

IO::Location ToLocation(const std::filesystem::path& path) {
    return IO::Location(ToUniString(path.generic_string()));
}

}  // namespace hostkit
