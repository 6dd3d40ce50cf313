#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"
#include "UniString.hpp"
#include "Value.hpp"

// The project's publisher sets as the page's tree shows them; the host is asked anew each time.

/// JSON of an array of the sets: "title", "guid", "rootGuid" and "index"; empty when the host leaves any of
/// them unanswered.
GS::UniString GetPublishSetHeaders();

/// JSON of the array of items below one: "title", "key" (its GUID), and either "children" or "isLeaf". The
/// request is an object with the string "rootGuid". Empty when there are none; throws "Bad cast." for a
/// request that is no object, or a member that is no string.
GS::UniString GetPublishSetItems(const GS::UniString& json);

/// The items below this one, with all that is below them; null when there are none or the host does not
/// answer.
JSON::ArrayValueRef MakeJSItems(const API_Guid& guid);
