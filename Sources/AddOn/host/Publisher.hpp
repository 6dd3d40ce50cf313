#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"
#include "Location.hpp"

#include <optional>

// The project's publisher sets. No value: the host did not answer.

std::optional<Int32> CountPublisherSets();

/// Sets count from 0.
std::optional<API_NavigatorSet> GetPublisherSet(Int32 index);

/// Direct children of a set's root or of a folder, in display order; an item that has none has no children.
std::optional<GS::Array<API_NavigatorItem>> ListPublisherItems(const API_Guid& parent);

/// Writes the files of one item of the set into the folder; returns the host's error.
GSErrCode PublishToFolder(const API_Guid& set, const API_Guid& item, const IO::Location& folder);
