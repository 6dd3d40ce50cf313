#pragma once

#include <gtest/gtest.h>

#include <QPolygonF>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <filesystem>

namespace workbench {

/// What another program prints, given a file as its last argument; a failure of the test when it fails.
inline QString OutputOf(const QString& program, QStringList arguments, const std::filesystem::path& file,
                        const QStringList& more = {}) {
    QProcess process;
    arguments << QString::fromStdString(file.string()) << more;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit &&
                process.exitCode() == 0)
        << program.toStdString() << ": " << process.errorString().toStdString()
        << process.readAllStandardError().toStdString();
    return QString::fromUtf8(process.readAllStandardOutput());
}

/// The points of a line as ogrinfo prints it: "LINESTRING Z (1 2.5 0,3 4 0)". Empty for other text.
inline QPolygonF PointsOf(const QString& line) {
    QPolygonF points;
    if (!line.contains("LINESTRING Z (")) return points;
    for (const QString& point : line.section('(', 1).chopped(1).split(','))
        points << QPointF(point.section(' ', 0, 0).toDouble(), point.section(' ', 1, 1).toDouble());
    return points;
}

}  // namespace workbench
