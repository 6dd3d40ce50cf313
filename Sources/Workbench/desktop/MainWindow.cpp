#include "Workbench/desktop/MainWindow.hpp"

#include <QCloseEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QProgressBar>
#include <QStatusBar>
#include <algorithm>

#include "Workbench/desktop/CutPanel.hpp"
#include "Workbench/desktop/EditMenu.hpp"
#include "Workbench/desktop/ElementDock.hpp"
#include "Workbench/desktop/NavigatorDock.hpp"
#include "Workbench/desktop/ScriptValues.hpp"
#include "Workbench/desktop/ViewMenu.hpp"

namespace workbench {

namespace {

const int recentCount = 8;
const char* const recentKey = "recent";

bool IsBelow(const std::filesystem::path& folder, const std::filesystem::path& file) {
    std::error_code ignored;
    const auto from = std::filesystem::weakly_canonical(folder, ignored);
    const auto to = std::filesystem::weakly_canonical(file, ignored);
    return std::mismatch(from.begin(), from.end(), to.begin(), to.end()).first == from.end();
}

}  // namespace

MainWindow::MainWindow(Application& application, MainQueue& queue)
    : application(application),
      say{application.GetSettings().language},
      settings(QString::fromStdString((application.GetSettings().dataFolder / "Workbench.ini").string()),
               QSettings::IniFormat),
      area(new CentralArea(application)),
      progress(new ProgressWindow(this, queue, application.GetSettings().language)) {
    setWindowTitle("Workbench");
    setContextMenuPolicy(Qt::NoContextMenu);  // Qt's own would hide the palette behind the add-on's back
    setDockNestingEnabled(true);
    setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
    setCentralWidget(area);
    auto* elements = new ElementDock(application);
    addDockWidget(Qt::LeftDockWidgetArea, elements);
    resizeDocks({elements}, {320}, Qt::Horizontal);
    AddNavigator(*elements);
    addDockWidget(Qt::BottomDockWidgetArea, new CutPanel(application));
    MakeMenus();
    MakeStatusBar();
    resize(1440, 900);

    application.Watch(*this);
}

MainWindow::~MainWindow() {
    application.Unwatch(*this);
}

void MainWindow::AddNavigator(QDockWidget& elements) {
    setTabPosition(Qt::LeftDockWidgetArea, QTabWidget::North);
    auto* navigator = new NavigatorDock(application);
    addDockWidget(Qt::LeftDockWidgetArea, navigator);
    tabifyDockWidget(&elements, navigator);
    for (QDockWidget* dock : {&elements, static_cast<QDockWidget*>(navigator)})
        dock->setTitleBarWidget(new QWidget(dock));  // the tab says it already
    elements.raise();
    connect(navigator, &NavigatorDock::published, this,
            [this](const QString& summary) { statusBar()->showMessage(summary, 8000); });
}

void MainWindow::MakeMenus() {
    QMenu* file = menuBar()->addMenu(say("&File", "&Ablage"));
    file->addAction(say("&Open...", "Ö&ffnen..."), QKeySequence::Open, this, &MainWindow::OpenByDialog);
    recentMenu = file->addMenu(say("Open &Recent", "&Zuletzt geöffnet"));
    file->addAction(say("&Save as IFC...", "Als IFC &sichern..."), QKeySequence::Save, this,
                    &MainWindow::SaveByDialog);
    file->addSeparator();
    file->addAction(say("&Quit", "&Beenden"), QKeySequence::Quit, this, &QWidget::close);
    FillRecent();

    new EditMenu(menuBar()->addMenu(say("&Edit", "&Bearbeiten")), application);
    new ViewMenu(menuBar()->addMenu(say("&View", "A&nsicht")), application, *area);
}

void MainWindow::MakeStatusBar() {
    summary = new QLabel(say("No model open", "Kein Modell geöffnet"));
    shapes = new QProgressBar;
    shapes->setRange(0, 1000);
    shapes->setFixedSize(240, 8);
    shapes->setTextVisible(false);
    shaping = new QWidget;
    auto* layout = new QHBoxLayout(shaping);
    layout->setContentsMargins(0, 0, 8, 0);
    layout->addWidget(new QLabel(say("Shapes", "Formen")));
    layout->addWidget(shapes);
    shaping->hide();
    statusBar()->addWidget(summary);
    statusBar()->addPermanentWidget(shaping);
}

void MainWindow::AddAddOnMenus() {
    const hostkit::Resources& resources = application.GetSession().GetResources();
    for (const auto& menu : application.GetSession().GetRegistry().Menus()) {
        // A resource of several strings is a submenu's title and its commands, one of a single string a
        // command.
        const bool isSubmenu = resources.StringCount(menu.strings) > 1;
        QMenu* target = menuBar()->addMenu(isSubmenu ? ToQString(resources.String(menu.strings, 1))
                                                     : QString(say("&Options", "&Optionen")));
        for (Int32 item = 1; item <= static_cast<Int32>(menu.itemFlags.size()); ++item) {
            const QString text = ToQString(resources.String(menu.strings, isSubmenu ? item + 1 : item));
            QAction* action = target->addAction(text);
            action->setCheckable(true);
            action->setProperty("menu", menu.strings);
            action->setProperty("item", item);
            connect(action, &QAction::triggered, this, [this, strings = menu.strings, item] {
                MenuFlagsChanged();  // the mark is the add-on's to set, not the click's
                application.GetSession().GetRegistry().ChooseMenuItem(strings, item);
            });
        }
    }
    MenuFlagsChanged();
}

void MainWindow::MenuFlagsChanged() {
    for (const auto& menu : application.GetSession().GetRegistry().Menus()) {
        for (QAction* action : findChildren<QAction*>()) {
            if (!action->property("item").isValid() || action->property("menu").toInt() != menu.strings)
                continue;
            const GSFlags flags = menu.itemFlags.at(action->property("item").toUInt() - 1);
            action->setChecked((flags & API_MenuItemChecked) != 0);
            action->setEnabled((flags & API_MenuItemDisabled) == 0);
        }
    }
}

void MainWindow::FillRecent() {
    recentMenu->clear();
    const QStringList files = settings.value(recentKey).toStringList();
    for (const QString& file : files) {
        recentMenu
            ->addAction(QFileInfo(file).fileName(), this,
                        [this, file] { application.Open(file.toStdString()); })
            ->setToolTip(file);
    }
    recentMenu->setToolTipsVisible(true);
    recentMenu->setEnabled(!files.isEmpty());
}

void MainWindow::OpenByDialog() {
    const QString file = QFileDialog::getOpenFileName(
        this, say("Open a Model", "Modell öffnen"), settings.value("folder").toString(),
        say("IFC models (*.ifc *.ifczip *.IFC);;All files (*)",
            "IFC-Modelle (*.ifc *.ifczip *.IFC);;Alle Dateien (*)"));
    if (!file.isEmpty()) application.Open(file.toStdString());
}

void MainWindow::SaveByDialog() {
    const auto file = AskForFile(application.OpenProject().Name() + ".ifc");
    if (!file || !application.Save(*file)) return;
    statusBar()->showMessage(
        QString(say("Saved %1", "%1 gesichert")).arg(QString::fromStdString(file->string())), 8000);
}

std::optional<std::filesystem::path> MainWindow::AskForFile(const std::filesystem::path& suggestion) {
    const std::filesystem::path folder = settings.value("folder").toString().toStdString();
    QString file =
        QFileDialog::getSaveFileName(this, say("Save as IFC", "Als IFC sichern"),
                                     QString::fromStdString((folder / suggestion.filename()).string()),
                                     say("IFC models (*.ifc)", "IFC-Modelle (*.ifc)"));
    if (file.isEmpty()) return std::nullopt;
    if (QFileInfo(file).suffix().isEmpty()) file += ".ifc";
    return file.toStdString();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    event->setAccepted(application.MayLeaveProject());
}

// Only what the person opened: the add-on keeps its own files in the data folder.
void MainWindow::NoteRecent() {
    const std::filesystem::path& location = application.OpenProject().Location();
    if (location.empty() || IsBelow(application.GetSettings().dataFolder, location)) return;
    const QFileInfo file(QString::fromStdString(location.string()));
    QStringList recent = settings.value(recentKey).toStringList();
    recent.removeAll(file.absoluteFilePath());
    recent.prepend(file.absoluteFilePath());
    settings.setValue(recentKey, recent.mid(0, recentCount));
    settings.setValue("folder", file.absolutePath());
    FillRecent();
}

void MainWindow::ProjectReplaced() {
    NoteRecent();
    setWindowTitle(QString::fromStdString(application.OpenProject().Name()) + "[*] - Workbench");
    HistoryChanged();
    ShowShaping(0);
    ShowSummary();
}

void MainWindow::ShapesArrived(const MeshBatch& batch) {
    ShowShaping(static_cast<double>(batch.done) / std::max(1.0, static_cast<double>(batch.total)));
}

void MainWindow::ProjectReady(const MeshOutcome& outcome) {
    if (!outcome.detail.empty()) qWarning("mesher: %s", outcome.detail.c_str());
    shaping->hide();
    ShowSummary();
}

void MainWindow::ProjectEdited() {
    if (!application.IsShaping()) shaping->hide();
    ShowSummary();
}

void MainWindow::HistoryChanged() {
    setWindowModified(application.IsModified());
}

void MainWindow::ShowShaping(double fraction) {
    shapes->setValue(static_cast<int>(fraction * shapes->maximum()));
    shaping->show();
}

void MainWindow::ShowSummary() {
    const Project& project = application.OpenProject();
    summary->setText(QString(say("%1 elements, %2 shown, %3 selected   %4   %5",
                                 "%1 Elemente, %2 sichtbar, %3 ausgewählt   %4   %5"))
                         .arg(project.Elements().size())
                         .arg(application.ShownCount())
                         .arg(application.Selection().size())
                         .arg(QString::fromStdString(project.Schema()),
                              QString::fromStdString(project.AuthoringApplication())));
}

void MainWindow::PropertiesMapped(const MappingCounts& counts) {
    QString message =
        QString(say("Property mapping: %1 values written", "Eigenschaftszuordnung: %1 Werte geschrieben"))
            .arg(counts.written);
    if (counts.leftOut > 0)
        message +=
            QString(say(", %1 left out: they do not fit the data type or kind of property",
                        ", %1 ausgelassen: sie passen nicht zum Datentyp oder zur Art der Eigenschaft"))
                .arg(counts.leftOut);
    statusBar()->showMessage(message, 8000);
}

bool MainWindow::Working(const std::string& what, double fraction) {
    return progress->Working(QString::fromStdString(what), fraction);
}

}  // namespace workbench
