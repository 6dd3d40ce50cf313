#pragma once

#include <stdexcept>
#include <string>

namespace service {

// A request that is refused: the HTTP status and the text that the client is told.
class HttpError : public std::runtime_error {
  public:
    HttpError(int status, const std::string& text) : std::runtime_error(text), status(status) {}

    const int status;
};

// The volume, a quota or a file size limit is used up.
class StorageFull : public std::runtime_error {
  public:
    StorageFull() : std::runtime_error("The service's disk is full. Free some space and upload again.") {}
};

}  // namespace service
