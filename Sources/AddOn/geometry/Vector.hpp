#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"

// Vectors and rigid motions in metres. Nothing is rounded: only a length of exactly 0 is treated apart.

API_Coord3D CrossProduct(const API_Coord3D& a, const API_Coord3D& b);
double DotProduct(const API_Coord3D& a, const API_Coord3D& b);
double GetNorm(const API_Coord3D& a);
double GetDistanceBetweenTwoPoints(const API_Coord3D& a, const API_Coord3D& b);
API_Coord3D ScaleVector(const API_Coord3D& a, double s);
API_Coord3D SubtractVector(const API_Coord3D& a, const API_Coord3D& b);

/// The direction with length 1; a zero vector as it is.
API_Coord3D NormalizeVector(const API_Coord3D& a);

/// The point moved by the matrix: rotation and translation.
API_Coord3D MultiplyMatrix(const API_Tranmat& m, const API_Coord3D& p);

/// The inverse of a rigid motion. That the rotation part is orthonormal is taken for granted.
API_Tranmat InverseTranMat(const API_Tranmat& m);
