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
#include <utility>

#include "Workbench/desktop/CutPanel.hpp"
#include "Workbench/desktop/ElementModel.hpp"
#include "Workbench/desktop/ScriptValues.hpp"
#include "Workbench/desktop/ViewMenu.hpp"

namespace workbench {

namespace {

const int recentCount = 8;
const char* const recentKey = "recent";

}  // namespace

MainWindow::MainWindow(Application& application)
    : application(application),
      say{application.GetSettings().language},
      settings(QString::fromStdString((application.GetSettings().dataFolder / "Workbench.ini").string()),
               QSettings::IniFormat),
      area(new CentralArea(application)),
      elements(new ElementModel(application, this)),
      filtered(new QSortFilterProxyModel(this)),
      elementList(new QTreeView) {
    setWindowTitle("Workbench");
    setContextMenuPolicy(Qt::NoContextMenu);  // Qt's own would hide the palette behind the add-on's back
    setDockNestingEnabled(true);
    setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
    setCentralWidget(area);
    MakeElementDock();
    addDockWidget(Qt::BottomDockWidgetArea, new CutPanel(application));
    MakeMenus();
    MakeStatusBar();
    resize(1440, 900);

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
    connect(search, &QLineEdit::textChanged, this, [this](const QString& text) {
        listFollows = false;  // what the filter takes from the list stays selected
        filtered->setFilterFixedString(text);
        listFollows = true;
        SelectionChanged();
    });

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

    new ViewMenu(menuBar()->addMenu(say("&View", "A&nsicht")), application, *area);
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
    elements->Reload();
    elementList->expandAll();
    ShowProgress(say("Shapes", "Formen"), 0);
}

void MainWindow::ShapesArrived(const MeshBatch& batch) {
    const double total = batch.total == 0 ? 1 : static_cast<double>(batch.total);
    ShowProgress(say("Shapes", "Formen"), static_cast<double>(batch.done) / total);
}

void MainWindow::ProjectReady(const MeshOutcome& outcome) {
    if (!outcome.detail.empty()) qWarning("mesher: %s", outcome.detail.c_str());
    elements->RefreshTicks();
    ShowSummary();
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
    ShowSummary();
    if (!listFollows) return;

    const QItemSelection rows = RowsOfSelection();
    listFollows = false;
    elementList->selectionModel()->select(rows,
                                          QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    if (!rows.isEmpty()) elementList->scrollTo(rows.first().topLeft());
    listFollows = true;
}

// Neighbours in one range each, and only so many of them: Qt compares every range with every other.
QItemSelection MainWindow::RowsOfSelection() const {
    constexpr qsizetype mostRanges = 1000;
    std::vector<QModelIndex> indices;
    for (const Element* element : application.Selection()) {
        const QModelIndex index = filtered->mapFromSource(elements->IndexOf(*element));
        if (index.isValid()) indices.push_back(index);
    }
    std::sort(indices.begin(), indices.end(), [](const QModelIndex& a, const QModelIndex& b) {
        return std::pair(a.parent().row(), a.row()) < std::pair(b.parent().row(), b.row());
    });

    QItemSelection rows;
    for (auto first = indices.begin(); first != indices.end() && rows.size() < mostRanges;) {
        auto last = first;
        while (last + 1 != indices.end() && (last + 1)->parent() == first->parent() &&
               (last + 1)->row() == last->row() + 1)
            ++last;
        rows.select(*first, *last);
        first = last + 1;
    }
    return rows;
}

void MainWindow::VisibilityChanged() {
    elements->RefreshTicks();
    ShowSummary();
}

}  // namespace workbench
