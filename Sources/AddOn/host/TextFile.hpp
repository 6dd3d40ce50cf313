#pragma once

#include "Location.hpp"
#include "UniString.hpp"

#include <optional>

// Whole files as text in the host's default code, without a header.

/// No value when there is no such file, or it cannot be read.
std::optional<GS::UniString> ReadTextFile(const IO::Location& location);

/// Puts as many bytes of the text into the file as the text has characters; the rest of a text that needs
/// more is cut off. In place of what the file held, and without a word about failure.
void WriteTextFile(const IO::Location& location, const GS::UniString& text);
