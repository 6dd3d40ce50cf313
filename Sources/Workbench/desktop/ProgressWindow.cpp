#include "Workbench/desktop/ProgressWindow.hpp"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace workbench {

namespace {

constexpr int dispatchMilliseconds = 50;  // between two looks at the events
constexpr int steps = 1000;

}  // namespace

ProgressWindow::ProgressWindow(QWidget* parent, MainQueue& queue, Language language,
                               std::chrono::milliseconds patience)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      queue(queue),
      say{language},
      patience(patience),
      label(new QLabel),
      bar(new QProgressBar),
      cancel(new QPushButton(say("Cancel", "Abbrechen"))) {
    setWindowTitle("Workbench");
    setWindowModality(Qt::ApplicationModal);
    bar->setTextVisible(false);
    bar->setFixedHeight(8);
    cancel->setAutoDefault(false);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 18, 20, 14);
    layout->setSpacing(12);
    layout->addWidget(label);
    layout->addWidget(bar);
    layout->addLayout(buttons);
    setFixedWidth(400);
    connect(cancel, &QPushButton::clicked, this, &ProgressWindow::reject);

    // The work dispatches events only in here. When the timer comes from elsewhere, the work is over though
    // nobody said so, or it waits in a dialog.
    watchdog.setInterval(2 * dispatchMilliseconds);
    connect(&watchdog, &QTimer::timeout, this, [this] {
        if (!dispatching) End();
    });
}

bool ProgressWindow::Working(const QString& what, double fraction) {
    if (dispatching) return true;
    if (fraction >= 1) {
        End();
        return true;
    }
    if (!begun.isValid()) Begin();
    if (!dispatched.hasExpired(dispatchMilliseconds)) return !cancelled;
    Show(what, fraction);
    DispatchEvents();
    dispatched.start();
    return !cancelled;
}

void ProgressWindow::Begin() {
    begun.start();
    dispatched.start();
    watchdog.start();
    cancelled = false;
    cancel->setEnabled(true);
}

void ProgressWindow::End() {
    begun.invalidate();
    watchdog.stop();
    hide();
}

void ProgressWindow::Show(const QString& what, double fraction) {
    label->setText(cancelled ? QString(say("Stopping...", "Wird abgebrochen...")) : what);
    bar->setRange(0, fraction < 0 ? 0 : steps);
    bar->setValue(static_cast<int>(fraction * steps));
    if (!isVisible() && begun.hasExpired(patience.count())) show();
}

// Clicks and keys wait until this window is there to block them for the others.
void ProgressWindow::DispatchEvents() {
    const MainQueue::Hold hold(queue);
    dispatching = true;
    QApplication::processEvents(isVisible() ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents);
    dispatching = false;
}

void ProgressWindow::reject() {
    cancelled = true;
    cancel->setEnabled(false);
}

}  // namespace workbench
