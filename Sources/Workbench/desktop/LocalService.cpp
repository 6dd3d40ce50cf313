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

}  // namespace

LocalService::~LocalService() {
    if (process.state() == QProcess::NotRunning) return;
    process.terminate();
    if (!process.waitForFinished(5000)) process.kill();
    process.waitForFinished(1000);
}

LocalService::State LocalService::Ensure(const QUrl& api, const QString& program,
                                         const std::filesystem::path& dataFolder) {
    if (Listens(api)) return State::alreadyRunning;

    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, {"--port", QString::number(api.port(80)), "--data",
                            QString::fromStdString(dataFolder.string())});
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
