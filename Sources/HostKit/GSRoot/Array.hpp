#pragma once

#include <algorithm>
#include <initializer_list>
#include <utility>
#include <vector>

#include "GSException.hpp"

namespace GS {

// Growing array. Indices beyond the end throw IllegalReferenceException.
template <class T>
class Array {
    static_assert(!std::is_same_v<T, bool>, "elements must be addressable");

  public:
    Array() = default;
    Array(std::initializer_list<T> items) : items(items) {}

    void Push(const T& item) { items.push_back(item); }
    void Push(T&& item) { items.push_back(std::move(item)); }

    template <class... Arguments>
    T& PushNew(Arguments&&... arguments) {
        return items.emplace_back(std::forward<Arguments>(arguments)...);
    }

    void Append(const Array& other) {
        const USize count = other.GetSize();
        items.reserve(items.size() + count);
        for (UIndex i = 0; i < count; ++i)
            items.push_back(other.items[i]);
    }

    USize GetSize() const { return static_cast<USize>(items.size()); }
    bool IsEmpty() const { return items.empty(); }
    void Clear() { items.clear(); }

    T& operator[](UIndex index) { return items[Checked(index)]; }
    const T& operator[](UIndex index) const { return items[Checked(index)]; }
    const T& Get(UIndex index) const { return items[Checked(index)]; }
    T& GetFirst() { return items[Checked(0)]; }
    const T& GetFirst() const { return items[Checked(0)]; }
    T& GetLast() { return items[Checked(GetSize() - 1)]; }
    const T& GetLast() const { return items[Checked(GetSize() - 1)]; }

    void Delete(UIndex index) { items.erase(items.begin() + Checked(index)); }

    bool Contains(const T& item) const { return FindFirst(item) != MaxUIndex; }

    // Index of the first equal item; MaxUIndex when there is none.
    UIndex FindFirst(const T& item) const {
        const auto found = std::find(items.begin(), items.end(), item);
        return found == items.end() ? MaxUIndex : static_cast<UIndex>(found - items.begin());
    }

    auto begin() { return items.begin(); }
    auto end() { return items.end(); }
    auto begin() const { return items.begin(); }
    auto end() const { return items.end(); }

    friend bool operator==(const Array& a, const Array& b) { return a.items == b.items; }
    friend bool operator!=(const Array& a, const Array& b) { return !(a == b); }

  private:
    UIndex Checked(UIndex index) const {
        if (index >= items.size()) throw IllegalReferenceException();
        return index;
    }

    std::vector<T> items;
};

}  // namespace GS
