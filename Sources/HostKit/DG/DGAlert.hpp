#pragma once

#include "UniString.hpp"

namespace DG {

// Shows a message and waits for a button: its number from 1, or 0 when nothing can be shown. Empty button
// texts are left out. Main thread only.
short InformationAlert(const GS::UniString& largeText, const GS::UniString& smallText,
                       const GS::UniString& button1, const GS::UniString& button2 = GS::EmptyUniString,
                       const GS::UniString& button3 = GS::EmptyUniString);

}  // namespace DG
