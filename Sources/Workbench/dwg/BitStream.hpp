#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace workbench::dwg {

/// The format's checksum.
std::uint16_t Crc(std::string_view bytes);

/// The bytes of a whole number, the lowest first.
template <typename Number>
void AppendLittle(std::string& bytes, Number number) {
    for (std::size_t at = 0; at < sizeof(Number); ++at)
        bytes.push_back(static_cast<char>(number >> (8 * at)));
}

/// How a handle refers to its object.
enum class Link : std::uint8_t { self = 0, softOwner = 2, hardOwner = 3, softPointer = 4, hardPointer = 5 };

/// Values packed bit by bit. The functions have the names that the description of the format gives them.
class BitStream {
  public:
    void B(bool bit) { Bits(bit ? 1 : 0, 1); }
    void BB(unsigned value) { Bits(value, 2); }
    void RC(unsigned value) { Bits(value, 8); }
    void RS(unsigned value);
    void RL(std::uint32_t value);
    void RD(double value);
    void BS(int value);
    void BL(std::uint32_t value);
    void BD(double value);
    /// A number that is often equal to `usual`.
    void DD(double value, double usual);
    /// Three numbers, none of which is raw.
    void BD3(double x, double y, double z);
    void RD2(double x, double y);
    /// Bytes in the drawing's code page, with their count.
    void T(std::string_view bytes);
    void H(Link link, std::uint32_t handle);
    template <typename... Values>
    void BSs(Values... values) {
        (BS(values), ...);
    }
    template <typename... Values>
    void BDs(Values... values) {
        (BD(values), ...);
    }
    template <typename... Values>
    void Bs(Values... values) {
        (B(values != 0), ...);
    }

    std::size_t BitCount() const { return 8 * bytes.size() - unused; }
    /// Writes a number over what stands at a bit.
    void ReplaceRL(std::size_t bit, std::uint32_t value);
    /// The last byte is filled up with zeros.
    const std::string& Bytes() const { return bytes; }

  private:
    void Bits(unsigned value, unsigned count);

    std::string bytes;
    unsigned unused = 0;  // bits of the last byte
};

}  // namespace workbench::dwg
