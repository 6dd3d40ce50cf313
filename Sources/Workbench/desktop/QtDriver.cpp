#include "Workbench/desktop/QtDriver.hpp"

#include <QCloseEvent>
#include <QFileDialog>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QWebEngineView>

#include "Workbench/desktop/ScriptValues.hpp"

namespace workbench {

PaletteDock::PaletteDock(const hostkit::DialogResource& resource, hostkit::dg::PaletteEvents& events,
                         QMainWindow& window)
    : QDockWidget(ToQString(resource.title), &window),
      events(events),
      panel(new QWidget),
      told(resource.rect.width, resource.rect.height) {
    setObjectName("palette");
    setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
    panel->setMinimumSize(320, 240);
    panel->resize(told);
    panel->installEventFilter(this);
    setWidget(panel);
    hide();
    window.addDockWidget(Qt::RightDockWidgetArea, this);
    window.resizeDocks({this}, {resource.rect.width}, Qt::Horizontal);
}

void PaletteDock::closeEvent(QCloseEvent* event) {
    event->ignore();  // the add-on hides the palette itself when it accepts
    events.UserRequestedClose();
}

bool PaletteDock::eventFilter(QObject* watched, QEvent* event) {
    if (watched == panel && event->type() == QEvent::Resize) {
        const QSize change = panel->size() - told;
        told = panel->size();
        if (!change.isNull()) {
            events.UserResized(static_cast<short>(change.width()), static_cast<short>(change.height()));
        }
    }
    return QDockWidget::eventFilter(watched, event);
}

/// The add-on's side of a PaletteDock.
class QtPalette : public hostkit::dg::PalettePeer {
  public:
    QtPalette(QtDriver& driver, const hostkit::DialogResource& resource, hostkit::dg::PaletteEvents& events)
        : driver(driver), resource(resource), dock(new PaletteDock(resource, events, *driver.window)) {
        driver.dock = dock;
    }
    ~QtPalette() override { delete dock; }

    void Show() override {
        dock->show();
        dock->raise();
    }
    void Hide() override { dock->hide(); }
    bool IsVisible() const override { return dock != nullptr && !dock->isHidden(); }
    void SetItemsEnabled(bool enabled) override { dock->Panel()->setEnabled(enabled); }

    std::unique_ptr<hostkit::dg::BrowserPeer> CreateBrowser(short item) override {
        const auto index = static_cast<std::size_t>(item - 1);
        if (index >= resource.items.size() || resource.items[index].kind != "Browser") return nullptr;
        const hostkit::DialogRect& place = resource.items[index].rect;
        auto browser = std::make_unique<WebBrowser>(dock->Panel(), driver.queue, driver.browserOptions);
        browser->View()->setGeometry(place.x, place.y, place.width, place.height);
        driver.browser = browser.get();
        return browser;
    }

  private:
    QtDriver& driver;
    hostkit::DialogResource resource;
    QPointer<PaletteDock> dock;
};

std::unique_ptr<hostkit::dg::PalettePeer> QtDriver::CreatePalette(const hostkit::DialogResource& resource,
                                                                  hostkit::dg::PaletteEvents& events) {
    return std::make_unique<QtPalette>(*this, resource, events);
}

std::unique_ptr<hostkit::dg::DialogPeer> QtDriver::CreateDialog(const hostkit::DialogResource& resource,
                                                                hostkit::dg::DialogEvents& events) {
    return std::make_unique<QtDialog>(resource, events, window, onDialog);
}

hostkit::dg::FileAnswer QtDriver::AskForFile(const hostkit::dg::FileQuestion& question) {
    if (onFile) {
        if (const std::optional<hostkit::dg::FileAnswer> answer = onFile(question)) return *answer;
    }

    QStringList filters;
    for (const auto& [text, extension] : question.filters) {
        const QString pattern = extension.IsEmpty() ? QString("*") : "*." + ToQString(extension);
        filters += (text.IsEmpty() ? pattern : ToQString(text)) + " (" + pattern + ")";
    }
    QFileDialog dialog(window, ToQString(question.title));
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (!filters.isEmpty()) dialog.setNameFilters(filters);
    if (dialog.exec() == 0) return std::nullopt;
    return dialog.selectedFiles().value(0).toStdString();
}

short QtDriver::Alert(const hostkit::dg::AlertTexts& texts) {
    if (onAlert) {
        if (const std::optional<short> answer = onAlert(texts)) return *answer;
    }

    QMessageBox box(QMessageBox::Information, window != nullptr ? window->windowTitle() : QString(),
                    ToQString(texts.large), QMessageBox::NoButton, window);
    box.setInformativeText(ToQString(texts.small));
    std::vector<QPushButton*> buttons;
    for (const GS::UniString& text : texts.buttons) {
        if (text.IsEmpty()) continue;
        buttons.push_back(box.addButton(ToQString(text), QMessageBox::AcceptRole));
    }
    if (!buttons.empty()) {
        box.setDefaultButton(buttons.front());
        box.setEscapeButton(buttons.back());
    }
    box.exec();
    const auto pressed = std::find(buttons.begin(), buttons.end(), box.clickedButton());
    return pressed == buttons.end() ? short{1} : static_cast<short>(pressed - buttons.begin() + 1);
}

}  // namespace workbench
