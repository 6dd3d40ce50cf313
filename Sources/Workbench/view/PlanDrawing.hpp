#pragma once

#include <QLineF>
#include <QPointF>
#include <QRectF>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <unordered_set>
#include <vector>

#include "Workbench/mesher/Mesh.hpp"
#include "Workbench/view/Section.hpp"

namespace workbench {

class Project;

// How far above a storey's floor its plan is cut, metres.
constexpr double planCutHeight = 1.0;

// What a plan shows of an element: metres, X to the right, Y up, rings filled by the even-odd rule.
struct PlanElement {
    std::uint64_t record = 0;
    std::string ifcClass = {};       // "IfcWall"; empty when the project was not asked
    std::vector<SectionPart> parts;  // what the cut meets; each has rings
    std::vector<QLineF> edges = {};  // what is seen below the cut, next to and between what it meets
    QRectF bounds = {};
    double area = 0;       // of what the cut meets, square metres
    double thickness = 0;  // of its pieces in the mean, metres
};

// The plan of a storey: data only, for the screen, for files and for picking. What is smaller comes later,
// so that it lies on top.
struct PlanDrawing {
    std::vector<PlanElement> elements;
    QRectF bounds;  // null when there are no elements
};

// Cuts the elements of a storey with this floor (metres, in the space of the meshes), and
// looks down from there. What lies higher, or is hidden, is left out.
PlanDrawing DrawPlan(std::span<const ElementMeshPtr> meshes, double floor);
// The plan of one of the project's storeys, given the shapes of what belongs to it; elements have classes.
PlanDrawing DrawPlan(const Project& project, std::size_t storey, std::span<const ElementMeshPtr> meshes);

// Around those of these records that the plan shows; null when it shows none.
QRectF BoundsOf(const PlanDrawing& drawing, const std::unordered_set<std::uint64_t>& records);

// The smallest element whose filled part holds the point; else the one with an outline nearest to it, at
// most `reach` metres away.
std::optional<std::uint64_t> ElementAt(const PlanDrawing& drawing, QPointF point, double reach);

}  // namespace workbench
