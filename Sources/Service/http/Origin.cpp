#include "Service/http/Origin.hpp"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <string>

namespace service {

bool IsLoopbackHost(std::string_view host) {
    const size_t colon = host.rfind(':');
    const size_t bracket = host.rfind(']');
    const bool hasPort =
        colon != std::string_view::npos && (bracket == std::string_view::npos || bracket < colon);
    const std::string name(hasPort ? host.substr(0, colon) : host);
    if (name == "localhost" || name == "[::1]") return true;
    in_addr address{};
    return inet_pton(AF_INET, name.c_str(), &address) == 1 && (ntohl(address.s_addr) >> 24) == 127;
}

bool IsOwnOrigin(std::string_view origin, std::string_view host) {
    constexpr std::string_view scheme = "http://";
    return origin.starts_with(scheme) && origin.substr(scheme.size()) == host;
}

}  // namespace service
