#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"

/// Sets or removes a menu item's check mark and leaves its other flags.
void SetMenuItemChecked(short menuId, Int32 itemIndex, bool checked);
