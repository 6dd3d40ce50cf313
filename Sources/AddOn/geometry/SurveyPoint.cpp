#include "geometry/SurveyPoint.hpp"

#include "geometry/Vector.hpp"
#include "host/View3D.hpp"

API_Coord3D TransformVector(double x, double y, double z) {
    const API_Coord3D point = {x, y, z};
    const std::optional<API_Tranmat> survey = GetSurveyTransformation();
    return survey ? MultiplyMatrix(*survey, point) : point;
}

API_Coord3D TransformToModel(const API_Coord3D& point) {
    const std::optional<API_Tranmat> survey = GetSurveyTransformation();
    return survey ? MultiplyMatrix(InverseTranMat(*survey), point) : point;
}
