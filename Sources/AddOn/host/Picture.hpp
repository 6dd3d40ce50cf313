#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"
#include "Location.hpp"

// Files of what the current window shows. All return the host's error.

/// The 3D window as a picture, with its selection highlighted.
GSErrCode SaveViewAsPng(const IO::Location& location);

enum class PictureFormat { png, jpeg };

/// The plan as a picture, without the selection's colours.
GSErrCode SavePlanAsPicture(const IO::Location& location, PictureFormat format);

/// The plan on one page that holds these metres of the model, at a scale of the host's choice.
GSErrCode SavePlanAsPdf(const IO::Location& location, double width, double height);
