#pragma once

#include "Location.hpp"

namespace IO {

// Operations on whole files and folders. Nothing is ever overwritten.
class FileSystem {
  public:
    enum : GSErrCode {
        TargetExists = -2130444287,
        TargetNotFound,
        AccessDenied,
        BadLocation,  // the location is empty, or of another kind than the operation needs
        NotOpen,
        EndOfFile,
        Failed
    };

    GSErrCode Contains(const Location& location, bool* contains) const;

    // Makes every missing level. NoError when the folder is there already.
    GSErrCode CreateFolderTree(const Location& location) const;

    // Files, and folders with all they hold. TargetExists when "to" exists; a move onto itself does nothing.
    GSErrCode Copy(const Location& from, const Location& to) const;
    GSErrCode Move(const Location& from, const Location& to) const;

    // Keeps the folder. TargetExists when the folder holds that name already.
    GSErrCode Rename(const Location& location, const Name& newName) const;

    // Files, and folders with all they hold. TargetNotFound when there is none.
    GSErrCode Delete(const Location& location) const;
};

inline FileSystem fileSystem;

}  // namespace IO
