#include "Workbench/desktop/LocalService.hpp"

#include <sys/prctl.h>

#include <QElapsedTimer>
#include <QFileInfo>
#include <QTcpSocket>
#include <csignal>

namespace workbench {

namespace {

enum class Listener { none, service, stranger };

// Who is at the address: the service refuses whoever has not signed in.
Listener WhoListens(const QUrl& api) {
    QTcpSocket socket;
    socket.connectToHost(api.host(), static_cast<quint16>(api.port(80)));
    if (!socket.waitForConnected(500)) return Listener::none;
    const QString request = "GET %1/session HTTP/1.1\r\nHost: %2\r\nConnection: close\r\n\r\n";
    socket.write(request.arg(api.path(), api.authority()).toUtf8());
    const bool answered = socket.waitForReadyRead(3000);
    return answered && socket.readLine().startsWith("HTTP/1.1 401") ? Listener::service : Listener::stranger;
}

// As a browser names it: without the scheme's own port. Empty for pages that have none.
QString OriginOf(QUrl page) {
    const bool plain = page.scheme() == "http";
    if (!plain && page.scheme() != "https") return {};
    if (page.port() == (plain ? 80 : 443)) page.setPort(-1);
    return page.toString(QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment |
                         QUrl::FullyEncoded);
}

}  // namespace

LocalService::~LocalService() {
    if (process.state() == QProcess::NotRunning) return;
    process.terminate();
    if (!process.waitForFinished(5000)) process.kill();
    process.waitForFinished(1000);
}

LocalService::State LocalService::Ensure(const QUrl& api, const QString& program,
                                         const std::filesystem::path& dataFolder, const QUrl& page) {
    switch (WhoListens(api)) {
        case Listener::service:
            return State::alreadyRunning;
        case Listener::stranger:
            error = QString("another program listens at %1; end it, or start with --no-service")
                        .arg(api.authority());
            return State::failed;
        case Listener::none:
            break;
    }

    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QStringList arguments{"--port", QString::number(api.port(80)), "--data",
                          QString::fromStdString(dataFolder.string())};
    if (const QString origin = OriginOf(page); !origin.isEmpty()) arguments << "--allow-origin" << origin;
    // A Workbench that is killed takes its service along.
    process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    process.start(program, arguments);
    QElapsedTimer waited;
    waited.start();
    while (waited.elapsed() < 10000) {
        if (WhoListens(api) == Listener::service) return State::started;
        if (process.waitForFinished(50)) break;
        if (process.state() == QProcess::NotRunning) break;
    }
    error = process.error() == QProcess::FailedToStart
                ? QString("%1: %2").arg(QFileInfo(program).fileName(), process.errorString())
                : QString("%1 did not start to listen").arg(QFileInfo(program).fileName());
    return State::failed;
}

}  // namespace workbench
