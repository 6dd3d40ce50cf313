#include "JDOMParser.hpp"

#include <nlohmann/json.hpp>
#include <utility>

#include "HostKit/GSRoot/Text.hpp"

namespace JSON {

namespace {

// Builds values from the parser's events. Every handler answers whether to go on.
class Builder : public nlohmann::json_sax<nlohmann::json> {
  public:
    const ValueRef& Root() const { return root; }

    bool null() override { return Add(new NullValue); }
    bool boolean(bool value) override { return Add(new BoolValue(value)); }
    bool number_integer(number_integer_t value) override { return AddWhole(value); }
    bool number_unsigned(number_unsigned_t value) override { return AddWhole(value); }
    bool number_float(number_float_t value, const string_t&) override { return Add(new NumberValue(value)); }
    bool string(string_t& value) override { return Add(new StringValue(hostkit::ToUniString(value))); }
    bool binary(binary_t&) override { return false; }

    bool start_object(std::size_t) override { return Open(new ObjectValue); }
    bool start_array(std::size_t) override { return Open(new ArrayValue); }
    bool end_object() override { return Close(); }
    bool end_array() override { return Close(); }

    bool key(string_t& name) override {
        levels.back().key = hostkit::ToUniString(name);
        return true;
    }

    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override {
        return false;
    }

  private:
    struct Level {
        ValueRef container;
        GS::UniString key;
    };

    static constexpr std::size_t deepest = 500;

    bool Add(const ValueRef& value) {
        if (levels.empty()) {
            root = value;
        } else if (levels.back().container->IsObject()) {
            ObjectValue::Cast(levels.back().container)->AddValue(levels.back().key, value);
        } else {
            ArrayValue::Cast(levels.back().container)->AddValue(value);
        }
        return true;
    }

    template <class Whole>
    bool AddWhole(Whole value) {
        if (std::in_range<Int32>(value)) return Add(new NumberValue(static_cast<Int32>(value)));
        if (std::in_range<UInt32>(value)) return Add(new NumberValue(static_cast<UInt32>(value)));
        return Add(new NumberValue(static_cast<double>(value)));
    }

    bool Open(const ValueRef& container) {
        if (levels.size() == deepest) return false;
        Add(container);
        levels.push_back({container, {}});
        return true;
    }

    bool Close() {
        levels.pop_back();
        return true;
    }

    ValueRef root;
    std::vector<Level> levels;
};

}  // namespace

ValueRef JDOMStringParser::Parse(const GS::UniString& text) const {
    Builder builder;
    return nlohmann::json::sax_parse(hostkit::ToUtf8(text), &builder) ? builder.Root() : nullptr;
}

}  // namespace JSON
