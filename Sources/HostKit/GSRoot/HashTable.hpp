#pragma once

#include <map>
#include <utility>
#include <vector>

#include "GSException.hpp"

namespace GS {

// Table from key to value. Keys need an order instead of a hash value, and iteration follows insertion,
// so that whatever is made from a table comes out the same in every run.
template <class Key, class Value>
class HashTable {
  public:
    struct ConstPair {
        const Key* key;
        const Value* value;
    };

    class ConstIterator {
      public:
        explicit ConstIterator(const std::pair<Key, Value>* entry) : entry(entry) {}

        ConstPair operator*() const { return {&entry->first, &entry->second}; }
        ConstIterator& operator++() {
            ++entry;
            return *this;
        }
        bool operator==(const ConstIterator& other) const { return entry == other.entry; }
        bool operator!=(const ConstIterator& other) const { return entry != other.entry; }

      private:
        const std::pair<Key, Value>* entry;
    };

    // False, and no change, when the key is there already.
    bool Add(const Key& key, const Value& value) {
        if (!positions.emplace(key, GetSize()).second) return false;
        entries.emplace_back(key, value);
        return true;
    }

    // Adds or replaces.
    void Put(const Key& key, const Value& value) {
        if (!Add(key, value)) operator[](key) = value;
    }

    bool ContainsKey(const Key& key) const { return positions.count(key) != 0; }

    // Throw IllegalReferenceException for a missing key.
    Value& operator[](const Key& key) { return entries[Position(key)].second; }
    const Value& operator[](const Key& key) const { return entries[Position(key)].second; }
    const Value& Get(const Key& key) const { return operator[](key); }

    // False, and "value" untouched, for a missing key.
    bool Get(const Key& key, Value* value) const {
        if (!ContainsKey(key)) return false;
        *value = operator[](key);
        return true;
    }

    bool Delete(const Key& key) {
        if (!ContainsKey(key)) return false;
        const UIndex position = Position(key);
        positions.erase(key);
        entries.erase(entries.begin() + position);
        for (auto& item : positions) {
            if (item.second > position) --item.second;
        }
        return true;
    }

    USize GetSize() const { return static_cast<USize>(entries.size()); }
    bool IsEmpty() const { return entries.empty(); }

    void Clear() {
        positions.clear();
        entries.clear();
    }

    ConstIterator begin() const { return ConstIterator(entries.data()); }
    ConstIterator end() const { return ConstIterator(entries.data() + entries.size()); }

  private:
    UIndex Position(const Key& key) const {
        const auto found = positions.find(key);
        if (found == positions.end()) throw IllegalReferenceException();
        return found->second;
    }

    std::vector<std::pair<Key, Value>> entries;
    std::map<Key, UIndex> positions;
};

}  // namespace GS
