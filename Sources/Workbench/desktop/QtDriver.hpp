#pragma once

#include <QDockWidget>
#include <deque>
#include <functional>
#include <optional>

#include "HostKit/DG/Driver.hpp"
#include "Workbench/desktop/QtDialog.hpp"
#include "Workbench/desktop/WebBrowser.hpp"

class QMainWindow;

namespace workbench {

/// A palette of the add-on as a dock of the main window. Its close box asks the add-on, its size is told to
/// it.
class PaletteDock : public QDockWidget {
    Q_OBJECT

  public:
    PaletteDock(const hostkit::DialogResource& resource, hostkit::dg::PaletteEvents& events,
                QMainWindow& window);

    QWidget* Panel() const { return panel; }

  protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    hostkit::dg::PaletteEvents& events;
    QWidget* panel;
    QSize told;  // the panel's size as the add-on knows it
};

/// The host's dialog library on Qt and Chromium.
class QtDriver : public hostkit::dg::Driver {
  public:
    /// Called for each alert before it is shown; the number of the button to press (from 1), or nothing to
    /// ask the person.
    using OnAlert = std::function<std::optional<short>(const hostkit::dg::AlertTexts&)>;

    explicit QtDriver(MainQueue& queue) : queue(queue) {}

    /// Palettes dock here. To be set before the add-on is loaded.
    void SetWindow(QMainWindow* newWindow) { window = newWindow; }
    void SetOnAlert(OnAlert function) { onAlert = std::move(function); }
    /// The same for modal dialogs.
    void SetOnDialog(QtDialog::OnDialog function) { onDialog = std::move(function); }
    /// Called before a file is asked for; what was chosen, if anything, or no answer to ask the person.
    using OnFile = std::function<std::optional<hostkit::dg::FileAnswer>(const hostkit::dg::FileQuestion&)>;
    void SetOnFile(OnFile function) { onFile = std::move(function); }
    BrowserOptions& Browsers() { return browserOptions; }

    /// The palette's dock and its browser; null before the add-on has made them.
    PaletteDock* Dock() const { return dock; }
    WebBrowser* Browser() const { return browser; }

    short Alert(const hostkit::dg::AlertTexts& texts) override;
    std::unique_ptr<hostkit::dg::DialogPeer> CreateDialog(const hostkit::DialogResource& resource,
                                                          hostkit::dg::DialogEvents& events) override;
    hostkit::dg::FileAnswer AskForFile(const hostkit::dg::FileQuestion& question) override;
    std::unique_ptr<hostkit::dg::PalettePeer> CreatePalette(const hostkit::DialogResource& resource,
                                                            hostkit::dg::PaletteEvents& events) override;

  private:
    friend class QtPalette;

    MainQueue& queue;
    QMainWindow* window = nullptr;
    OnAlert onAlert;
    QtDialog::OnDialog onDialog;
    OnFile onFile;
    BrowserOptions browserOptions;
    QPointer<PaletteDock> dock;
    WebBrowser* browser = nullptr;
};

}  // namespace workbench
