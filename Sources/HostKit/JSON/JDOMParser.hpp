#pragma once

#include "Value.hpp"

namespace JSON {

class JDOMStringParser {
  public:
    // Empty when the text is not JSON as a whole, or nests deeper than 500 levels. Of members with the same
    // name the last value holds.
    ValueRef Parse(const GS::UniString& text) const;
};

}  // namespace JSON
