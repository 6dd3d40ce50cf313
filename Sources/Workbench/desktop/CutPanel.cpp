#include "Workbench/desktop/CutPanel.hpp"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QSlider>
#include <QToolButton>
#include <cmath>
#include <utility>

namespace workbench {

namespace {

constexpr int steps = 1000;
constexpr double straight = 1 - 1e-12;  // a plane that was turned there and back is not quite at right angles
constexpr std::array<const char*, 3> axisNames{"X", "Y", "Z"};

double Along(const Vec3& v, std::size_t axis) {
    return std::array{v.x, v.y, v.z}.at(axis);
}

Vec3 Direction(std::size_t axis, double length) {
    std::array<double, 3> v{};
    v.at(axis) = length;
    return {v[0], v[1], v[2]};
}

}  // namespace

CutPanel::Cuts CutPanel::Cuts::Of(const std::vector<Plane>& planes) {
    Cuts cuts;
    for (const Plane& plane : planes) {
        std::size_t axis = 0;
        while (axis < 3 && std::abs(Along(plane.normal, axis)) < straight)
            ++axis;
        if (axis == 3 || cuts.axes.at(axis).on) {
            cuts.oblique.push_back(plane);
        } else {
            const double sign = std::copysign(1.0, Along(plane.normal, axis));
            cuts.axes.at(axis) = {true, sign < 0, plane.distance * sign};
        }
    }
    return cuts;
}

std::vector<Plane> CutPanel::Cuts::Planes() const {
    std::vector<Plane> planes;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const AxisCut& cut = axes.at(axis);
        const double sign = cut.flipped ? -1 : 1;
        if (cut.on) planes.push_back({Direction(axis, sign), cut.position * sign});
    }
    // The first plane across an axis is the slider's: one of the others must not take its place.
    planes.insert(planes.end(), oblique.begin(), oblique.end());
    return planes;
}

std::vector<Plane> CutPanel::FirstPlanes(const Box3& box) {
    if (box.Empty()) return {};
    return {{{0, -1, 0}, -box.Center().y}};
}

CutPanel::CutPanel(Application& application)
    : QDockWidget(Say{application.GetSettings().language}("Cutting Planes", "Schnittebenen")),
      application(application),
      say{application.GetSettings().language},
      obliqueCount(new QLabel),
      removeOblique(new QPushButton(say("Remove", "Entfernen"))) {
    setObjectName("cutting-planes");
    setFeatures(QDockWidget::DockWidgetMovable);
    auto* content = new QWidget;
    auto* layout = new QGridLayout(content);
    layout->setColumnStretch(1, 1);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        AxisRow& row = rows.at(axis);
        const int line = static_cast<int>(axis);
        row.on = new QCheckBox(axisNames.at(axis));
        row.slider = new QSlider(Qt::Horizontal);
        row.slider->setRange(0, steps);
        row.slider->setValue(steps / 2);
        row.slider->setAccessibleName(axisNames.at(axis));
        row.position = new QLabel;
        row.position->setMinimumWidth(row.position->fontMetrics().horizontalAdvance("-0,000,000.00 m"));
        row.position->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        row.flip = new QToolButton;
        row.flip->setText(say("Other side", "Andere Seite"));
        row.flip->setCheckable(true);
        layout->addWidget(row.on, line, 0);
        layout->addWidget(row.slider, line, 1);
        layout->addWidget(row.position, line, 2);
        layout->addWidget(row.flip, line, 3);
        connect(row.on, &QCheckBox::toggled, this, &CutPanel::Apply);
        connect(row.slider, &QSlider::valueChanged, this, &CutPanel::Apply);
        connect(row.flip, &QToolButton::toggled, this, &CutPanel::Apply);
    }
    layout->addWidget(obliqueCount, 3, 0, 1, 3);
    layout->addWidget(removeOblique, 3, 3);
    setWidget(content);
    connect(removeOblique, &QPushButton::clicked, this, [this] {
        oblique.clear();
        Apply();
    });
    application.Watch(*this);
    ViewChanged();
}

CutPanel::~CutPanel() {
    application.Unwatch(*this);
}

void CutPanel::MeasureModel() {
    range = application.ShownBox();
    ViewChanged();
}

void CutPanel::ViewChanged() {
    const bool wasFollowing = std::exchange(following, true);
    const ModelWindow& window = application.Window3D();
    setVisible(window.IsCutting());
    Cuts cuts = Cuts::Of(window.Planes());
    const QLocale locale(application.GetSettings().language == Language::german ? QLocale::German
                                                                                : QLocale::English);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const Cuts::AxisCut& cut = cuts.axes.at(axis);
        AxisRow& row = rows.at(axis);
        const double low = Along(range.min, axis);
        const double high = Along(range.max, axis);
        row.on->setChecked(cut.on);
        row.slider->setEnabled(cut.on && !range.Empty());
        row.flip->setEnabled(cut.on);
        row.position->setText(cut.on ? locale.toString(cut.position, 'f', 2) + " m" : QString());
        if (!cut.on || range.Empty()) continue;
        row.flip->setChecked(cut.flipped);
        // The slider only follows what it did not set itself: its steps are coarser than the position.
        if (std::abs(PositionOf(axis) - cut.position) > (high - low) / steps)
            row.slider->setValue(static_cast<int>(std::lround((cut.position - low) / (high - low) * steps)));
    }
    oblique = std::move(cuts.oblique);
    obliqueCount->setText(QString(say("Other planes: %1", "Weitere Ebenen: %1")).arg(oblique.size()));
    obliqueCount->setVisible(!oblique.empty());
    removeOblique->setVisible(!oblique.empty());
    following = wasFollowing;
}

double CutPanel::PositionOf(std::size_t axis) const {
    const double low = Along(range.min, axis);
    return low + (Along(range.max, axis) - low) * rows.at(axis).slider->value() / steps;
}

void CutPanel::Apply() {
    if (following) return;
    Cuts cuts = Cuts::Of(application.Window3D().Planes());
    cuts.oblique = oblique;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        Cuts::AxisCut& cut = cuts.axes.at(axis);
        const bool moved = sender() == rows.at(axis).slider || sender() == rows.at(axis).on;
        cut.on = rows.at(axis).on->isChecked() && !range.Empty();
        cut.flipped = rows.at(axis).flip->isChecked();
        if (moved) cut.position = PositionOf(axis);
    }
    application.ChangeView([&](ModelWindow& window) { window.SetPlanes(cuts.Planes()); });
}

}  // namespace workbench
