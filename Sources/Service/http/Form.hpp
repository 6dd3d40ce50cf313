#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace service {

struct FormPart {
    std::string name;
    std::optional<std::string> fileName;
};

// The boundary of a multipart/form-data content type (RFC 2046 section 5.1.1), if it is one.
std::optional<std::string> FormBoundary(std::string_view contentType);

// The names in a part's Content-Disposition value: quoted strings as browsers and curl write them
// (%22 for a quote), and RFC 5987's filename*, which wins.
FormPart ParseDisposition(std::string_view value);

// Reads a form as it arrives and keeps no more of it than a part's head.
class FormReader {
  public:
    using OnPart = std::function<void(const FormPart&)>;
    using OnContent = std::function<void(std::string_view)>;

    FormReader(const std::string& boundary, OnPart onPart, OnContent onContent);

    // Throws HttpError 400 when it is not a form.
    void Feed(std::string_view piece);

    // Whether the form's end has been seen.
    bool IsComplete() const { return state == State::End; }

  private:
    enum class State { Preamble, Content, Delimiter, Head, End };

    bool Advance();
    bool TakeContent();
    bool TakeDelimiter();
    bool TakeHead();

    const std::string delimiter;
    const OnPart onPart;
    const OnContent onContent;
    State state = State::Preamble;
    std::string pending;
};

}  // namespace service
