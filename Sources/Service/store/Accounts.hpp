#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "Service/store/Database.hpp"

namespace service {

using Time = std::chrono::sys_seconds;

struct Session {
    std::string user;
    Time expires;
};

// Who may use the service, and who is signed in.
class Accounts {
  public:
    explicit Accounts(Database& database) : database(database) {}

    bool Empty();

    // Adds the account or replaces its password and ends its sessions.
    void SetPassword(const std::string& account, const std::string& password);

    // The new session's token, or none when account and password do not belong together.
    std::optional<std::string> SignIn(const std::string& account, const std::string& password, Time now,
                                      Time expires);

    // The session of a token that has not expired.
    std::optional<Session> Find(const std::string& token, Time now);

    void SignOut(const std::string& token);

  private:
    Database& database;
};

}  // namespace service
