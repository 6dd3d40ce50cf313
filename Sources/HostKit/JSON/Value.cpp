#include "Value.hpp"

#include <algorithm>
#include <limits>

namespace JSON {

namespace {

template <class Items>
const auto& Checked(const Items& items, UIndex index) {
    if (index >= items.size()) throw GS::IllegalReferenceException();
    return items[index];
}

void CheckPresent(const ValueRef& value) {
    if (value == nullptr) throw GS::NullReferenceException();
}

template <class Integer>
bool Fits(double value) {
    return value >= std::numeric_limits<Integer>::min() && value <= std::numeric_limits<Integer>::max();
}

}  // namespace

const ObjectValue::Member* ObjectValue::Find(const GS::UniString& name) const {
    const auto found = std::find_if(members.begin(), members.end(),
                                    [&](const Member& member) { return member.first == name; });
    return found == members.end() ? nullptr : &*found;
}

ValueRef ObjectValue::Get(const GS::UniString& name) const {
    const Member* member = Find(name);
    return member == nullptr ? nullptr : member->second;
}

const GS::UniString& ObjectValue::GetName(UIndex index) const {
    return Checked(members, index).first;
}

ValueRef ObjectValue::Get(UIndex index) const {
    return Checked(members, index).second;
}

void ObjectValue::AddValue(const GS::UniString& name, const ValueRef& value) {
    CheckPresent(value);
    if (const Member* member = Find(name)) {
        members[static_cast<std::size_t>(member - members.data())].second = value;
    } else {
        if (members.empty()) members.reserve(4);
        members.emplace_back(name, value);
    }
}

void ObjectValue::Enumerate(
    const std::function<void(const GS::UniString& name, const ValueRef& value)>& visit) const {
    for (const Member& member : members)
        visit(member.first, member.second);
}

ValueRef ArrayValue::Get(UIndex index) const {
    return Checked(items, index);
}

void ArrayValue::AddValue(const ValueRef& value) {
    CheckPresent(value);
    items.push_back(value);
}

void ArrayValue::Enumerate(const std::function<void(const ValueRef& value)>& visit) const {
    for (const ValueRef& item : items)
        visit(item);
}

bool NumberValue::IsInt32() const {
    return whole && Fits<Int32>(value);
}

bool NumberValue::IsUInt32() const {
    return whole && Fits<UInt32>(value);
}

Int32 NumberValue::GetInt32() const {
    if (!IsInt32()) throw GS::ClassCastException();
    return static_cast<Int32>(value);
}

UInt32 NumberValue::GetUInt32() const {
    if (!IsUInt32()) throw GS::ClassCastException();
    return static_cast<UInt32>(value);
}

}  // namespace JSON
