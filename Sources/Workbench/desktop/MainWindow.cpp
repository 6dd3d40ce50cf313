#include "Workbench/desktop/MainWindow.hpp"

#include <QApplication>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QProgressBar>
#include <QSortFilterProxyModel>
#include <QStatusBar>
#include <QTreeView>
#include <QVBoxLayout>
#include <algorithm>

#include "Workbench/desktop/ElementModel.hpp"
#include "Workbench/desktop/ScriptValues.hpp"

namespace workbench {

namespace {

const int recentCount = 8;
const char* const recentKey = "recent";

std::vector<API_Guid> GuidsOf(const std::vector<const Element*>& elements) {
    std::vector<API_Guid> guids;
    guids.reserve(elements.size());
    for (const Element* element : elements)
        guids.push_back(element->guid);
    return guids;
}

}  // namespace

MainWindow::MainWindow(Application& application)
    : application(application),
      say{application.GetSettings().language},
      settings(QString::fromStdString((application.GetSettings().dataFolder / "Workbench.ini").string()),
               QSettings::IniFormat),
      view(std::make_shared<View3D>()),
      viewWidget(new ViewWidget(view)),
      elements(new ElementModel(application, this)),
      filtered(new QSortFilterProxyModel(this)),
      elementList(new QTreeView) {
    setWindowTitle("Workbench");
    setContextMenuPolicy(Qt::NoContextMenu);  // Qt's own would hide the palette behind the add-on's back
    setDockNestingEnabled(true);
    setCentralWidget(viewWidget);
    MakeElementDock();
    MakeMenus();
    MakeStatusBar();
    resize(1440, 900);

    connect(viewWidget, &ViewWidget::elementClicked, this, &MainWindow::ClickElement);
    application.Watch(*this);
}

MainWindow::~MainWindow() {
    application.Unwatch(*this);
}

void MainWindow::MakeElementDock() {
    filtered->setSourceModel(elements);
    filtered->setRecursiveFilteringEnabled(true);
    filtered->setFilterCaseSensitivity(Qt::CaseInsensitive);
    filtered->setFilterKeyColumn(-1);

    elementList->setModel(filtered);
    elementList->setSelectionMode(QAbstractItemView::ExtendedSelection);
    elementList->setUniformRowHeights(true);
    elementList->setFrameShape(QFrame::NoFrame);
    elementList->setIndentation(14);
    elementList->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    elementList->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    elementList->header()->setStretchLastSection(false);
    connect(elementList->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &MainWindow::SelectFromList);

    auto* search = new QLineEdit;
    search->setPlaceholderText(say("Search name or class", "Name oder Klasse suchen"));
    search->setClearButtonEnabled(true);
    connect(search, &QLineEdit::textChanged, filtered, &QSortFilterProxyModel::setFilterFixedString);

    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(8, 8, 8, 0);
    layout->addWidget(search);
    layout->addWidget(elementList);

    auto* dock = new QDockWidget(say("Elements", "Elemente"), this);
    dock->setObjectName("elements");
    dock->setFeatures(QDockWidget::DockWidgetMovable);
    dock->setWidget(content);
    addDockWidget(Qt::LeftDockWidgetArea, dock);
    resizeDocks({dock}, {320}, Qt::Horizontal);
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

    QMenu* viewMenu = menuBar()->addMenu(say("&View", "A&nsicht"));
    viewMenu->addAction(say("&Fit in Window", "Alles &einpassen"), QKeySequence("Ctrl+0"), this,
                        [this] { viewWidget->Fit(); });
    viewMenu->addAction(say("&Reset View", "Ansicht &zurücksetzen"), this,
                        [this] { viewWidget->ResetCamera(); });
    viewMenu->addSeparator();
    viewMenu->addAction(say("Show &Selection Only", "Nur &Auswahl zeigen"), this,
                        [this] { application.ShowOnly(GuidsOf(application.Selection())); });
    viewMenu->addAction(say("&Hide Selection", "Auswahl aus&blenden"), this,
                        [this] { application.SetShown(application.Selection(), false); });
    viewMenu->addAction(say("Show &All", "A&lles zeigen"), this, [this] { application.ShowAll(); });
}

void MainWindow::MakeStatusBar() {
    summary = new QLabel(say("No model open", "Kein Modell geöffnet"));
    progress = new QProgressBar;
    progress->setRange(0, 1000);
    progress->setMaximumWidth(320);
    progress->hide();
    statusBar()->addWidget(summary);
    statusBar()->addPermanentWidget(progress);
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
    const Project& project = application.OpenProject();
    const QString suggestion =
        settings.value("folder").toString() + "/" + QString::fromStdString(project.Name());
    QString file =
        QFileDialog::getSaveFileName(this, say("Save as IFC", "Als IFC sichern"), suggestion + ".ifc",
                                     say("IFC models (*.ifc)", "IFC-Modelle (*.ifc)"));
    if (file.isEmpty()) return;
    if (QFileInfo(file).suffix().isEmpty()) file += ".ifc";
    if (application.Save(file.toStdString())) {
        ShowSummary();
        statusBar()->showMessage(QString(say("Saved %1", "%1 gesichert")).arg(file), 8000);
    }
}

void MainWindow::ProjectReplaced() {
    const QString file = QString::fromStdString(application.OpenProject().Location().string());
    QStringList recent = settings.value(recentKey).toStringList();
    recent.removeAll(QFileInfo(file).absoluteFilePath());
    recent.prepend(QFileInfo(file).absoluteFilePath());
    settings.setValue(recentKey, recent.mid(0, recentCount));
    settings.setValue("folder", QFileInfo(file).absolutePath());
    FillRecent();

    setWindowTitle(QString::fromStdString(application.OpenProject().Name()) + " - Workbench");
    view->Clear();
    view->ShowOnly(std::nullopt);
    view->Select({});
    viewWidget->Refresh();
    viewWidget->SetHint(say("Reading the shapes...", "Formen werden gelesen..."));
    elements->Reload();
    elementList->expandAll();
    ShowProgress(say("Shapes", "Formen"), 0);
}

void MainWindow::ShapesArrived(const MeshBatch& batch) {
    const bool first = view->Count() == 0;
    view->Add(batch.elements);
    if (first) viewWidget->ResetCamera();
    viewWidget->Refresh();
    const double total = batch.total == 0 ? 1 : static_cast<double>(batch.total);
    ShowProgress(say("Shapes", "Formen"), static_cast<double>(batch.done) / total);
}

void MainWindow::ProjectReady(const MeshOutcome& outcome) {
    viewWidget->ResetCamera();
    viewWidget->SetHint(HintAfter(outcome));
    if (!outcome.detail.empty()) qWarning("mesher: %s", outcome.detail.c_str());
    elements->RefreshTicks();
    ShowSummary();
}

QString MainWindow::HintAfter(const MeshOutcome& outcome) const {
    if (const std::string error = view->Error(); !error.empty()) {
        return say("3D pictures cannot be drawn here: ", "3D-Bilder können hier nicht gezeichnet werden: ") +
               QString::fromStdString(error);
    }
    if (outcome.status == MeshOutcome::Status::Done) return {};
    return say("The shapes of this model could not be read.",
               "Die Formen dieses Modells konnten nicht gelesen werden.");
}

void MainWindow::ShowProgress(const QString& text, double fraction) {
    summary->setText(text);
    progress->setValue(static_cast<int>(fraction * 1000));
    progress->show();
}

void MainWindow::ShowSummary() {
    progress->hide();
    const Project& project = application.OpenProject();
    summary->setText(QString(say("%1 elements, %2 shown, %3 selected   %4   %5",
                                 "%1 Elemente, %2 sichtbar, %3 ausgewählt   %4   %5"))
                         .arg(project.Elements().size())
                         .arg(application.ShownCount())
                         .arg(application.Selection().size())
                         .arg(QString::fromStdString(project.Schema()),
                              QString::fromStdString(project.AuthoringApplication())));
}

bool MainWindow::Working(const std::string& what, double fraction) {
    // Painted at once and without running the event loop: nothing else may happen in the middle of a save.
    if (working.isValid() && working.elapsed() < 50) return true;
    working.start();
    ShowProgress(QString::fromStdString(what), fraction);
    statusBar()->repaint();
    return true;
}

void MainWindow::ClickElement(quint64 record, Qt::KeyboardModifiers modifiers) {
    std::vector<API_Guid> chosen;
    if (modifiers.testFlag(Qt::ShiftModifier)) chosen = GuidsOf(application.Selection());
    if (const Element* element = application.OpenProject().FindByRecord(record)) {
        const auto found = std::find(chosen.begin(), chosen.end(), element->guid);
        if (found == chosen.end()) {
            chosen.push_back(element->guid);
        } else {
            chosen.erase(found);
        }
    }
    application.Select(chosen);
}

void MainWindow::SelectFromList() {
    if (!listFollows) return;
    std::vector<API_Guid> chosen;
    for (const QModelIndex& row : elementList->selectionModel()->selectedRows()) {
        if (const Element* element = elements->ElementAt(filtered->mapToSource(row)))
            chosen.push_back(element->guid);
    }
    listFollows = false;
    application.Select(chosen);
    listFollows = true;
}

void MainWindow::SelectionChanged() {
    std::unordered_set<std::uint64_t> records;
    for (const Element* element : application.Selection())
        records.insert(element->record);
    view->Select(std::move(records));
    viewWidget->Refresh();
    ShowSummary();
    if (!listFollows) return;

    QItemSelection rows;
    for (const Element* element : application.Selection()) {
        const QModelIndex row = filtered->mapFromSource(elements->IndexOf(*element));
        if (row.isValid()) rows.select(row, row);
    }
    listFollows = false;
    elementList->selectionModel()->select(rows,
                                          QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    if (!rows.isEmpty()) elementList->scrollTo(rows.first().topLeft());
    listFollows = true;
}

void MainWindow::VisibilityChanged() {
    std::unordered_set<std::uint64_t> shown;
    for (const Element& element : application.OpenProject().Elements()) {
        if (application.IsShown(element)) shown.insert(element.record);
    }
    view->ShowOnly(std::move(shown));
    viewWidget->Refresh();
    elements->RefreshTicks();
    ShowSummary();
}

}  // namespace workbench
