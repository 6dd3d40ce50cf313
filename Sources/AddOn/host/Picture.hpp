#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"
#include "Location.hpp"

/// Saves what the current window shows, with its selection highlighted; returns the host's error.
GSErrCode SaveViewAsPng(const IO::Location& location);
