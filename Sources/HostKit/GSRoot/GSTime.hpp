#pragma once

#include "UniString.hpp"

// Seconds since 1970 began.
using GSTime = Int64;

GSTime TIGetTime();

// Date and time with the offset from UTC, as "2026-11-21T09:30:00+01:00"; in UTC with "Z" instead.
GS::UniString TIGetISO8601TimeString(GSTime time, bool utcTime = false);
