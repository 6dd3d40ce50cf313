#pragma once

#include "UniString.hpp"

namespace IO {

// One component of a path.
class Name {
  public:
    Name() = default;
    Name(const char* text) : text(text) {}
    Name(const GS::UniString& text) : text(text) {}

    const GS::UniString& ToString() const { return text; }
    bool IsEmpty() const { return text.IsEmpty(); }

    void Append(const GS::UniString& part) { text.Append(part); }
    void AppendExtension(const GS::UniString& extension);

    // Text after the last dot and before it; a leading dot begins no extension.
    GS::UniString GetExtension() const;
    GS::UniString GetBase() const;
    void DeleteExtension() { text = GetBase(); }

    friend bool operator==(const Name& a, const Name& b) { return a.text == b.text; }
    friend bool operator!=(const Name& a, const Name& b) { return a.text != b.text; }

  private:
    GS::UniString text;
};

}  // namespace IO
