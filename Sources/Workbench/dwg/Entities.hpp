#pragma once

#include <limits>
#include <vector>

#include "Workbench/dwg/Drawing.hpp"
#include "Workbench/dwg/Object.hpp"

namespace workbench::dwg {

/// An entity's neighbours in its space, which lie one handle before and after it.
struct Place {
    std::uint32_t handle = 0;
    bool isFirst = true;
    bool isLast = true;
};

/// The beginning and the end of a space.
Object BlockBegin(std::uint32_t handle, const char* name);
Object BlockEnd(std::uint32_t handle);

/// `layer` is a handle.
Object LineObject(const Place& place, std::uint32_t layer, const Line& line);
Object PolylineObject(const Place& place, std::uint32_t layer, const Polyline& polyline);
Object FillObject(const Place& place, std::uint32_t layer, const Fill& fill);
Object TextObject(const Place& place, std::uint32_t layer, const Text& text);

/// Pieces that make up the same as what is too long for one object: some readers refuse objects of 32 KiB and
/// more.
std::vector<Polyline> Pieces(const Polyline& polyline);
std::vector<Fill> Pieces(const Fill& fill);

/// Around everything in a drawing, without the length of texts.
struct Extents {
    Point min{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
    Point max{-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};

    bool IsEmpty() const { return !(min.x <= max.x); }
    void Add(const Point& point);
};
Extents ExtentsOf(const Drawing& drawing);

}  // namespace workbench::dwg
