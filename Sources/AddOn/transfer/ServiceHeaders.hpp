#pragma once

#include "UniString.hpp"

// The header lines of every request to the service, as they are sent.

/// Names the sender.
GS::UniString MakeClientHeader();

/// Signs in with the bearer token, which is neither trimmed nor escaped.
GS::UniString MakeTokenHeader(const GS::UniString& token);
