#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"

#include <list>
#include <string>

/// The number of a command that is named by four characters.
constexpr GSType CommandNumber(const char (&name)[5]) {
    GSType number = 0;
    for (int i = 0; i < 4; ++i)
        number = number << 8 | static_cast<unsigned char>(name[i]);
    return number;
}

/// The named values that a command of another add-on is called with. Owns the host's list.
class CommandParameterList {
  public:
    CommandParameterList() = default;
    ~CommandParameterList();
    CommandParameterList(const CommandParameterList&) = delete;
    CommandParameterList& operator=(const CommandParameterList&) = delete;

    /// Asks the host for the list, once; returns its error.
    GSErrCode Create();

    /// Adds a text, of which the host takes 512 bytes at most; returns the host's error.
    GSErrCode AddText(const char* name, const GS::UniString& text);

    /// Adds the address of a value whose kind the command knows; returns the host's error. The value must
    /// live as long as the list.
    GSErrCode AddReference(const char* name, const void* value);

    GSHandle Get() const { return list; }

  private:
    GSHandle list = nullptr;
    std::list<std::string> texts;  // the host may keep referring to them
};
