#pragma once

#include "Value.hpp"

namespace JSON {

class JDOMStringWriter {
  public:
    // Replaces "destination" by the value's text; only quotes, backslashes and control characters are
    // escaped. "numberOfDigits" counts the significant digits of doubles; numbers that JSON cannot hold
    // become null. Throws IllegalArgumentException for a root that is neither an object nor an array.
    JDOMStringWriter(const Value& root, GS::UniString& destination, bool formatOutput = false,
                     int numberOfDigits = 10);
};

}  // namespace JSON
