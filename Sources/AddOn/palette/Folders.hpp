#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"
#include "Location.hpp"
#include "UniString.hpp"

// Paths are returned as text; an empty text always means that the folder could not be found or created.

/// Creates the folder with all folders above it; one that exists already is fine. Returns its path.
GS::UniString CreateFolders(const IO::Location& location);

/// The add-on's own folder among the person's application data, beside the host maker's (created).
GS::UniString GetKestraneDataFolder();

/// The named folder in the data folder (created).
GS::UniString GetFolderPath(const GS::UniString& name);

/// The named folder in the host's temporary folder (created); with `clear` whatever was in it is deleted
/// first.
GS::UniString CreateTemporaryFolder(const GS::UniString& name, bool clear);

/// The temporary folder of a publish run, always empty.
GS::UniString CreatePublishTemporaryFolder();

/// Names, not paths, of the files in the folder, with `recursive` also of those in the folders below; equal
/// names then appear as often as they exist. The order is the file system's.
GS::Array<GS::UniString> GetFileNamesInFolder(const IO::Location& folder, bool recursive);
