#pragma once

#include <memory>
#include <vector>

#include "HostKit/API/CommandParameters.hpp"
#include "HostKit/API/Faults.hpp"
#include "HostKit/API/Host.hpp"
#include "HostKit/API/Registry.hpp"
#include "HostKit/DG/Driver.hpp"
#include "HostKit/Resources/Resources.hpp"

namespace hostkit {

// Something of the add-on's that may outlive the session it was made in.
class SessionPart {
  public:
    virtual ~SessionPart() = default;

    // Lets go of everything that belongs to the session. Main thread.
    virtual void SessionEnds() = 0;
};

// The running host as the add-on's process sees it: there is one at most, and all that is process-wide lives
// in it. Made and destroyed on the main thread. When it ends, calls that are under way are finished first;
// later ones, of threads that go on or of objects that outlive it, fail or do nothing. Another may follow.
class Session {
  public:
    // Host and driver must outlive the session. Throws std::logic_error while another one exists.
    Session(Host& host, dg::Driver& driver, Resources resources);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Null when no host is running. For the main thread; other threads use SessionAccess.
    static Session* Current();

    Host& GetHost() { return host; }
    dg::Driver& GetDriver() { return driver; }
    Faults& GetFaults() { return faults; }
    Registry& GetRegistry() { return registry; }
    CommandParameterLists& GetParameterLists() { return parameterLists; }
    const Resources& GetResources() const { return resources; }

    // Parts are told of the end, the newest first.
    void Add(const std::shared_ptr<SessionPart>& part);

  private:
    Host& host;
    dg::Driver& driver;
    Resources resources;
    Faults faults;
    Registry registry;
    CommandParameterLists parameterLists;
    std::vector<std::weak_ptr<SessionPart>> parts;
};

// Keeps the session from ending while a call of the add-on uses it. False when there is none (any more).
class SessionAccess {
  public:
    SessionAccess();
    ~SessionAccess();
    SessionAccess(const SessionAccess&) = delete;
    SessionAccess& operator=(const SessionAccess&) = delete;

    explicit operator bool() const { return session != nullptr; }
    Session* operator->() const { return session; }

  private:
    Session* session;
};

}  // namespace hostkit
