#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace workbench::step {

/// Arguments are views into the record's text, split on demand; the functions below read one of them.

/// The top-level arguments of a record "#1=TYPE(a,(b,c),$);" or of "TYPE(a,b)" or "(a,b)": blanks and
/// comments around each are dropped. Empty for a complex instance.
std::vector<std::string_view> Arguments(std::string_view text);
/// The n-th of them (from 0), "$" when there are not as many.
std::string_view Argument(std::string_view text, size_t n);

/// 12 for "#12".
std::optional<uint64_t> AsReference(std::string_view argument);
/// All references at the argument's or record's any depth, in order; a record's own id is not among them.
std::vector<uint64_t> References(std::string_view text);
/// Calls visit for each of them, without allocating.
void ForEachReference(std::string_view text, const std::function<void(uint64_t)>& visit);
/// The number in "1.5E3", also inside a typed value, "IFCLENGTHMEASURE(1.5)".
std::optional<double> AsReal(std::string_view argument);
/// UTF-8 text of a string in quotes, also inside a typed value; nothing for anything else.
std::optional<std::string> AsText(std::string_view argument);
/// "ELEMENT" for ".ELEMENT."; empty for anything else.
std::string_view AsEnum(std::string_view argument);
/// True for "$" and "*".
bool IsUnset(std::string_view argument);

/// Appends the record's text with its own id replaced, and every reference by what `idOf` answers.
void AppendRenumbered(std::string& out, std::string_view text, uint64_t ownId,
                      const std::function<uint64_t(uint64_t)>& idOf);
/// The record's text with its n-th argument replaced.
std::string WithArgument(std::string_view text, size_t n, std::string_view replacement);
/// The record's text without the references that `keep` refuses: list members go, single ones become "$".
std::string WithoutReferences(std::string_view text, const std::function<bool(uint64_t)>& keep);

}  // namespace workbench::step
