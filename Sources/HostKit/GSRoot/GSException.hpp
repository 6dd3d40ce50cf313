#pragma once

#include <stdexcept>

#include "UniString.hpp"

namespace GS {

// Root of the base library's exceptions.
class Exception : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;

    UniString GetMessage() const { return what(); }
};

class NullReferenceException : public Exception {
  public:
    NullReferenceException() : Exception("Null reference.") {}
};

class ClassCastException : public Exception {
  public:
    ClassCastException() : Exception("Bad cast.") {}
};

// An index or a key that a container does not hold.
class IllegalReferenceException : public Exception {
  public:
    IllegalReferenceException() : Exception("Illegal reference.") {}
};

class IllegalArgumentException : public Exception {
  public:
    IllegalArgumentException() : Exception("Illegal argument.") {}
};

}  // namespace GS
