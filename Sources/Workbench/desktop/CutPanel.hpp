#pragma once

#include <QDockWidget>
#include <array>

#include "Workbench/api/Application.hpp"

class QCheckBox;
class QLabel;
class QPushButton;
class QSlider;
class QToolButton;

namespace workbench {

/// The 3D cutting planes while they are on: a slider for each axis, and how many others there are.
class CutPanel : public QDockWidget, public ApplicationObserver {
    Q_OBJECT

  public:
    explicit CutPanel(Application& application);
    ~CutPanel() override;

    /// Planes at right angles to the axes, one for each at most; any other counts as oblique.
    struct Cuts {
        struct AxisCut {
            bool on = false;
            bool flipped = false;  // the side of lower coordinates is cut away
            double position = 0;   // metres
        };
        std::array<AxisCut, 3> axes;
        std::vector<Plane> oblique;

        static Cuts Of(const std::vector<Plane>& planes);
        std::vector<Plane> Planes() const;
    };

    /// A plane to start with, for a model that has none: upright, through the middle, open to the south.
    static std::vector<Plane> FirstPlanes(const Box3& box);

    void ProjectReady(const MeshOutcome&) override { MeasureModel(); }
    void ProjectEdited() override { MeasureModel(); }
    void ViewChanged() override;

  private:
    struct AxisRow {
        QCheckBox* on = nullptr;
        QSlider* slider = nullptr;
        QLabel* position = nullptr;
        QToolButton* flip = nullptr;
    };

    void MeasureModel();
    void Apply();
    double PositionOf(std::size_t axis) const;

    Application& application;
    Say say;
    Box3 range;
    std::array<AxisRow, 3> rows;
    QLabel* obliqueCount;
    QPushButton* removeOblique;
    std::vector<Plane> oblique;
    bool following = false;  // true while the controls are set to the application's state
};

}  // namespace workbench
