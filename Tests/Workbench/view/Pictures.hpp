#pragma once

#include <QImage>
#include <cstddef>
#include <cstdlib>

namespace workbench {

// Of pixels; those that differ by no more than `tolerance` of 255 count as equal.
inline std::size_t Differences(const QImage& a, const QImage& b, int tolerance = 0) {
    std::size_t count = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            const bool same = std::abs(qRed(p) - qRed(q)) <= tolerance &&
                              std::abs(qGreen(p) - qGreen(q)) <= tolerance &&
                              std::abs(qBlue(p) - qBlue(q)) <= tolerance;
            count += same ? 0 : 1;
        }
    return count;
}

// 'r', 'g', 'b' or '-' for what has no colour.
inline char Hue(QRgb colour) {
    if (qRed(colour) > qGreen(colour) + 60 && qRed(colour) > qBlue(colour) + 60) return 'r';
    if (qGreen(colour) > qRed(colour) + 60 && qGreen(colour) > qBlue(colour) + 30) return 'g';
    if (qBlue(colour) > qRed(colour) + 60) return 'b';
    return '-';
}

}  // namespace workbench
