#pragma once

#include <string>
#include <string_view>

namespace service {

// 128 random bits as 32 hexadecimal digits: the name of a record and of its file.
std::string NewId();

// Whether this text has the form of NewId()'s.
bool IsId(std::string_view text);

// 256 random bits as 64 hexadecimal digits.
std::string NewToken();

// What is kept of a token, so that a copy of the records lets nobody in (SHA-256, hexadecimal).
std::string TokenDigest(std::string_view token);

// A salted, slow hash of a password in crypt(3)'s format.
std::string HashPassword(const std::string& password);

// Whether HashPassword made this hash of the password. An empty hash matches none, as slowly.
bool MatchesPassword(const std::string& password, const std::string& hash);

}  // namespace service
