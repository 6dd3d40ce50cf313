#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <QTimer>
#include <chrono>

#include "Workbench/api/MainQueue.hpp"
#include "Workbench/api/Say.hpp"

class QLabel;
class QProgressBar;
class QPushButton;

namespace workbench {

/// Shows long work of the main thread, which it blocks, with a button to stop it. The windows stay alive
/// meanwhile: they are painted and moved, but nothing else happens in the middle of the work, neither what a
/// person does in another window nor what is posted to the queue.
class ProgressWindow : public QDialog {
    Q_OBJECT

  public:
    /// It comes up once the work has lasted longer than the person's patience.
    ProgressWindow(QWidget* parent, MainQueue& queue, Language language,
                   std::chrono::milliseconds patience = std::chrono::milliseconds(400));

    /// To be called often by the work: how far it is, from 0 to 1, below 0 when nobody knows; 1 ends it.
    /// False once the person wants it to stop.
    bool Working(const QString& what, double fraction);

    /// The button, the Escape key or the close box.
    void reject() override;

  private:
    void Begin();
    void End();
    void Show(const QString& what, double fraction);
    void DispatchEvents();

    MainQueue& queue;
    const Say say;
    const std::chrono::milliseconds patience;
    QLabel* label;
    QProgressBar* bar;
    QPushButton* cancel;
    QElapsedTimer begun;  // invalid while there is no work
    QElapsedTimer dispatched;
    QTimer watchdog;
    bool dispatching = false;
    bool cancelled = false;
};

}  // namespace workbench
