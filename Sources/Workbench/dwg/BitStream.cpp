#include "Workbench/dwg/BitStream.hpp"

#include <algorithm>
#include <array>
#include <bit>

namespace workbench::dwg {
namespace {

constexpr std::array<std::uint16_t, 256> crcTable = [] {
    std::array<std::uint16_t, 256> table{};
    for (unsigned byte = 0; byte < 256; ++byte) {
        unsigned crc = byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xA001u : 0u);
        table[byte] = static_cast<std::uint16_t>(crc);
    }
    return table;
}();

}  // namespace

std::uint16_t Crc(std::string_view bytes) {
    unsigned crc = 0xC0C1;
    for (const char byte : bytes)
        crc = (crc >> 8) ^ crcTable[(crc ^ static_cast<unsigned char>(byte)) & 0xFF];
    return static_cast<std::uint16_t>(crc);
}

// From the highest bit of a byte down.
void BitStream::Bits(unsigned value, unsigned count) {
    while (count > 0) {
        if (unused == 0) {
            bytes.push_back(0);
            unused = 8;
        }
        const unsigned taken = std::min(count, unused);
        const unsigned part = (value >> (count - taken)) & ((1u << taken) - 1);
        bytes.back() = static_cast<char>(static_cast<unsigned char>(bytes.back()) | part << (unused - taken));
        unused -= taken;
        count -= taken;
    }
}

void BitStream::RS(unsigned value) {
    RC(value & 0xFF);
    RC(value >> 8 & 0xFF);
}

void BitStream::RL(std::uint32_t value) {
    RS(value & 0xFFFF);
    RS(value >> 16);
}

void BitStream::RD(double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    RL(static_cast<std::uint32_t>(bits));
    RL(static_cast<std::uint32_t>(bits >> 32));
}

void BitStream::BS(int value) {
    if (value == 0) return BB(2);
    if (value == 256) return BB(3);
    const bool isByte = value > 0 && value < 256;
    BB(isByte ? 1 : 0);
    isByte ? RC(static_cast<unsigned>(value)) : RS(static_cast<unsigned>(value));
}

void BitStream::BL(std::uint32_t value) {
    if (value == 0) return BB(2);
    BB(value < 256 ? 1 : 0);
    value < 256 ? RC(value) : RL(value);
}

void BitStream::BD(double value) {
    if (value == 0) return BB(2);
    if (value == 1) return BB(1);
    BB(0);
    RD(value);
}

void BitStream::DD(double value, double usual) {
    if (value == usual) return BB(0);
    BB(3);
    RD(value);
}

void BitStream::BD3(double x, double y, double z) {
    BDs(x, y, z);
}

void BitStream::RD2(double x, double y) {
    RD(x);
    RD(y);
}

void BitStream::T(std::string_view text) {
    BS(static_cast<int>(text.size()));
    for (const char byte : text)
        RC(static_cast<unsigned char>(byte));
}

void BitStream::H(Link link, std::uint32_t handle) {
    const auto count = static_cast<unsigned>(std::bit_width(handle) + 7) / 8;
    Bits(static_cast<unsigned>(link), 4);
    Bits(count, 4);
    for (unsigned at = count; at > 0; --at)
        RC(handle >> (8 * (at - 1)) & 0xFF);
}

void BitStream::ReplaceRL(std::size_t bit, std::uint32_t value) {
    for (std::size_t at = 0; at < 32; ++at) {
        // Bytes lie lowest first, the bits in each highest first.
        const bool set = (value >> (8 * (at / 8) + 7 - at % 8) & 1) != 0;
        const unsigned mask = 0x80u >> ((bit + at) % 8);
        const auto old = static_cast<unsigned char>(bytes[(bit + at) / 8]);
        bytes[(bit + at) / 8] = static_cast<char>(set ? old | mask : old & ~mask);
    }
}

}  // namespace workbench::dwg
