#pragma once

#include <map>
#include <string>
#include <vector>

#include "HostKit/Resources/GrcTokens.hpp"
#include "HostKit/Resources/Resources.hpp"

namespace hostkit {

// Adds the strings ('STR#') and dialogs ('GDLG', with their tool tips from a 'DLGH' further down) of one
// resource text to the tables. Resources of other kinds are passed over. Throws std::runtime_error that names
// file and line.
class GrcParser {
  public:
    GrcParser(const std::string& text, const std::string& file,
              std::map<GSResID, std::vector<GS::UniString>>& strings,
              std::map<GSResID, DialogResource>& dialogs);

    void Parse();

  private:
    using Kind = GrcToken::Kind;

    const GrcToken& Peek(std::size_t ahead = 0) const;
    bool Is(Kind kind) const { return Peek().kind == kind; }
    const GrcToken& Take(Kind kind, const char* what);
    short TakeShort(const char* what);
    DialogRect TakeRect();
    std::string TakeWord(const char* what) { return Take(Kind::word, what).value; }
    GS::UniString TakeText(const char* what);
    [[noreturn]] void Fail(const std::string& what) const;

    void ParseStrings(GSResID id);
    void ParseDialog(GSResID id);
    DialogItem ParseItem();
    bool AtItem() const;
    void ParseToolTips(GSResID id);
    void SkipResource();

    std::vector<GrcToken> tokens;
    const std::string& file;
    std::map<GSResID, std::vector<GS::UniString>>& strings;
    std::map<GSResID, DialogResource>& dialogs;
    std::size_t position = 0;
};

}  // namespace hostkit
