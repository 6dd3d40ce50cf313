#include "Service/store/Accounts.hpp"

#include "Service/store/Secrets.hpp"

namespace service {

namespace {

int64_t Seconds(Time time) {
    return time.time_since_epoch().count();
}

}  // namespace

bool Accounts::Empty() {
    Transaction transaction(database);
    return !Statement(transaction, "SELECT 1 FROM account").Step();
}

void Accounts::SetPassword(const std::string& account, const std::string& password) {
    const std::string hash = HashPassword(password);
    Transaction transaction(database);
    Statement(
        transaction,
        "INSERT INTO account VALUES (?, ?) ON CONFLICT (name) DO UPDATE SET password = excluded.password",
        account, hash)
        .Step();
    Statement(transaction, "DELETE FROM session WHERE account = ?", account).Step();
    transaction.Commit();
}

std::optional<std::string> Accounts::SignIn(const std::string& account, const std::string& password, Time now,
                                            Time expires) {
    std::string hash;
    {
        Transaction transaction(database);
        Statement found(transaction, "SELECT password FROM account WHERE name = ?", account);
        if (found.Step()) hash = found.Text(0);
    }
    // Outside of the transaction: it takes long on purpose.
    if (!MatchesPassword(password, hash)) return std::nullopt;
    std::string token = NewToken();
    Transaction transaction(database);
    Statement(transaction, "DELETE FROM session WHERE expires <= ?", Seconds(now)).Step();
    Statement(transaction, "INSERT INTO session VALUES (?, ?, ?)", TokenDigest(token), account,
              Seconds(expires))
        .Step();
    transaction.Commit();
    return token;
}

std::optional<Session> Accounts::Find(const std::string& token, Time now) {
    Transaction transaction(database);
    Statement found(transaction, "SELECT account, expires FROM session WHERE token = ? AND expires > ?",
                    TokenDigest(token), Seconds(now));
    if (!found.Step()) return std::nullopt;
    return Session{found.Text(0), Time(std::chrono::seconds(found.Integer(1)))};
}

void Accounts::SignOut(const std::string& token) {
    Transaction transaction(database);
    Statement(transaction, "DELETE FROM session WHERE token = ?", TokenDigest(token)).Step();
    transaction.Commit();
}

}  // namespace service
