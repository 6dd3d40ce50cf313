#include "script/JsonText.hpp"

#include "ValueToString.hpp"

GS::UniString WrapString(const GS::UniString& text, const GS::UniString& left, const GS::UniString& right) {
    GS::UniString wrapped = left;
    wrapped += text;
    wrapped += right;
    return wrapped;
}

GS::UniString GetJSONElementString(const GS::UniString& name, const GS::UniString& value, bool raw) {
    const GS::UniString quote = raw ? "" : "\"";
    return WrapString(value, WrapString(name, "\"", "\":") + quote, quote);
}

GS::UniString JoinStrings(const GS::Array<GS::UniString>& items, const GS::UniString& separator) {
    GS::UniString joined;
    for (USize i = 0; i < items.GetSize(); ++i) {
        if (i > 0) joined += separator;
        joined += items[i];
    }
    return joined;
}

GS::UniString GetUniStringFromDouble(double number) {
    char text[256] = {};
    GS::valuetostr(number, text, sizeof text);
    return GS::UniString(text);
}

GS::UniString GetUniStringFromVector(const API_Coord3D& vector) {
    GS::Array<GS::UniString> members;
    members.Push(GetJSONElementString("x", GetUniStringFromDouble(vector.x), true));
    members.Push(GetJSONElementString("y", GetUniStringFromDouble(vector.y), true));
    members.Push(GetJSONElementString("z", GetUniStringFromDouble(vector.z), true));
    return WrapString(JoinStrings(members, ","), "{", "}");
}
