#include "Workbench/desktop/ElementDock.hpp"

#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QTreeView>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "Workbench/desktop/ElementModel.hpp"

namespace workbench {

ElementDock::ElementDock(Application& application)
    : QDockWidget(Say{application.GetSettings().language}("Elements", "Elemente")),
      application(application),
      say{application.GetSettings().language},
      elements(new ElementModel(application, this)),
      filtered(new QSortFilterProxyModel(this)),
      list(new QTreeView) {
    setObjectName("elements");
    setFeatures(QDockWidget::DockWidgetMovable);
    filtered->setSourceModel(elements);
    filtered->setRecursiveFilteringEnabled(true);
    filtered->setFilterCaseSensitivity(Qt::CaseInsensitive);
    filtered->setFilterKeyColumn(-1);
    setWidget(MakeContent());
    connect(list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &ElementDock::SelectFromList);
    connect(list->verticalScrollBar(), &QScrollBar::valueChanged, this, &ElementDock::NoteTop);
    application.Watch(*this);
}

ElementDock::~ElementDock() {
    application.Unwatch(*this);
}

QWidget* ElementDock::MakeContent() {
    list->setModel(filtered);
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list->setUniformRowHeights(true);
    list->setFrameShape(QFrame::NoFrame);
    list->setIndentation(14);
    list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    list->header()->setStretchLastSection(false);

    auto* search = new QLineEdit;
    search->setPlaceholderText(say("Search name or class", "Name oder Klasse suchen"));
    search->setClearButtonEnabled(true);
    connect(search, &QLineEdit::textChanged, this, &ElementDock::Search);

    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(8, 8, 8, 0);
    layout->addWidget(search);
    layout->addWidget(list);
    return content;
}

void ElementDock::Search(const QString& text) {
    follows = false;  // what the filter takes from the list stays selected
    filtered->setFilterFixedString(text);
    follows = true;
    SelectionChanged();
    NoteTop();
}

void ElementDock::ProjectReplaced() {
    elements->Reload();
    list->expandAll();
}

void ElementDock::ProjectReady(const MeshOutcome&) {
    elements->RefreshTicks();
}

// What the list shows may not be asked any more: its elements are gone.
void ElementDock::ProjectEdited() {
    const QSet<QString> folded = FoldedStoreys();
    const Place stays = top;
    const bool scrolled = list->verticalScrollBar()->value() > 0;
    follows = false;
    elements->Reload();
    follows = true;
    for (int row = 0; row < filtered->rowCount(); ++row) {
        const QModelIndex storey = filtered->index(row, 0);
        list->setExpanded(storey, !folded.contains(storey.data().toString()));
    }
    SelectInList();
    if (scrolled) list->scrollTo(Find(stays), QAbstractItemView::PositionAtTop);
}

QSet<QString> ElementDock::FoldedStoreys() const {
    QSet<QString> folded;
    for (int row = 0; row < filtered->rowCount(); ++row) {
        const QModelIndex storey = filtered->index(row, 0);
        if (!list->isExpanded(storey)) folded.insert(storey.data().toString());
    }
    return folded;
}

void ElementDock::NoteTop() {
    const QModelIndex index = filtered->mapToSource(list->indexAt({0, 0}));
    const bool isStorey = !index.parent().isValid();
    top = {(isStorey ? index : index.parent()).data().toString(), isStorey ? -1 : index.row()};
}

QModelIndex ElementDock::Find(const Place& place) const {
    for (int row = 0; row < elements->rowCount(); ++row) {
        const QModelIndex storey = elements->index(row, 0);
        if (storey.data().toString() != place.storey) continue;
        return filtered->mapFromSource(place.row < 0 ? storey : elements->index(place.row, 0, storey));
    }
    return {};
}

void ElementDock::SelectFromList() {
    if (!follows) return;
    std::vector<API_Guid> chosen;
    for (const QModelIndex& row : list->selectionModel()->selectedRows()) {
        if (const Element* element = elements->ElementAt(filtered->mapToSource(row)))
            chosen.push_back(element->guid);
    }
    follows = false;
    application.Select(chosen);
    follows = true;
}

void ElementDock::SelectionChanged() {
    if (!follows) return;
    const QItemSelection rows = SelectInList();
    if (!rows.isEmpty()) list->scrollTo(rows.first().topLeft());
}

QItemSelection ElementDock::SelectInList() {
    QItemSelection rows = RowsOfSelection();
    follows = false;
    list->selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    follows = true;
    return rows;
}

// Neighbours in one range each, and only so many of them: Qt compares every range with every other.
QItemSelection ElementDock::RowsOfSelection() const {
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

void ElementDock::VisibilityChanged() {
    elements->RefreshTicks();
}

}  // namespace workbench
