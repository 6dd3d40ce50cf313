#pragma once

#include "UniString.hpp"

/// Of prepared items (JSON, an array) those whose file is still among the prepared ones, with the file's bare
/// name for a path. Empty when the text does not parse or there is no folder of prepared files; throws for
/// items without all their members.
GS::UniString CheckPublishHistory(const GS::UniString& itemsText);
