#include "Workbench/desktop/NavigatorDock.hpp"

#include <QFileDialog>
#include <QMenu>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "Workbench/desktop/NavigatorIcons.hpp"
#include "Workbench/navigator/Publishing.hpp"

namespace workbench {

namespace {

// A row is the place of its set and, but for the set itself, its item's GUID.
constexpr int setRole = Qt::UserRole;
constexpr int guidRole = Qt::UserRole + 1;

QByteArray BytesOf(const API_Guid& guid) {
    return {reinterpret_cast<const char*>(&guid), sizeof guid};
}

QString TypeText(const PublisherItem& item) {
    if (item.kind == PublisherItem::Kind::folder) return {};
    switch (item.format) {
        case PublishFormat::pdf:
            return "PDF";
        case PublishFormat::dwg:
            return "DWG";
        case PublishFormat::png:
            return "PNG";
        case PublishFormat::jpeg:
            return "JPEG";
        case PublishFormat::ifc:
            break;
    }
    return "IFC";
}

}  // namespace

NavigatorDock::NavigatorDock(Application& application)
    : application(application),
      say{application.GetSettings().language},
      tree(new QTreeWidget),
      publish(new QPushButton(say("Publish...", "Publizieren..."))) {
    setWindowTitle(say("Publisher", "Publisher"));
    setObjectName("navigator");
    setFeatures(DockWidgetMovable);
    setWidget(MakeContent());
    Reload();
    application.Watch(*this);
}

NavigatorDock::~NavigatorDock() {
    application.Unwatch(*this);
}

QWidget* NavigatorDock::MakeContent() {
    tree->setHeaderHidden(true);
    tree->setColumnCount(1);
    tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    tree->setUniformRowHeights(true);
    tree->setFrameShape(QFrame::NoFrame);
    tree->setIndentation(14);
    tree->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(tree, &QTreeWidget::itemSelectionChanged, this,
            [this] { publish->setEnabled(!tree->selectedItems().isEmpty()); });
    connect(tree, &QTreeWidget::itemDoubleClicked, this, [this](const QTreeWidgetItem* row) {
        if (const PublisherItem* item = ItemOf(*row)) BringToFront(application, *item);
    });
    connect(tree, &QWidget::customContextMenuRequested, this, &NavigatorDock::ShowMenu);
    connect(publish, &QPushButton::clicked, this, &NavigatorDock::AskAndPublish);

    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->addWidget(tree);
    layout->addWidget(publish);
    return content;
}

void NavigatorDock::Reload() {
    tree->clear();
    const auto& sets = application.Publisher().All();
    for (std::size_t place = 0; place < sets.size(); ++place) {
        auto* row = new QTreeWidgetItem(tree, {QString::fromStdString(sets[place].name)});
        row->setIcon(0, SetIcon());
        row->setData(0, setRole, static_cast<int>(place));
        AddItems(*row, sets[place].items);
        row->setExpanded(true);
    }
    publish->setEnabled(false);
}

void NavigatorDock::AddItems(QTreeWidgetItem& parent, const std::vector<PublisherItem>& items) {
    QList<QTreeWidgetItem*> rows;
    for (const PublisherItem& item : items) {
        auto* row = new QTreeWidgetItem({QString::fromStdString(item.name)});
        row->setIcon(0, IconOf(item.kind));
        row->setData(0, setRole, parent.data(0, setRole));
        row->setData(0, guidRole, BytesOf(item.guid));
        row->setToolTip(0, item.problem.empty() ? TypeText(item) : QString::fromStdString(item.problem));
        if (!item.problem.empty()) row->setForeground(0, palette().brush(QPalette::Disabled, QPalette::Text));
        AddItems(*row, item.children);
        rows += row;
    }
    parent.addChildren(rows);
}

const PublisherItem* NavigatorDock::ItemOf(const QTreeWidgetItem& row) const {
    const QByteArray bytes = row.data(0, guidRole).toByteArray();
    API_Guid guid = APINULLGuid;
    if (bytes.size() != sizeof guid) return nullptr;
    std::copy(bytes.begin(), bytes.end(), reinterpret_cast<char*>(&guid));
    const auto place = static_cast<std::size_t>(row.data(0, setRole).toInt());
    const PublisherSets& sets = application.Publisher();
    return sets.FindItem(sets.All()[place], guid);
}

// In the tree's order; not again what a chosen set or folder holds.
std::vector<const PublisherItem*> NavigatorDock::Chosen() const {
    std::vector<const PublisherItem*> chosen;
    for (QTreeWidgetItemIterator row(tree, QTreeWidgetItemIterator::Selected); *row != nullptr; ++row) {
        bool covered = false;
        for (const QTreeWidgetItem* above = (*row)->parent(); above != nullptr; above = above->parent())
            covered = covered || above->isSelected();
        if (covered) continue;
        if (const PublisherItem* item = ItemOf(**row)) {
            chosen.push_back(item);
            continue;
        }
        const auto place = static_cast<std::size_t>((*row)->data(0, setRole).toInt());
        for (const PublisherItem& item : application.Publisher().All()[place].items)
            chosen.push_back(&item);
    }
    return chosen;
}

void NavigatorDock::ShowMenu(QPoint at) {
    const QTreeWidgetItem* row = tree->itemAt(at);
    if (row == nullptr) return;
    QMenu menu;
    const PublisherItem* item = ItemOf(*row);
    if (item != nullptr && item->kind != PublisherItem::Kind::folder && item->problem.empty())
        menu.addAction(say("Show", "Zeigen"), this, [this, guid = item->guid] { Show(guid); });
    menu.addAction(publish->text(), this, &NavigatorDock::AskAndPublish);
    menu.exec(tree->viewport()->mapToGlobal(at));
}

// While the menu was open, the sets may have become others.
void NavigatorDock::Show(const API_Guid& guid) {
    const PublisherSets& sets = application.Publisher();
    for (const PublisherSet& set : sets.All())
        if (const PublisherItem* item = sets.FindItem(set, guid)) return BringToFront(application, *item);
}

void NavigatorDock::AskAndPublish() {
    const QString folder = QFileDialog::getExistingDirectory(
        this, say("Publish into a Folder", "In einen Ordner publizieren"),
        QString::fromStdString(application.OpenProject().Location().parent_path().string()));
    if (!folder.isEmpty()) PublishInto(folder.toStdString());
}

void NavigatorDock::PublishInto(const std::filesystem::path& folder) {
    const PublishResult result = Publish(application, Chosen(), folder);
    application.TellWorking("", 1);
    const QString summary = result.stopped ? say("Stopped: %1 files published into %2",
                                                 "Abgebrochen: %1 Dateien in %2 publiziert")
                                           : say("%1 files published into %2", "%1 Dateien in %2 publiziert");
    emit published(summary.arg(result.files.size()).arg(QString::fromStdString(folder.string())));
    if (result.failures.empty()) return;
    constexpr std::size_t mostLines = 12;
    std::string lines;
    for (std::size_t i = 0; i < result.failures.size() && i < mostLines; ++i)
        lines += result.failures[i].item + ": " + result.failures[i].problem + "\n";
    if (result.failures.size() > mostLines) lines += "...\n";
    application.ShowAlert(say("Not everything could be published.", "Nicht alles konnte publiziert werden."),
                          lines);
}

}  // namespace workbench
