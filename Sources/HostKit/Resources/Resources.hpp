#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "UniString.hpp"

namespace hostkit {

// Pixels; x and y count from the dialog's upper left corner.
struct DialogRect {
    short x = 0;
    short y = 0;
    short width = 0;
    short height = 0;
};

struct DialogItem {
    std::string kind;  // as the resource names it: "Browser", "Button", "LeftText", ...
    DialogRect rect;
    std::vector<std::string> options;  // words and numbers after the rectangle, in order
    GS::UniString text;
    GS::UniString tooltip;
};

struct DialogResource {
    GSResID id = 0;
    std::string type;                // "Palette" or "Modal"
    std::vector<std::string> flags;  // "topCaption", "close", "grow", ...
    DialogRect rect;
    GS::UniString title;
    std::vector<DialogItem> items;
};

// An add-on's strings and dialogs in one language.
class Resources {
  public:
    // Reads the .grc files of <folder>/RFIX, and of <folder>/RINT or <folder>/RGER for the language "INT" or
    // "GER". Throws std::runtime_error that names the file, and the line where one is malformed.
    static Resources Load(const std::filesystem::path& folder, const std::string& language);

    // Adds the content of one file; "name" is for error messages.
    void AddText(const std::string& text, const std::string& name);

    // Items count from 1; an unknown id or index gives the empty text.
    GS::UniString String(GSResID id, Int32 index) const;
    Int32 StringCount(GSResID id) const;

    // Null when there is none.
    const DialogResource* Dialog(GSResID id) const;

  private:
    std::map<GSResID, std::vector<GS::UniString>> strings;
    std::map<GSResID, DialogResource> dialogs;
};

}  // namespace hostkit
