#pragma once

#include "DGBrowser.hpp"

/// Registers "KESTAPI", whose functions the page calls, with the browser.
void RegisterAPIJavaScriptObject(DG::Browser& browser);
