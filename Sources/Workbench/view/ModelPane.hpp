#pragma once

#include <QPainter>
#include <QPointF>
#include <QString>
#include <QWidget>
#include <cstdint>

namespace workbench {

// A picture of the model that a hand moves: left click selects, what drags do is the picture's, the wheel
// zooms to the pointer, F or a double click with the middle button fits. Points are in the widget's units.
class ModelPane : public QWidget {
    Q_OBJECT

  public:
    explicit ModelPane(QWidget* parent);

    // Shows everything.
    virtual void Fit() = 0;

    // A short text at the picture's lower edge, for instance while shapes still load. Empty: none.
    void SetHint(const QString& text);

    QSize sizeHint() const override { return {960, 640}; }

  signals:
    // A click on an element, or on nothing (record 0).
    void elementClicked(quint64 record, Qt::KeyboardModifiers modifiers);

  protected:
    virtual void BeginDrag(QPointF /*position*/) {}
    virtual void Drag(QPointF delta, Qt::MouseButtons buttons) = 0;
    // What lies at `position` stays there; below 1 makes the picture larger.
    virtual void ZoomAt(QPointF position, double factor) = 0;
    // 0 for nothing.
    virtual std::uint64_t RecordAt(QPointF position) const = 0;

    void PaintHint(QPainter& painter) const;

    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QString hint;
    QPointF pressed;
    QPointF last;
    bool dragging = false;
};

}  // namespace workbench
