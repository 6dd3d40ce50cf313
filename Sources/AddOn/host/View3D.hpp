#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"

#include <optional>

// The host's 3D window. No value: the host did not answer.

std::optional<API_3DProjectionInfo> GetProjection();
GSErrCode ChangeProjection(const API_3DProjectionInfo& projection);

/// Only switches between perspective and axonometry; each keeps its own settings.
GSErrCode SwitchProjection(bool perspective);

std::optional<API_3DWindowInfo> Get3DWindow();
GSErrCode Change3DWindow(const API_3DWindowInfo& window);

/// From the model's coordinates to those of the survey point.
std::optional<API_Tranmat> GetSurveyTransformation();

GSErrCode ShowAllIn3D();
GSErrCode ShowSelectionIn3D();
GSErrCode ZoomToFit();
GSErrCode ZoomTo(const GS::Array<API_Guid>& elements);

std::optional<API_WindowTypeID> GetCurrentWindowType();
GSErrCode OpenWindow(API_WindowTypeID type);

/// The host's 3D cutting planes. Owns the handle that comes with them.
class CuttingPlanes {
  public:
    CuttingPlanes() = default;
    ~CuttingPlanes();
    CuttingPlanes(const CuttingPlanes&) = delete;
    CuttingPlanes& operator=(const CuttingPlanes&) = delete;

    /// Asks the host, once; returns its error.
    GSErrCode Load();

    bool AreOn() const { return info.isCutPlanes; }
    void Switch(bool on) { info.isCutPlanes = on; }

    short GetCount() const;
    API_3DCutShapeType& operator[](short index) { return (*info.shapes)[index]; }

    /// Replaces the shapes by so many zeroed ones; MEMFULL, and none, when there is no memory for them.
    GSErrCode Allocate(short count);

    /// Makes the host's planes these; returns its error.
    GSErrCode Apply();

  private:
    void ReleaseShapes();

    API_3DCutPlanesInfo info = {};
};
