#include "HostKit/API/Session.hpp"

#include <condition_variable>
#include <mutex>
#include <stdexcept>

namespace hostkit {

namespace {

// The way to the session: calls are counted in and out. Never destroyed, because threads of the add-on may
// come by while the process leaves main.
struct Gate {
    std::mutex mutex;
    std::condition_variable callEnded;
    Session* session = nullptr;
    int calls = 0;
};

Gate& TheGate() {
    static auto& gate = *new Gate;
    return gate;
}

}  // namespace

Session::Session(Host& host, dg::Driver& driver, Resources resources)
    : host(host), driver(driver), resources(std::move(resources)) {
    Gate& gate = TheGate();
    const std::lock_guard lock(gate.mutex);
    if (gate.session != nullptr) throw std::logic_error("A host session is running already.");
    gate.session = this;
}

Session::~Session() {
    Gate& gate = TheGate();
    {
        std::unique_lock lock(gate.mutex);
        gate.session = nullptr;
        gate.callEnded.wait(lock, [&] { return gate.calls == 0; });
    }
    for (auto part = parts.rbegin(); part != parts.rend(); ++part) {
        if (const auto living = part->lock()) living->SessionEnds();
    }
}

Session* Session::Current() {
    Gate& gate = TheGate();
    const std::lock_guard lock(gate.mutex);
    return gate.session;
}

void Session::Add(const std::shared_ptr<SessionPart>& part) {
    std::erase_if(parts, [](const std::weak_ptr<SessionPart>& known) { return known.expired(); });
    parts.push_back(part);
}

SessionAccess::SessionAccess() {
    Gate& gate = TheGate();
    const std::lock_guard lock(gate.mutex);
    session = gate.session;
    if (session != nullptr) ++gate.calls;
}

SessionAccess::~SessionAccess() {
    if (session == nullptr) return;
    Gate& gate = TheGate();
    const std::lock_guard lock(gate.mutex);
    --gate.calls;
    gate.callEnded.notify_all();
}

}  // namespace hostkit
