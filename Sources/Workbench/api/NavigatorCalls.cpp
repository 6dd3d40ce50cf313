// The host's questions about its navigator.

#include <algorithm>

#include "HostKit/GSRoot/Text.hpp"
#include "Workbench/api/Application.hpp"
#include "Workbench/api/WorkbenchHost.hpp"
#include "Workbench/navigator/Publishing.hpp"

namespace workbench {

namespace {

using Kind = PublisherItem::Kind;

// As much of the name as the record takes, with a zero behind it.
template <std::size_t size>
void Put(const std::string& name, char (&record)[size]) {
    std::size_t length = std::min(name.size(), size - 1);
    while (length < name.size() && length > 0 && (name[length] & 0xC0) == 0x80)
        --length;  // no part of a character
    std::fill(std::copy_n(name.begin(), length, record), std::end(record), '\0');
}

void Put(const std::string& name, GS::uchar_t (&record)[API_UniLongNameLen]) {
    const std::u16string text = hostkit::Utf16(name);
    std::size_t length = std::min<std::size_t>(text.size(), API_UniLongNameLen - 1);
    if (length < text.size() && (text[length] & 0xFC00) == 0xDC00) --length;
    std::fill(std::copy_n(text.begin(), length, record), std::end(record), u'\0');
}

API_NavigatorItemTypeID TypeOf(Kind kind) {
    switch (kind) {
        case Kind::folder:
            return API_FolderNavItem;
        case Kind::floorPlan:
            return API_StoryNavItem;
        case Kind::view3D:
            return API_PerspectiveNavItem;
        case Kind::model:
            break;
    }
    return API_ProjectNavItem;
}

API_NavigatorItem RecordOf(const PublisherItem& item) {
    API_NavigatorItem record = {};
    Put(item.name, record.uName);
    Put(item.name, record.uAutoTextedName);
    record.guid = item.guid;
    record.mapId = API_PublisherSets;
    record.itemType = TypeOf(item.kind);
    record.floorNum = static_cast<short>(item.storey.value_or(0));
    record.customName = true;
    return record;
}

}  // namespace

GSErrCode WorkbenchHost::PublisherSetCount(Int32& count) {
    count = static_cast<Int32>(Settled().Publisher().All().size());
    return NoError;
}

GSErrCode WorkbenchHost::PublisherSet(Int32 index, API_NavigatorSet& record) {
    const auto& sets = Settled().Publisher().All();
    if (index < 0 || static_cast<std::size_t>(index) >= sets.size()) return APIERR_BADINDEX;
    const workbench::PublisherSet& set = sets[static_cast<std::size_t>(index)];
    Put(set.name, record.name);
    record.guid = set.guid;
    record.rootGuid = set.rootGuid;
    return NoError;
}

GSErrCode WorkbenchHost::PublisherItems(const API_Guid& parent, GS::Array<API_NavigatorItem>& items) {
    const std::vector<PublisherItem>* children = Settled().Publisher().ChildrenOf(parent);
    if (children == nullptr) return APIERR_BADID;
    for (const PublisherItem& child : *children)
        items.Push(RecordOf(child));
    return NoError;
}

GSErrCode WorkbenchHost::Publish(const API_PublishPars& pars, const GS::Array<API_Guid>* items) {
    const PublisherSets& publisher = Settled().Publisher();
    const workbench::PublisherSet* set = publisher.FindSet(pars.guid);
    if (set == nullptr) return APIERR_BADID;
    std::vector<const PublisherItem*> chosen;
    if (items == nullptr) {
        for (const PublisherItem& item : set->items)
            chosen.push_back(&item);
    } else {
        for (const API_Guid& guid : *items) {
            chosen.push_back(publisher.FindItem(*set, guid));
            if (chosen.back() == nullptr) return APIERR_BADID;
        }
    }
    const PublishResult result = workbench::Publish(application, chosen, hostkit::ToPath(*pars.path));
    if (result.stopped) return APIERR_CANCEL;
    return result.failures.empty() ? NoError : static_cast<GSErrCode>(APIERR_GENERAL);
}

}  // namespace workbench
