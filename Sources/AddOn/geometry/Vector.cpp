#include "geometry/Vector.hpp"

#include <cmath>

API_Coord3D CrossProduct(const API_Coord3D& a, const API_Coord3D& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double DotProduct(const API_Coord3D& a, const API_Coord3D& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

double GetNorm(const API_Coord3D& a) {
    return std::sqrt(DotProduct(a, a));
}

double GetDistanceBetweenTwoPoints(const API_Coord3D& a, const API_Coord3D& b) {
    return GetNorm(SubtractVector(a, b));
}

API_Coord3D ScaleVector(const API_Coord3D& a, double s) {
    return {a.x * s, a.y * s, a.z * s};
}

API_Coord3D SubtractVector(const API_Coord3D& a, const API_Coord3D& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

API_Coord3D NormalizeVector(const API_Coord3D& a) {
    const double length = GetNorm(a);
    if (length == 0.0) return a;
    return ScaleVector(a, 1.0 / length);
}

API_Coord3D MultiplyMatrix(const API_Tranmat& m, const API_Coord3D& p) {
    const double* t = m.tmx;
    return {t[0] * p.x + t[1] * p.y + t[2] * p.z + t[3], t[4] * p.x + t[5] * p.y + t[6] * p.z + t[7],
            t[8] * p.x + t[9] * p.y + t[10] * p.z + t[11]};
}

API_Tranmat InverseTranMat(const API_Tranmat& m) {
    const double* t = m.tmx;
    // The rotation transposed, and the translation turned by it.
    return {{t[0], t[4], t[8], -(t[0] * t[3] + t[4] * t[7] + t[8] * t[11]),  //
             t[1], t[5], t[9], -(t[1] * t[3] + t[5] * t[7] + t[9] * t[11]),  //
             t[2], t[6], t[10], -(t[2] * t[3] + t[6] * t[7] + t[10] * t[11])}};
}
