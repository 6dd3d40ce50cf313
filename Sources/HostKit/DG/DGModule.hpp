#pragma once

// The whole dialog library.

#include "DGAlert.hpp"
#include "DGBrowser.hpp"
#include "DGBrowserJSHandler.hpp"
#include "DGPalette.hpp"
#include "DGPanel.hpp"
