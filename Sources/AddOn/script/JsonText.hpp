#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"
#include "UniString.hpp"

// JSON text by concatenation. Nothing is escaped, on purpose: values may be JSON already, and the page
// receives texts unchanged. What must be escaped goes through the host's JSON writer instead.

/// left + text + right
GS::UniString WrapString(const GS::UniString& text, const GS::UniString& left, const GS::UniString& right);

/// The member "name":"value", or with `raw` "name":value.
GS::UniString GetJSONElementString(const GS::UniString& name, const GS::UniString& value, bool raw);

/// The items in order with the separator between neighbours; empty items count.
GS::UniString JoinStrings(const GS::Array<GS::UniString>& items, const GS::UniString& separator);

/// The shortest decimal number that reads back as the same double.
GS::UniString GetUniStringFromDouble(double number);

/// {"x":X,"y":Y,"z":Z}
GS::UniString GetUniStringFromVector(const API_Coord3D& vector);
