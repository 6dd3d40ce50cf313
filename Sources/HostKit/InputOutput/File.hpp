#pragma once

#include "Folder.hpp"

namespace IO {

class File {
  public:
    enum OnNotFound { Ignore, Fail, Create };
    enum OpenMode { ReadMode = 1, WriteMode = 2, ReadWriteMode = 3, WriteEmptyMode = 4 };
    enum AccessDeniedTreatment {
        AccessDeniedIsAllowed,
        AccessDeniedIsError,
        AccessDeniedIsErrorInPrivateLocations
    };

    // Create makes an empty file at once, Fail sets the status of a missing one to TargetNotFound.
    explicit File(const Location& location, OnNotFound onNotFound = Ignore);
    File(const Folder& folder, const Name& name, OnNotFound onNotFound = Ignore);
    virtual ~File();
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    GSErrCode GetStatus() const { return status; }

    // Opens an existing regular file. WriteMode and WriteEmptyMode drop its content, ReadWriteMode keeps it.
    virtual GSErrCode Open(OpenMode mode,
                           AccessDeniedTreatment treatment = AccessDeniedIsErrorInPrivateLocations);
    GSErrCode Close();
    bool IsOpen() const { return descriptor >= 0; }

    // Bytes; of an open file only.
    GSErrCode GetDataLength(UInt64* length) const;
    GSErrCode SetDataLength(UInt64 length);

    // Move bytes at the file's position. "done" receives the count; a shorter one than asked for is an error
    // (EndOfFile when reading) only where "done" is null.
    GSErrCode ReadBin(char* bytes, USize count, USize* done = nullptr);
    GSErrCode WriteBin(const char* bytes, USize count, USize* done = nullptr);

  private:
    Location location;
    GSErrCode status = NoError;
    int descriptor = -1;
};

}  // namespace IO
