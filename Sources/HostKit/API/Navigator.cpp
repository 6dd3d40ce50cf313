#include "HostKit/API/HostCall.hpp"

using hostkit::HostCall;
using hostkit::Session;

GSErrCode ACAPI_Navigator(API_NavigatorID code, void* par1, void* par2, void* par3, void*) {
    constexpr auto function = "ACAPI_Navigator";
    switch (code) {
        case APINavigator_GetNavigatorSetNumID:
            return HostCall(function, "APINavigator_GetNavigatorSetNumID",
                            [&](Session& session) -> GSErrCode {
                                auto* count = static_cast<Int32*>(par1);
                                if (count == nullptr) return APIERR_BADPARS;
                                return session.GetHost().PublisherSetCount(*count);
                            });
        case APINavigator_GetNavigatorSetID:
            return HostCall(function, "APINavigator_GetNavigatorSetID", [&](Session& session) -> GSErrCode {
                auto* set = static_cast<API_NavigatorSet*>(par1);
                const auto* index = static_cast<const Int32*>(par2);
                if (set == nullptr || index == nullptr || set->mapId != API_PublisherSets)
                    return APIERR_BADPARS;
                return session.GetHost().PublisherSet(*index, *set);
            });
        case APINavigator_GetNavigatorChildrenItemsID:
            return HostCall(function, "APINavigator_GetNavigatorChildrenItemsID",
                            [&](Session& session) -> GSErrCode {
                                const auto* parent = static_cast<const API_NavigatorItem*>(par1);
                                auto* children = static_cast<GS::Array<API_NavigatorItem>*>(par3);
                                if (parent == nullptr || par2 != nullptr || children == nullptr ||
                                    parent->mapId != API_PublisherSets)
                                    return APIERR_BADPARS;
                                children->Clear();
                                return session.GetHost().PublisherItems(parent->guid, *children);
                            });
    }
    return hostkit::UnknownCode(function);
}
