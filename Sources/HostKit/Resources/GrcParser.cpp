#include "HostKit/Resources/GrcParser.hpp"

#include <algorithm>
#include <charconv>

#include "HostKit/GSRoot/Text.hpp"

namespace hostkit {

GrcParser::GrcParser(const std::string& text, const std::string& file,
                     std::map<GSResID, std::vector<GS::UniString>>& strings,
                     std::map<GSResID, DialogResource>& dialogs)
    : tokens(ReadGrcTokens(text, file)), file(file), strings(strings), dialogs(dialogs) {}

void GrcParser::Parse() {
    while (!Is(Kind::end)) {
        const std::string type = Take(Kind::type, "a resource type in single quotes").value;
        const GSResID id = TakeShort("the resource's number");
        if (type == "STR#") {
            ParseStrings(id);
        } else if (type == "GDLG") {
            ParseDialog(id);
        } else if (type == "DLGH") {
            ParseToolTips(id);
        } else {
            SkipResource();
        }
    }
}

const GrcToken& GrcParser::Peek(std::size_t ahead) const {
    return tokens[std::min(position + ahead, tokens.size() - 1)];
}

void GrcParser::Fail(const std::string& what) const {
    ThrowGrcError(file, Peek().line, what);
}

const GrcToken& GrcParser::Take(Kind kind, const char* what) {
    if (!Is(kind)) Fail(std::string("expected ") + what + (Is(Kind::end) ? "" : " before " + Peek().value));
    return tokens[position++];
}

short GrcParser::TakeShort(const char* what) {
    const std::string& digits = Take(Kind::number, what).value;
    short number = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (read.ec != std::errc()) Fail("the number " + digits + " is too large");
    return number;
}

DialogRect GrcParser::TakeRect() {
    DialogRect rect;
    rect.x = TakeShort("a left edge");
    rect.y = TakeShort("an upper edge");
    rect.width = TakeShort("a width");
    rect.height = TakeShort("a height");
    return rect;
}

GS::UniString GrcParser::TakeText(const char* what) {
    return ToUniString(Take(Kind::text, what).value);
}

// 'STR#' id "comment" { "text" ... }
void GrcParser::ParseStrings(GSResID id) {
    if (strings.count(id) != 0) Fail("strings " + std::to_string(id) + " exist already");
    TakeText("a comment");
    Take(Kind::open, "{");
    std::vector<GS::UniString>& items = strings[id];
    while (!Is(Kind::close))
        items.push_back(TakeText("a text"));
    Take(Kind::close, "}");
}

// 'GDLG' id type | flag ... x y width height "title" { items }
void GrcParser::ParseDialog(GSResID id) {
    if (dialogs.count(id) != 0) Fail("dialog " + std::to_string(id) + " exists already");
    DialogResource& dialog = dialogs[id];
    dialog.id = id;
    dialog.type = TakeWord("Palette or Modal");
    while (Is(Kind::bar)) {
        Take(Kind::bar, "|");
        dialog.flags.push_back(TakeWord("a flag"));
    }
    dialog.rect = TakeRect();
    dialog.title = TakeText("a title");
    Take(Kind::open, "{");
    while (!Is(Kind::close))
        dialog.items.push_back(ParseItem());
    Take(Kind::close, "}");
}

// Kind x y width height, then options and a text in any order.
DialogItem GrcParser::ParseItem() {
    DialogItem item;
    item.kind = TakeWord("an item");
    item.rect = TakeRect();
    while (!Is(Kind::close) && !AtItem()) {
        if (Is(Kind::text)) {
            item.text = TakeText("a text");
        } else if (Is(Kind::number) || Is(Kind::word)) {
            item.options.push_back(tokens[position++].value);
        } else {
            Fail("expected an item or }");
        }
    }
    return item;
}

// Options have one number at most, so only an item's name is followed by two.
bool GrcParser::AtItem() const {
    return Is(Kind::word) && Peek(1).kind == Kind::number && Peek(2).kind == Kind::number;
}

// 'DLGH' id name { number "tool tip" anchor ... }
void GrcParser::ParseToolTips(GSResID id) {
    const auto dialog = dialogs.find(id);
    if (dialog == dialogs.end()) Fail("no dialog " + std::to_string(id) + " above");
    std::vector<DialogItem>& items = dialog->second.items;
    TakeWord("a name");
    Take(Kind::open, "{");
    while (!Is(Kind::close)) {
        const auto index = static_cast<std::size_t>(TakeShort("an item's number") - 1);
        if (index >= items.size()) Fail("the dialog has no such item");
        items[index].tooltip = TakeText("a tool tip");
        TakeWord("an anchor");
    }
    Take(Kind::close, "}");
}

void GrcParser::SkipResource() {
    while (!Is(Kind::open)) {
        if (Is(Kind::end) || Is(Kind::type)) Fail("expected {");
        ++position;
    }
    int depth = 0;
    do {
        if (Is(Kind::end)) Fail("expected }");
        if (Is(Kind::open)) ++depth;
        if (Is(Kind::close)) --depth;
        ++position;
    } while (depth > 0);
}

}  // namespace hostkit
