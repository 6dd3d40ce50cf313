#pragma once

#include <functional>

#include "Array.hpp"
#include "HashTable.hpp"
#include "Ref.hpp"
#include "UniString.hpp"

namespace DG {

// A value of the page's script. The page's null and undefined are empty references.
class JSBase {
  public:
    virtual ~JSBase() = default;
};

class JSValue : public JSBase {
  public:
    enum Type { BOOL = 1, INTEGER = 2, UINTEGER = 3, DOUBLE = 4, STRING = 5 };

    explicit JSValue(bool value) : type(BOOL), number(value) {}
    explicit JSValue(Int32 value) : type(INTEGER), number(value) {}
    explicit JSValue(UInt32 value) : type(UINTEGER), number(value) {}
    explicit JSValue(double value) : type(DOUBLE), number(value) {}
    explicit JSValue(const GS::UniString& value) : type(STRING), text(value) {}
    explicit JSValue(const char* value) : type(STRING), text(value) {}

    Type GetType() const { return type; }

    // Meant for a value of the same type; of any other they give false, 0 and the empty text.
    bool GetBool() const { return type == BOOL && number != 0; }
    Int32 GetInteger() const { return type == INTEGER ? static_cast<Int32>(number) : 0; }
    UInt32 GetUInteger() const { return type == UINTEGER ? static_cast<UInt32>(number) : 0; }
    double GetDouble() const { return type == DOUBLE ? number : 0; }
    const GS::UniString& GetString() const { return text; }

  private:
    Type type;
    double number = 0;  // holds every 32-bit integer exactly
    GS::UniString text;
};

class JSArray : public JSBase {
  public:
    bool AddItem(const GS::Ref<JSBase>& item) {
        items.Push(item);
        return true;
    }

    const GS::Array<GS::Ref<JSBase>>& GetItemArray() const { return items; }

  private:
    GS::Array<GS::Ref<JSBase>> items;
};

// A function that the page calls with one value (or none: an empty reference) and that answers with one.
class JSFunction : public JSBase {
  public:
    using Body = std::function<GS::Ref<JSBase>(GS::Ref<JSBase>)>;

    JSFunction(const GS::UniString& name, Body body) : name(name), body(std::move(body)) {}

    const GS::UniString& GetName() const { return name; }

    // Exceptions of the body pass through. Afterwards the host is told that the page's call is over.
    GS::Ref<JSBase> Call(const GS::Ref<JSBase>& argument) const;

  private:
    GS::UniString name;
    Body body;
};

class JSObject : public JSBase {
  public:
    explicit JSObject(const GS::UniString& name = GS::EmptyUniString) : name(name) {}

    const GS::UniString& GetName() const { return name; }

    // False, and no change, when the name is taken.
    bool AddItem(const GS::UniString& itemName, const GS::Ref<JSBase>& item) {
        return items.Add(itemName, item);
    }
    bool AddItem(const GS::Ref<JSFunction>& function) { return items.Add(function->GetName(), function); }

    // In the order of adding.
    const GS::HashTable<GS::UniString, GS::Ref<JSBase>>& GetItemTable() const { return items; }

  private:
    GS::UniString name;
    GS::HashTable<GS::UniString, GS::Ref<JSBase>> items;
};

}  // namespace DG
