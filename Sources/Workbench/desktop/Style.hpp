#pragma once

class QApplication;

namespace workbench {

/// The Workbench's own look: light and quiet, the same on every desktop.
void ApplyStyle(QApplication& application);

}  // namespace workbench
