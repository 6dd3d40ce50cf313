#pragma once

#include <functional>

namespace workbench {

/// Told the finished fraction (0 to 1) every few megabytes; answers false to stop the work.
/// An empty function means: nobody watches.
using Progress = std::function<bool(double)>;

}  // namespace workbench
