#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"

#include <list>
#include <string>

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

    GSHandle Get() const { return list; }

  private:
    GSHandle list = nullptr;
    std::list<std::string> texts;  // the host may keep referring to them
};
