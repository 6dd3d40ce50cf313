#pragma once

#include <string>
#include <string_view>

namespace service {

// A name that a client gave: shown back as sent, never used as a path. Throws HttpError 400 when it is
// empty or blank, not UTF-8, longer than 255 characters, or holds control characters.
void CheckName(std::string_view name);

// A Content-Disposition value (RFC 6266) that offers the file under this name.
std::string AttachmentHeader(std::string_view name);

}  // namespace service
