#pragma once

#include <vector>

#include "UniString.hpp"

namespace FTM {

enum class TypeID : UInt32 {};
inline constexpr TypeID UnknownType{0};

enum class GroupID : UInt32 {};
inline constexpr GroupID RootGroup{0};

// A kind of files, told by their extension (without the dot; its letters' case does not count).
class FileType {
  public:
    // The description may be null. The codes and the icon are of no meaning here.
    FileType(const char* description, const char* extension, GSType macCreator, GSType macType, Int32 icon);

    const GS::UniString& GetDescription() const { return description; }
    const GS::UniString& GetExtension() const { return extension; }

  private:
    GS::UniString description;
    GS::UniString extension;
};

// File types that the host knows as long as their manager lives. Main thread only.
class FileTypeManager {
  public:
    // The name tells managers apart.
    explicit FileTypeManager(const char* name);
    ~FileTypeManager();
    FileTypeManager(const FileTypeManager&) = delete;
    FileTypeManager& operator=(const FileTypeManager&) = delete;

    // There is one group only.
    TypeID AddType(const FileType& type, GroupID group = RootGroup);

    // A type of any manager with this extension, or UnknownType.
    static TypeID SearchForType(const FileType& type);

  private:
    std::vector<TypeID> types;
};

}  // namespace FTM

namespace hostkit {

// Null when no manager has it (any more).
const FTM::FileType* FindFileType(FTM::TypeID type);

}  // namespace hostkit
