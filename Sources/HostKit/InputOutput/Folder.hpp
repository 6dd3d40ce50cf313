#pragma once

#include <functional>

#include "Location.hpp"

namespace IO {

class Folder {
  public:
    enum OnNotFound { Ignore, Fail, Create };

    explicit Folder(const Location& location, OnNotFound onNotFound = Ignore);

    // What became of the construction: TargetNotFound after Fail, BadLocation when a file is in the place.
    GSErrCode GetStatus() const { return status; }
    GSErrCode GetLocation(Location* result) const;
    bool IsWriteable() const;

    // Files and folders directly inside, in the order of their names.
    GSErrCode Enumerate(const std::function<void(const Name& name, bool isFolder)>& visit) const;

  private:
    Location location;
    GSErrCode status;
};

}  // namespace IO
