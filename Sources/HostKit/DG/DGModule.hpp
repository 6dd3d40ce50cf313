#pragma once

// The whole dialog library.

#include "DGAlert.hpp"
#include "DGBrowser.hpp"
#include "DGBrowserJSHandler.hpp"
#include "DGFileDialog.hpp"
#include "DGItem.hpp"
#include "DGListBox.hpp"
#include "DGModalDialog.hpp"
#include "DGPalette.hpp"
#include "DGPanel.hpp"
