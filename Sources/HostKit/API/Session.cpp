#include "HostKit/API/Session.hpp"

#include <atomic>
#include <stdexcept>

namespace hostkit {

namespace {

// The way to the session: calls are counted in and out. A call counts itself before it looks for the
// session, and the end takes the session away before it looks at the count, so one of them sees the other.
// Never destroyed, because threads of the add-on may come by while the process leaves main.
struct Gate {
    std::atomic<Session*> session = nullptr;
    std::atomic<int> calls = 0;

    void Leave() {
        if (calls.fetch_sub(1) == 1) calls.notify_all();
    }
};

Gate& TheGate() {
    static auto& gate = *new Gate;
    return gate;
}

}  // namespace

Session::Session(Host& host, dg::Driver& driver, Resources resources)
    : host(host), driver(driver), resources(std::move(resources)) {
    Session* none = nullptr;
    if (!TheGate().session.compare_exchange_strong(none, this))
        throw std::logic_error("A host session is running already.");
}

Session::~Session() {
    Gate& gate = TheGate();
    gate.session = nullptr;
    for (int calls = gate.calls; calls != 0; calls = gate.calls)
        gate.calls.wait(calls);
    for (auto part = parts.rbegin(); part != parts.rend(); ++part) {
        if (const auto living = part->lock()) living->SessionEnds();
    }
}

Session* Session::Current() {
    return TheGate().session;
}

void Session::Add(const std::shared_ptr<SessionPart>& part) {
    std::erase_if(parts, [](const std::weak_ptr<SessionPart>& known) { return known.expired(); });
    parts.push_back(part);
}

SessionAccess::SessionAccess() {
    Gate& gate = TheGate();
    ++gate.calls;
    session = gate.session;
    if (session == nullptr) gate.Leave();
}

SessionAccess::~SessionAccess() {
    if (session != nullptr) TheGate().Leave();
}

}  // namespace hostkit
