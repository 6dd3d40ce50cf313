#include "palette/PublisherSets.hpp"

#include "host/Publisher.hpp"
#include "palette/KestranePalette.hpp"
#include "palette/PickedItem.hpp"
#include "script/Json.hpp"

#include <set>

namespace {

/// Builds a tree of items. It ends whatever the host answers: an item's children are listed once, and levels
/// beyond those of any real tree are left out.
class TreeBuilder {
  public:
    JSON::ArrayValueRef Below(const API_Guid& guid, int level = 1) {
        if (level > deepestLevel) return nullptr;
        // The records themselves stay on the heap: they are large, and each level holds some.
        const std::optional<GS::Array<API_NavigatorItem>> children = ListPublisherItems(guid);
        if (!children || children->IsEmpty() || !listed.insert(guid).second) return nullptr;

        JSON::ArrayValueRef nodes = new JSON::ArrayValue();
        for (const API_NavigatorItem& child : *children)
            nodes->AddValue(MakeNode(child, level));
        return nodes;
    }

  private:
    static constexpr int deepestLevel = 100;

    JSON::ValueRef MakeNode(const API_NavigatorItem& item, int level) {
        const JSON::ObjectValueRef node = new JSON::ObjectValue();
        node->AddValue(titleName, new JSON::StringValue(GS::UniString(item.uName)));
        node->AddValue(keyName, new JSON::StringValue(APIGuid2GSGuid(item.guid).ToUniString()));
        const JSON::ArrayValueRef children = Below(item.guid, level + 1);
        if (children == nullptr) {
            node->AddValue(isLeafName, new JSON::BoolValue(true));
        } else {
            node->AddValue(childrenName, children);
        }
        return node;
    }

    // Made once: a tree may have a hundred thousand nodes.
    const GS::UniString titleName = "title";
    const GS::UniString keyName = "key";
    const GS::UniString childrenName = "children";
    const GS::UniString isLeafName = "isLeaf";
    std::set<API_Guid> listed;
};

JSON::ValueRef MakeHeader(const API_NavigatorSet& set, Int32 index) {
    const JSON::ObjectValueRef header = new JSON::ObjectValue();
    AddText(*header, "title", GS::UniString(set.name));
    AddText(*header, "guid", APIGuid2GSGuid(set.guid).ToUniString());
    AddText(*header, "rootGuid", APIGuid2GSGuid(set.rootGuid).ToUniString());
    header->AddValue("index", new JSON::NumberValue(index));
    return header;
}

}  // namespace

GS::UniString GetPublishSetHeaders() {
    const std::optional<Int32> count = CountPublisherSets();
    if (!count) return GS::UniString();

    JSON::ArrayValue headers;
    for (Int32 index = 0; index < *count; ++index) {
        const std::optional<API_NavigatorSet> set = GetPublisherSet(index);
        if (!set) return GS::UniString();
        headers.AddValue(MakeHeader(*set, index));
    }
    return WriteJson(headers);
}

GS::UniString GetPublishSetItems(const GS::UniString& json) {
    const JSON::ValueRef root = ParseJson(json);
    if (root == nullptr) return GS::UniString();
    const JsonObject request(root);
    if (!request.Has("rootGuid")) return GS::UniString();

    const JSON::ArrayValueRef items = MakeJSItems(ToGuid(request.GetText("rootGuid")));
    return items == nullptr ? GS::UniString() : WriteJson(*items);
}

JSON::ArrayValueRef MakeJSItems(const API_Guid& guid) {
    return TreeBuilder().Below(guid);
}

GS::UniString KestranePalette::GetPublishItems(const GS::UniString& projectId) {
    if (!HasInstance()) return "[]";
    const PublishHistory history = GetInstance().publishHistory;
    if (history.projectId != projectId) return "[]";

    JSON::ObjectValue remembered;
    AddText(remembered, "publishSet", history.publishSet);
    AddText(remembered, "publishItems", history.publishItems);
    return WriteJson(remembered);
}
