#include "palette/PickedItem.hpp"

PickedItem ReadPickedItem(const JsonObject& object) {
    return {object.GetText("key"),        object.GetText("title"),    object.GetFlag("isLeaf"),
            object.GetText("folder"),     object.GetFlag("isImport"), object.GetText("docName"),
            object.GetText("discipline"), object.GetText("building"), object.GetText("floor")};
}

API_Guid ToGuid(const GS::UniString& key) {
    return GSGuid2APIGuid(GS::Guid(key.ToCStr().Get()));
}

void AddText(JSON::ObjectValue& object, const char* name, const GS::UniString& text) {
    object.AddValue(name, new JSON::StringValue(text));
}

void AddCarriedMembers(JSON::ObjectValue& object, const PickedItem& item) {
    object.AddValue("isLeaf", new JSON::BoolValue(item.isLeaf));
    AddText(object, "folder", item.folder);
    object.AddValue("isImport", new JSON::BoolValue(item.isImport));
    AddText(object, "docName", item.docName);
    AddText(object, "discipline", item.discipline);
    AddText(object, "building", item.building);
    AddText(object, "floor", item.floor);
}

GS::UniString FindNameWithKey(const GS::UniString& key, const GS::Array<GS::UniString>& fileNames) {
    for (const GS::UniString& name : fileNames) {
        if (name.Contains(key)) return name;
    }
    return GS::UniString();
}
