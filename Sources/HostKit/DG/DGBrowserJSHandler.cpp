#include "DGBrowserJSHandler.hpp"

#include "HostKit/API/Session.hpp"

namespace DG {

namespace {

struct PageCall {
    PageCall() = default;
    ~PageCall() {
        const hostkit::SessionAccess session;
        if (session) session->GetHost().PageCallEnded();
    }
    PageCall(const PageCall&) = delete;
    PageCall& operator=(const PageCall&) = delete;
};

}  // namespace

GS::Ref<JSBase> JSFunction::Call(const GS::Ref<JSBase>& argument) const {
    const PageCall call;
    return body(argument);
}

}  // namespace DG
