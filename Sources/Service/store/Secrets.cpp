#include "Service/store/Secrets.hpp"

#include <crypt.h>
#include <openssl/sha.h>
#include <sys/random.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <span>
#include <system_error>

namespace service {

namespace {

constexpr std::string_view hexDigits = "0123456789abcdef";
constexpr auto method = "$y$";  // yescrypt, Debian's own default

std::string Hex(std::span<const unsigned char> bytes) {
    std::string text;
    for (const unsigned char byte : bytes)
        text += {hexDigits[byte >> 4], hexDigits[byte & 15]};
    return text;
}

template <size_t size>
std::string RandomHex() {
    std::array<unsigned char, size> bytes{};
    if (getrandom(bytes.data(), size, 0) != static_cast<ssize_t>(size)) {
        throw std::system_error(errno, std::generic_category(), "No random numbers");
    }
    return Hex(bytes);
}

std::string Crypt(const std::string& password, const std::string& setting) {
    const auto data = std::make_unique<crypt_data>();
    const char* hash = crypt_r(password.c_str(), setting.c_str(), data.get());
    return hash != nullptr && hash[0] != '*' ? hash : "";
}

std::string NewSetting() {
    std::array<char, CRYPT_GENSALT_OUTPUT_SIZE> setting{};
    if (crypt_gensalt_rn(method, 0, nullptr, 0, setting.data(), setting.size()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), "No password hashing");
    }
    return setting.data();
}

}  // namespace

std::string NewId() {
    return RandomHex<16>();
}

bool IsId(std::string_view text) {
    return text.size() == 32 && text.find_first_not_of(hexDigits) == std::string_view::npos;
}

std::string NewToken() {
    return RandomHex<32>();
}

std::string TokenDigest(std::string_view token) {
    std::array<unsigned char, SHA256_DIGEST_LENGTH> digest{};
    SHA256(reinterpret_cast<const unsigned char*>(token.data()), token.size(), digest.data());
    return Hex(digest);
}

std::string HashPassword(const std::string& password) {
    std::string hash = Crypt(password, NewSetting());
    if (hash.empty()) throw std::system_error(errno, std::generic_category(), "No password hashing");
    return hash;
}

bool MatchesPassword(const std::string& password, const std::string& hash) {
    const std::string again = Crypt(password, hash.empty() ? NewSetting() : hash);
    return !hash.empty() && !again.empty() && again == hash;
}

}  // namespace service
