#pragma once

#include <string>

namespace workbench {

/// Scripts that fill in the page's fields as a person does: the page hears of it.
std::string Type(const std::string& selector, const std::string& text);
std::string Choose(const std::string& selector, const std::string& option);

}  // namespace workbench
