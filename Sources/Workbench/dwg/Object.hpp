#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "Workbench/dwg/BitStream.hpp"

namespace workbench::dwg {

/// The objects that every drawing has, by handle.
enum Handle : std::uint32_t {
    nothing = 0x00,
    blockControl = 0x01,
    layerControl = 0x02,
    styleControl = 0x03,
    linetypeControl = 0x05,
    viewControl = 0x06,
    ucsControl = 0x07,
    viewportControl = 0x08,
    applicationControl = 0x09,
    dimensionStyleControl = 0x0A,
    viewportEntityControl = 0x0B,
    rootDictionary = 0x0C,
    groupDictionary = 0x0D,
    plotStyleDictionary = 0x0E,
    plotStyle = 0x0F,
    layerZero = 0x10,
    textStyle = 0x11,
    application = 0x12,
    byBlock = 0x14,
    byLayer = 0x15,
    continuous = 0x16,
    multilineDictionary = 0x17,
    multilineStyle = 0x18,
    plotSettingsDictionary = 0x19,
    layoutDictionary = 0x1A,
    paperSpace = 0x1B,
    paperBlock = 0x1C,
    paperBlockEnd = 0x1D,
    paperLayout = 0x1E,
    modelSpace = 0x1F,
    modelBlock = 0x20,
    modelBlockEnd = 0x21,
    modelLayout = 0x22,
    dimensionStyle = 0x27,
    viewport = 0x29,
    firstFree = 0x30
};

/// One object on its way into the file: its data, then its links to others.
class Object : public BitStream {
  public:
    Object(int type, std::uint32_t handle);

    /// Before the first link.
    void EndData();
    /// With size and checksum.
    std::string Bytes() const;

  private:
    std::size_t sizeAt = 0;
};

/// The objects of a file in the order of their handles, each with its place.
class ObjectList {
  public:
    explicit ObjectList(std::size_t start) : start(start) {}

    void Add(std::uint32_t handle, const Object& object);
    const std::string& Bytes() const { return bytes; }
    /// Pages that lead from a handle to its object's address in the file.
    std::string Map() const;

  private:
    std::size_t start;  // address of the first
    std::string bytes;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> addresses;  // by handle
};

}  // namespace workbench::dwg
