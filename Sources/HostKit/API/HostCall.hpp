#pragma once

#include <string_view>

#include "HostKit/API/Session.hpp"

namespace hostkit {

// One call of the programming interface: "work" is given the session, unless there is none or a fault was
// planned for the function or for the constant that it dispatches by.
template <class Work>
GSErrCode HostCall(std::string_view function, std::string_view constant, Work work) {
    const SessionAccess session;
    if (!session) return APIERR_GENERAL;
    if (const GSErrCode fault = session->GetFaults().Ask(function, constant)) return fault;
    return work(*session.operator->());
}

template <class Work>
GSErrCode HostCall(std::string_view function, Work work) {
    return HostCall(function, {}, work);
}

// For a code that the function does not know.
inline GSErrCode UnknownCode(std::string_view function) {
    return HostCall(function, [](Session&) { return APIERR_BADID; });
}

}  // namespace hostkit
