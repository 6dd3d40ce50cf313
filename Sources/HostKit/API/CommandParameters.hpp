#pragma once

#include <map>
#include <string>
#include <variant>

#include "ACAPinc.h"

namespace hostkit {

// The named values that a command of an add-on is called with.
class CommandParameters {
  public:
    // A copy of the value. BADNAME: the name is taken; BADPARS: no name, no text, or an unknown type.
    GSErrCode Add(const API_MDCLParameter& parameter);

    // Null when there is no such text.
    const std::string* FindText(const std::string& name) const;
    // The address; null when there is none.
    void* FindPointer(const std::string& name) const;

  private:
    std::map<std::string, std::variant<std::string, Int32, double, void*>> values;
};

// The lists that the add-on has made and not freed yet, by the handles that stand for them. Main thread only.
class CommandParameterLists {
  public:
    // An empty list's handle, which is the caller's to give back to Kill; null when memory runs out.
    GSHandle Create();
    // Null for what is no list's handle.
    CommandParameters* Find(GSHandle handle);
    // Sets the handle to null. False when it is no list's.
    bool Kill(GSHandle* handle);

  private:
    std::map<GSHandle, CommandParameters> lists;
};

}  // namespace hostkit
