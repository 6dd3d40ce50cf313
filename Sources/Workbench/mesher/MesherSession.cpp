#include "Workbench/mesher/MesherSession.hpp"

#include <unistd.h>

#include <array>

namespace workbench {
namespace {

constexpr std::size_t readAtOnce = 1 << 20;
constexpr std::size_t errorTextKept = 4096;

}  // namespace

void MesherSession::TakeOutput() {
    buffer.resize(readAtOnce);
    const ssize_t count = read(Output(), buffer.data(), buffer.size());
    if (count > 0) reader.Add(buffer.data(), static_cast<std::size_t>(count));
    if (count == 0) outputEnded = true;
}

void MesherSession::TakeErrorText() {
    std::array<char, 4096> bytes{};
    ssize_t count = 0;
    while ((count = read(ErrorOutput(), bytes.data(), bytes.size())) > 0) {
        errorText.append(bytes.data(), static_cast<std::size_t>(count));
        if (errorText.size() > errorTextKept) errorText.erase(0, errorText.size() - errorTextKept);
    }
    if (count == 0) errorTextEnded = true;
}

std::string MesherSession::End() {
    std::string how = child.End();
    TakeErrorText();
    return errorText.empty() ? how : how + "\n" + errorText;
}

}  // namespace workbench
