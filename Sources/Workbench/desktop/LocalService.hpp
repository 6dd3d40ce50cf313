#pragma once

#include <QProcess>
#include <QUrl>
#include <filesystem>

namespace workbench {

/// The service on this machine, started when nothing listens at its address, ended with the Workbench.
class LocalService {
  public:
    enum class State { started, alreadyRunning, failed };

    ~LocalService();

    /// Starts `program` unless something listens at `api`, and waits until it does (a few seconds). Fails
    /// when a stranger does. Lets `page` call it when that is on the web; an empty URL: the service's own
    /// page only.
    State Ensure(const QUrl& api, const QString& program, const std::filesystem::path& dataFolder,
                 const QUrl& page);

    /// What the service said when it failed.
    QString Error() const { return error; }

  private:
    QProcess process;
    QString error;
};

}  // namespace workbench
