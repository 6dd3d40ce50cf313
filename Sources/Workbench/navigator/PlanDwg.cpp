#include "Workbench/navigator/PlanDwg.hpp"

#include <algorithm>
#include <functional>
#include <map>
#include <string_view>

#include "Workbench/dwg/Text.hpp"
#include "Workbench/view/PlanPainter.hpp"

namespace workbench {

namespace {

constexpr dwg::Colour blackOrWhite = 7;
constexpr double textShare = 0.025;  // of the drawing's larger side: the height of its text
constexpr double leastText = 0.1;    // metres

// What people expect; walls show on any background.
constexpr struct {
    std::string_view ifcClass;
    dwg::Colour colour;
} usualColours[] = {{"IfcWall", blackOrWhite}, {"IfcDoor", 30},    {"IfcWindow", 150}, {"IfcSlab", 8},
                    {"IfcColumn", 1},          {"IfcBeam", 20},    {"IfcStair", 42},   {"IfcRailing", 92},
                    {"IfcRoof", 12},           {"IfcFurnish", 62}, {"IfcFurnit", 62},  {"IfcCovering", 54}};
constexpr dwg::Colour otherColours[] = {3, 4, 5, 6, 40, 82, 112, 132, 172, 190, 202, 222, 242};

dwg::Colour ColourOf(const std::string& ifcClass) {
    for (const auto& [name, colour] : usualColours)
        if (ifcClass.starts_with(name)) return colour;
    // The same for a class in all drawings.
    std::size_t sum = 0;
    for (const char letter : ifcClass)
        sum = 31 * sum + static_cast<unsigned char>(letter);
    return otherColours[sum % std::size(otherColours)];
}

dwg::Point PointOf(QPointF point) {
    return {point.x(), point.y()};
}

std::vector<dwg::Point> PointsOf(const QPolygonF& ring) {
    std::vector<dwg::Point> points;
    std::ranges::transform(ring, std::back_inserter(points), PointOf);
    return points;
}

class Translator {
  public:
    explicit Translator(dwg::Drawing& out) : out(out) {}

    void Add(const PlanElement& element) {
        const std::size_t layer = LayerOf(element.ifcClass.empty() ? "IfcElement" : element.ifcClass);
        for (const SectionPart& part : element.parts) {
            const QColor paper = PlanFill(part.colour);
            dwg::Fill fill{layer, {}, dwg::NearestColour(paper.redF(), paper.greenF(), paper.blueF())};
            for (const QPolygonF& ring : part.rings) {
                fill.rings.push_back(PointsOf(ring));
                out.polylines.push_back({layer, fill.rings.back(), true, dwg::Width::medium});
            }
            out.fills.push_back(std::move(fill));
        }
        for (const QLineF& edge : element.edges)
            out.lines.push_back({layer, PointOf(edge.p1()), PointOf(edge.p2()), dwg::Width::thin});
    }

    std::size_t LayerOf(const std::string& name) {
        const auto [found, isNew] = layers.try_emplace(name, out.layers.size());
        if (isNew) out.layers.push_back({name, ColourOf(name)});
        return found->second;
    }

  private:
    dwg::Drawing& out;
    std::map<std::string, std::size_t> layers;
};

}  // namespace

dwg::Drawing DwgOf(const PlanDrawing& drawing, const std::string& storeyName) {
    dwg::Drawing out;
    Translator translator(out);
    for (const PlanElement& element : drawing.elements)
        translator.Add(element);
    const QRectF& bounds = drawing.bounds;
    const double height = std::max(leastText, textShare * std::max(bounds.width(), bounds.height()));
    out.texts.push_back({translator.LayerOf("IfcBuildingStorey"),
                         {bounds.left(), bounds.top() - 2 * height},
                         height,
                         storeyName});
    return out;
}

}  // namespace workbench
