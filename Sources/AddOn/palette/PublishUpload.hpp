#pragma once

#include "Array.hpp"
#include "UniString.hpp"

#include <atomic>
#include <memory>
#include <mutex>

/// A file to upload, and what became of it.
struct PublishSetItem {
    GS::UniString filePath;
    GS::UniString folderId;  // the service's folder for the document
    GS::UniString key;       // the item's GUID
    GS::UniString documentId;
    bool uploaded = false;
};

/// A run of uploads. The palette and the run's jobs share it, so it lives until the last of them has ended,
/// whatever the palette has begun since.
class PublishRun {
  public:
    /// Complete before the first job starts; from then on only StoreDocumentId changes it.
    GS::Array<PublishSetItem> items;

    /// Job thread: the item has become this document.
    void StoreDocumentId(UIndex item, const GS::UniString& documentId);

    /// Job thread: one more has ended; true for the last one.
    bool FinishItem() { return ++finished == items.GetSize(); }

    /// JSON of an object: the ids of the documents by the keys of the items that have one.
    GS::UniString GetDocumentIds() const;

  private:
    mutable std::mutex guard;
    std::atomic<USize> finished = 0;
};

/// Begins a run: empties the add-on's folder for uploads, makes an empty run the current one, and fills it
/// from the order. False when the folder cannot be made, and then the current run stays, or when the order
/// does not parse.
bool HandlePublishSets(const GS::UniString& json, GS::UniString* projectId, GS::UniString* token,
                       std::shared_ptr<PublishRun>* current);

/// The order is an object with the strings "projectId" and "token" and the array "publishItems" of objects
/// with the strings "key", "docName", "ext", "filePath" and "folder". Each file is copied into the folder
/// under its document's name; one that cannot be copied is left out. False when the order does not parse;
/// throws for a member that is missing or of another kind.
bool GetExportingItems(const GS::UniString& json, GS::UniString* projectId, GS::UniString* token,
                       const GS::UniString& publishFolder, GS::Array<PublishSetItem>* items);

/// Copies the file into the folder as "<docName>.<ext>" and returns the copy's path. Empty, and nothing
/// copied, when there is one already.
GS::UniString CopyGuidFile(const GS::UniString& sourcePath, const GS::UniString& docName,
                           const GS::UniString& ext, const GS::UniString& folder);
