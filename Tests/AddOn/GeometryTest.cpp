#include <gtest/gtest.h>

#include <cmath>

#include "AddOn/PlayedHost.hpp"
#include "geometry/SurveyPoint.hpp"
#include "geometry/Vector.hpp"

namespace tests {
namespace {

void ExpectPoint(const API_Coord3D& point, double x, double y, double z, double tolerance = 1e-12) {
    EXPECT_NEAR(point.x, x, tolerance);
    EXPECT_NEAR(point.y, y, tolerance);
    EXPECT_NEAR(point.z, z, tolerance);
}

// A third of a turn about (1, 1, 1), which takes x to y to z, and then a shift.
constexpr API_Tranmat motion = {{0, 0, 1, 10, 1, 0, 0, 20, 0, 1, 0, 30}};

TEST(VectorTest, Arithmetic) {
    ExpectPoint(CrossProduct({0, 0, 1}, {1, 0, 0}), 0, 1, 0);
    ExpectPoint(CrossProduct({1, 2, 3}, {4, 5, 6}), -3, 6, -3);
    EXPECT_EQ(DotProduct({1, 2, 3}, {4, 5, 6}), 32);
    EXPECT_EQ(GetNorm({2, 3, 6}), 7);
    EXPECT_EQ(GetDistanceBetweenTwoPoints({1, 2, 3}, {3, 5, 9}), 7);
    ExpectPoint(NormalizeVector({3, 0, 4}), 0.6, 0, 0.8);
    ExpectPoint(NormalizeVector({0, 0, 0}), 0, 0, 0, 0);
    EXPECT_NEAR(GetNorm(NormalizeVector({1e-150, 1e-150, 0})), 1, 1e-12);
}

TEST(VectorTest, RigidMotionsAndTheirInverse) {
    ExpectPoint(MultiplyMatrix(motion, {1, 2, 3}), 13, 21, 32);
    ExpectPoint(MultiplyMatrix(InverseTranMat(motion), {13, 21, 32}), 1, 2, 3);
    const API_Tranmat shift = InverseTranMat({{1, 0, 0, 1, 0, 1, 0, 2, 0, 0, 1, 3}});
    ExpectPoint({shift.tmx[3], shift.tmx[7], shift.tmx[11]}, -1, -2, -3);
    EXPECT_EQ(shift.tmx[0], 1);

    const double c = std::cos(0.3);
    const double s = std::sin(0.3);
    const API_Tranmat far = {{c, -s, 0, 3.5e6, s, c, 0, 5.6e6, 0, 0, 1, 53.4}};
    ExpectPoint(MultiplyMatrix(InverseTranMat(far), MultiplyMatrix(far, {12.25, -3.5, 1.7})), 12.25, -3.5,
                1.7, 1e-8);
}

TEST_F(PlayedHostTest, SurveyPointIsAskedEachTimeAndMayBeMissing) {
    host.survey = motion;
    ExpectPoint(TransformVector(1, 2, 3), 13, 21, 32);
    ExpectPoint(TransformToModel({13, 21, 32}), 1, 2, 3);
    Faults().FailCall("APIEnv_GetSurveyPointTransformationID", 1, APIERR_GENERAL);
    ExpectPoint(TransformVector(1, 2, 3), 1, 2, 3, 0);
    Faults().FailCall("APIEnv_GetSurveyPointTransformationID", 1, APIERR_GENERAL);
    ExpectPoint(TransformToModel({1, 2, 3}), 1, 2, 3, 0);
    host.survey.tmx[3] = 11;
    ExpectPoint(TransformVector(1, 2, 3), 14, 21, 32);
}

}  // namespace
}  // namespace tests
