#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace workbench::dwg {

struct Point {
    double x = 0;
    double y = 0;

    friend bool operator==(const Point&, const Point&) = default;
};

/// A number of the CAD colour index: 1 to 255, 7 is black on white and white on black.
using Colour = std::uint8_t;

/// How wide a line is plotted: places in the format's table of widths.
enum class Width : std::uint8_t { thin = 3 /* 0.13 mm */, medium = 8 /* 0.30 mm */, byLayer = 29 };

struct Layer {
    std::string name;  // UTF-8; characters that CAD programs refuse in it are replaced
    Colour colour = 7;
};

/// `layer` is a place in Drawing::layers, here and below.
struct Polyline {
    std::size_t layer = 0;
    std::vector<Point> points;  // two at least
    bool closed = false;        // back to the first point
    Width width = Width::byLayer;
};

/// An area of one colour, bounded by rings under the even-odd rule.
struct Fill {
    std::size_t layer = 0;
    std::vector<std::vector<Point>> rings;  // each of three points at least
    Colour colour = 7;
};

struct Line {
    std::size_t layer = 0;
    Point from;
    Point to;
    Width width = Width::byLayer;
};

struct Text {
    std::size_t layer = 0;
    Point start;        // of the base line
    double height = 1;  // of a capital letter
    std::string text;   // UTF-8
};

/// A flat drawing in metres. Fills lie under everything else.
struct Drawing {
    std::vector<Layer> layers;
    std::vector<Polyline> polylines = {};
    std::vector<Fill> fills = {};
    std::vector<Line> lines = {};
    std::vector<Text> texts = {};
};

}  // namespace workbench::dwg
