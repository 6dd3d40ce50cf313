#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Workbench/mesher/ChildProcess.hpp"
#include "Workbench/mesher/Frames.hpp"

namespace workbench {

// One mesher child from its start to its end, with what it has said so far.
class MesherSession {
  public:
    // Throws std::system_error.
    MesherSession(const std::string& node, const std::string& script) : child({node, script}) {}

    int Id() const { return child.Id(); }
    int Output() const { return child.Output(); }
    int ErrorOutput() const { return child.ErrorOutput(); }
    bool OutputEnded() const { return outputEnded; }
    bool ErrorTextEnded() const { return errorTextEnded; }

    // Asks for the shapes of a file. False when the child takes no requests any more.
    bool Request(const std::string& path) { return child.Write(path + '\0'); }

    // Take in what has arrived, without waiting.
    void TakeOutput();
    void TakeErrorText();

    // Hands on the messages taken in; false when they are nonsense.
    bool Read(const std::function<void(MeshMessage)>& take) { return reader.Read(take); }

    // Ends the child and says how it ended, with its last words on standard error.
    std::string End();

  private:
    ChildProcess child;
    FrameReader reader;
    std::vector<char> buffer;
    std::string errorText;
    bool outputEnded = false;
    bool errorTextEnded = false;
};

}  // namespace workbench
