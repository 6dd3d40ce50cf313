#include "Name.hpp"

namespace IO {

namespace {

// Position of the dot that begins the extension.
UIndex ExtensionDot(const GS::UniString& text) {
    const UIndex dot = text.FindLast(u'.');
    return dot == 0 ? MaxUIndex : dot;
}

}  // namespace

void Name::AppendExtension(const GS::UniString& extension) {
    text += ".";
    text += extension;
}

GS::UniString Name::GetExtension() const {
    const UIndex dot = ExtensionDot(text);
    return dot == MaxUIndex ? GS::EmptyUniString : text.GetSubstring(dot + 1, MaxUSize);
}

GS::UniString Name::GetBase() const {
    return text.GetPrefix(ExtensionDot(text));
}

}  // namespace IO
