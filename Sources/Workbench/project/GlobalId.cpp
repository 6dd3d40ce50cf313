#include "Workbench/project/GlobalId.hpp"

#include <array>
#include <cstdint>

namespace workbench {
namespace {

constexpr std::string_view alphabet = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_$";
constexpr size_t globalIdLength = 22;

using Bytes = std::array<uint8_t, 16>;  // in the order of the GUID's text

API_Guid FromBytes(const Bytes& bytes) {
    API_Guid guid = APINULLGuid;
    for (size_t i = 0; i < 4; ++i)
        guid.timeLow = guid.timeLow << 8 | bytes[i];
    guid.timeMid = static_cast<uint16_t>(bytes[4] << 8 | bytes[5]);
    guid.timeHigh = static_cast<uint16_t>(bytes[6] << 8 | bytes[7]);
    for (size_t i = 0; i < 8; ++i)
        guid.node[i] = bytes[8 + i];
    return guid;
}

Bytes ToBytes(const API_Guid& guid) {
    Bytes bytes = {};
    for (size_t i = 0; i < 4; ++i)
        bytes[i] = static_cast<uint8_t>(guid.timeLow >> (24 - 8 * i));
    bytes[4] = static_cast<uint8_t>(guid.timeMid >> 8);
    bytes[5] = static_cast<uint8_t>(guid.timeMid);
    bytes[6] = static_cast<uint8_t>(guid.timeHigh >> 8);
    bytes[7] = static_cast<uint8_t>(guid.timeHigh);
    for (size_t i = 0; i < 8; ++i)
        bytes[8 + i] = guid.node[i];
    return bytes;
}

/// FNV-1a, then a mixing step, since short texts leave its high bits alike.
uint64_t Hash(std::string_view text, uint64_t seed) {
    uint64_t hash = 0xCBF29CE484222325 ^ seed;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    hash = (hash ^ (hash >> 30)) * 0xBF58476D1CE4E5B9;
    hash = (hash ^ (hash >> 27)) * 0x94D049BB133111EB;
    return hash ^ (hash >> 31);
}

}  // namespace

// The first two characters hold one byte (the first of them two bits), each further four hold three.
std::optional<API_Guid> GuidFromGlobalId(std::string_view globalId) {
    if (globalId.size() != globalIdLength) return std::nullopt;
    Bytes bytes = {};
    uint32_t bits = 0;
    size_t filled = 0;
    for (size_t i = 0; i < globalIdLength; ++i) {
        const size_t digit = alphabet.find(globalId[i]);
        if (digit == std::string_view::npos || (i == 0 && digit > 3)) return std::nullopt;
        bits = bits << 6 | static_cast<uint32_t>(digit);
        if (i == 1) {
            bytes[filled++] = static_cast<uint8_t>(bits);
            bits = 0;
        } else if (i > 1 && i % 4 == 1) {
            for (const int shift : {16, 8, 0})
                bytes[filled++] = static_cast<uint8_t>(bits >> shift);
            bits = 0;
        }
    }
    return FromBytes(bytes);
}

std::string GlobalIdFromGuid(const API_Guid& guid) {
    const Bytes bytes = ToBytes(guid);
    std::string text = {alphabet[bytes[0] >> 6], alphabet[bytes[0] & 63]};
    for (size_t i = 1; i < bytes.size(); i += 3) {
        const uint32_t bits = static_cast<uint32_t>(bytes[i] << 16 | bytes[i + 1] << 8 | bytes[i + 2]);
        for (const int shift : {18, 12, 6, 0})
            text += alphabet[(bits >> shift) & 63];
    }
    return text;
}

API_Guid GuidFromName(std::string_view name) {
    Bytes bytes = {};
    const std::array<uint64_t, 2> hashes = {Hash(name, 0), Hash(name, 0x9E3779B97F4A7C15)};
    for (size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<uint8_t>(hashes[i / 8] >> (8 * (i % 8)));
    bytes[6] = static_cast<uint8_t>((bytes[6] & 0x0F) | 0x80);  // version 8, a hash of one's own, of RFC 9562
    bytes[8] = static_cast<uint8_t>((bytes[8] & 0x3F) | 0x80);
    return FromBytes(bytes);
}

}  // namespace workbench
