#pragma once

#include "script/Json.hpp"

#include "APIEnvir.h"

#include "ACAPinc.h"

/// An item of a publisher set as the page picked it. Only key and title mean something to the add-on; the
/// page gets the rest back as it was.
struct PickedItem {
    GS::UniString key;  // the item's GUID
    GS::UniString title;
    bool isLeaf;
    GS::UniString folder;
    bool isImport;
    GS::UniString docName;
    GS::UniString discipline;
    GS::UniString building;
    GS::UniString floor;
};

/// Throws for a member that is missing or of another kind.
PickedItem ReadPickedItem(const JsonObject& object);

/// The GUID that a key is the text of; a text that is none names no item.
API_Guid ToGuid(const GS::UniString& key);

/// Adds a string member.
void AddText(JSON::ObjectValue& object, const char* name, const GS::UniString& text);

/// Adds what comes behind the title: "isLeaf" to "floor", in the order of the record.
void AddCarriedMembers(JSON::ObjectValue& object, const PickedItem& item);

/// The first of the names that contains the key; empty when there is none.
GS::UniString FindNameWithKey(const GS::UniString& key, const GS::Array<GS::UniString>& fileNames);
