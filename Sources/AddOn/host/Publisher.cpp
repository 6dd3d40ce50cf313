#include "host/Publisher.hpp"

std::optional<Int32> CountPublisherSets() {
    Int32 count = 0;
    if (ACAPI_Navigator(APINavigator_GetNavigatorSetNumID, &count) != NoError) return std::nullopt;
    return count;
}

std::optional<API_NavigatorSet> GetPublisherSet(Int32 index) {
    API_NavigatorSet set = {};
    set.mapId = API_PublisherSets;
    if (ACAPI_Navigator(APINavigator_GetNavigatorSetID, &set, &index) != NoError) return std::nullopt;
    return set;
}

std::optional<GS::Array<API_NavigatorItem>> ListPublisherItems(const API_Guid& parent) {
    API_NavigatorItem item = {};
    item.guid = parent;
    item.mapId = API_PublisherSets;
    GS::Array<API_NavigatorItem> children;
    if (ACAPI_Navigator(APINavigator_GetNavigatorChildrenItemsID, &item, nullptr, &children) != NoError) {
        return std::nullopt;
    }
    return children;
}

GSErrCode PublishToFolder(const API_Guid& set, const API_Guid& item, const IO::Location& folder) {
    IO::Location path = folder;
    API_PublishPars pars = {};
    pars.guid = set;
    pars.path = &path;
    GS::Array<API_Guid> items = {item};
    return ACAPI_Automate(APIDo_PublishID, &pars, &items);
}
