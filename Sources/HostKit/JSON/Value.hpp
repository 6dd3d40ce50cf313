#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "Ref.hpp"
#include "UniString.hpp"

namespace JSON {

class Value;
class ObjectValue;
class ArrayValue;
class StringValue;
class NumberValue;
class BoolValue;

using ValueRef = GS::Ref<Value>;
using ObjectValueRef = GS::Ref<ObjectValue>;
using ArrayValueRef = GS::Ref<ArrayValue>;
using StringValueRef = GS::Ref<StringValue>;
using NumberValueRef = GS::Ref<NumberValue>;
using BoolValueRef = GS::Ref<BoolValue>;

class Value {
  public:
    enum Type { NullType, ObjectType, ArrayType, StringType, NumberType, BoolType };

    virtual ~Value() = default;

    Type GetType() const { return type; }
    bool IsNull() const { return type == NullType; }
    bool IsObject() const { return type == ObjectType; }
    bool IsArray() const { return type == ArrayType; }
    bool IsString() const { return type == StringType; }
    bool IsNumber() const { return type == NumberType; }
    bool IsBool() const { return type == BoolType; }

  protected:
    explicit Value(Type type) : type(type) {}

  private:
    Type type;
};

class NullValue : public Value {
  public:
    NullValue() : Value(NullType) {}
};

// Adds the casts to a kind of value. Both throw ClassCastException for another kind; an empty reference
// stays empty.
template <class Kind>
class ValueOf : public Value {
  public:
    static const Kind& Cast(const Value& value) {
        const auto* kind = dynamic_cast<const Kind*>(&value);
        if (kind == nullptr) throw GS::ClassCastException();
        return *kind;
    }

    static GS::Ref<Kind> Cast(const ValueRef& value) { return GS::DynamicCast<Kind>(value); }

  protected:
    using Value::Value;
};

// Members keep the order in which they were first added.
class ObjectValue : public ValueOf<ObjectValue> {
  public:
    ObjectValue() : ValueOf(ObjectType) {}

    USize GetSize() const { return static_cast<USize>(members.size()); }
    bool HasMember(const GS::UniString& name) const { return Find(name) != nullptr; }

    // Empty when there is no such member.
    ValueRef Get(const GS::UniString& name) const;

    // By position; throw IllegalReferenceException beyond the end.
    const GS::UniString& GetName(UIndex index) const;
    ValueRef Get(UIndex index) const;

    // Replaces the value of a member that is there already. Throws NullReferenceException for an empty value.
    void AddValue(const GS::UniString& name, const ValueRef& value);

    void Enumerate(const std::function<void(const GS::UniString& name, const ValueRef& value)>& visit) const;

  private:
    using Member = std::pair<GS::UniString, ValueRef>;

    const Member* Find(const GS::UniString& name) const;

    std::vector<Member> members;
};

class ArrayValue : public ValueOf<ArrayValue> {
  public:
    ArrayValue() : ValueOf(ArrayType) {}

    USize GetSize() const { return static_cast<USize>(items.size()); }

    // Throws IllegalReferenceException beyond the end.
    ValueRef Get(UIndex index) const;

    // Throws NullReferenceException for an empty value.
    void AddValue(const ValueRef& value);

    void Enumerate(const std::function<void(const ValueRef& value)>& visit) const;

  private:
    std::vector<ValueRef> items;
};

class StringValue : public ValueOf<StringValue> {
  public:
    explicit StringValue(const GS::UniString& text) : ValueOf(StringType), text(text) {}

    const GS::UniString& Get() const { return text; }

  private:
    GS::UniString text;
};

// A number as it was written: whole numbers within 32 bits are whole, everything else is a double.
class NumberValue : public ValueOf<NumberValue> {
  public:
    explicit NumberValue(double value) : ValueOf(NumberType), value(value), whole(false) {}
    explicit NumberValue(Int32 value) : ValueOf(NumberType), value(value), whole(true) {}
    explicit NumberValue(UInt32 value) : ValueOf(NumberType), value(value), whole(true) {}

    // A whole number may fit both 32-bit kinds.
    bool IsDouble() const { return !whole; }
    bool IsInt32() const;
    bool IsUInt32() const;

    double GetDouble() const { return value; }

    // Throw ClassCastException when the number is not of that kind.
    Int32 GetInt32() const;
    UInt32 GetUInt32() const;

  private:
    double value;
    bool whole;
};

class BoolValue : public ValueOf<BoolValue> {
  public:
    explicit BoolValue(bool value) : ValueOf(BoolType), value(value) {}

    bool Get() const { return value; }

  private:
    bool value;
};

}  // namespace JSON
