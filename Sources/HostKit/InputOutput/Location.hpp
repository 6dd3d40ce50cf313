#pragma once

#include <filesystem>
#include <string_view>

#include "Name.hpp"

namespace IO {

// Place of a file or folder, which need not exist. Errors are FileSystem::BadLocation.
class Location {
  public:
    Location() = default;
    explicit Location(const GS::UniString& path) { Set(path); }
    explicit Location(const char* path) : Location(GS::UniString(path)) {}

    // The name below the parent; empty when the name is no single path component.
    Location(const Location& parent, const Name& name);

    // Trailing separators are dropped.
    GSErrCode Set(const GS::UniString& path);

    // Refuses an empty name, "." and "..", and names with a separator or zero in them.
    GSErrCode AppendToLocal(const Name& name);
    GSErrCode DeleteLastLocalName();
    GSErrCode GetLastLocalName(Name* name) const;
    GSErrCode SetLastLocalName(const Name& name);

    // Fails for an empty location only.
    GSErrCode ToPath(GS::UniString* result) const;
    // The "file:" address, with percent signs for what may not stand in one.
    GSErrCode ToURLString(GS::UniString* result) const;
    // Whether a file of this name could be.
    bool IsLegalInNativeFileSystem() const;
    GS::UniString ToDisplayText() const { return path; }
    bool IsEmpty() const { return path.IsEmpty(); }

    friend bool operator==(const Location& a, const Location& b) { return a.path == b.path; }
    friend bool operator!=(const Location& a, const Location& b) { return a.path != b.path; }

  private:
    GS::UniString path;
};

}  // namespace IO

namespace hostkit {

// The host's locations from and to the standard library's paths.
std::filesystem::path ToPath(const IO::Location& location);
IO::Location ToLocation(const std::filesystem::path& path);

// The location of a "file:" address; empty for any other text.
IO::Location LocationOfUrl(std::string_view url);

}  // namespace hostkit
