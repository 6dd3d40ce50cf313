#include "Workbench/desktop/LocalService.hpp"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QTcpSocket>

namespace workbench {

namespace {

bool Listens(const QUrl& api) {
    QTcpSocket socket;
    socket.connectToHost(api.host(), static_cast<quint16>(api.port(80)));
    return socket.waitForConnected(500);
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
    if (Listens(api)) return State::alreadyRunning;

    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QStringList arguments{"--port", QString::number(api.port(80)), "--data",
                          QString::fromStdString(dataFolder.string())};
    if (const QString origin = OriginOf(page); !origin.isEmpty()) arguments << "--allow-origin" << origin;
    process.start(program, arguments);
    QElapsedTimer waited;
    waited.start();
    while (waited.elapsed() < 10000) {
        if (Listens(api)) return State::started;
        if (process.waitForFinished(50)) break;
        if (process.state() == QProcess::NotRunning) break;
    }
    error = process.error() == QProcess::FailedToStart
                ? QString("%1: %2").arg(QFileInfo(program).fileName(), process.errorString())
                : QString("%1 did not start to listen").arg(QFileInfo(program).fileName());
    return State::failed;
}

}  // namespace workbench
