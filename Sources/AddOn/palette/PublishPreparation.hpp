#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"
#include "UniString.hpp"

/// Temporary folder of the prepared files, each named by its item's key. It is never emptied: what was
/// published once is not published again.
inline constexpr const char* preparedFolderName = "PreparePublish";

/// Has each picked item published that has no prepared file yet. The request is an object with the string
/// "guid" of the set and the array "publishItems"; the result is JSON of the array of the items that have a
/// file, with "filePath" and "ext", and the titles of the others go to `failedTitles`. Empty for a text that
/// does not parse, a missing member, or folders that cannot be made; throws for an item without all its
/// members.
GS::UniString PreparePublishDocs(const GS::UniString& json, GS::Array<GS::UniString>* failedTitles);

/// Has the host publish one item of the set into the named folder below the base folder. Returns the file's
/// path; empty when the host does not publish it or writes no file.
GS::UniString PublishItem(const API_Guid& set, const API_Guid& item, const GS::UniString& folderName,
                          const GS::UniString& baseFolder);

/// Path of the prepared file whose name contains the key; empty when none of the names does.
GS::UniString GetFilePathInPreparedFolder(const GS::UniString& key, const GS::Array<GS::UniString>& fileNames,
                                          const GS::UniString& preparedFolder);

/// Moves the file among the prepared ones, as "<key>.<its own extension>", and returns its new path. Empty,
/// and nothing moved, when there is one already.
GS::UniString MovedAsGuidFile(const GS::UniString& key, const GS::UniString& filePath,
                              const GS::UniString& preparedFolder);
