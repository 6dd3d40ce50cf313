#pragma once

#include <string_view>

namespace service {

// Whether a Host header names this machine's loopback interface. A service that only listens there
// refuses other names: a foreign page may have pointed its own name here (DNS rebinding).
bool IsLoopbackHost(std::string_view host);

// Whether an Origin header is that of a page which this host served itself.
bool IsOwnOrigin(std::string_view origin, std::string_view host);

}  // namespace service
