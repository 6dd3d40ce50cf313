#include "Workbench/desktop/QtDialog.hpp"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "Workbench/desktop/ScriptValues.hpp"

namespace workbench {

namespace {

bool Has(const std::vector<std::string>& words, const char* word) {
    return std::ranges::find(words, word) != words.end();
}

// The items' numbers by rows, from the top and from the left; what overlaps in height is one row.
std::vector<std::vector<std::size_t>> RowsOf(const std::vector<hostkit::DialogItem>& items) {
    std::vector<std::size_t> order(items.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::ranges::stable_sort(order, {}, [&](std::size_t i) { return items[i].rect.y; });
    std::vector<std::vector<std::size_t>> rows;
    int bottom = -1;
    for (const std::size_t i : order) {
        const hostkit::DialogRect& place = items[i].rect;
        if (rows.empty() || place.y >= bottom) rows.emplace_back();
        bottom = rows.back().empty() ? place.y + place.height : std::max(bottom, place.y + place.height);
        rows.back().push_back(i);
    }
    for (auto& row : rows)
        std::ranges::stable_sort(row, {}, [&](std::size_t i) { return items[i].rect.x; });
    return rows;
}

}  // namespace

class QtDialog::Window : public QDialog {
  public:
    Window(QtDialog& owner, QWidget* parent) : QDialog(parent), owner(owner) {}

    void reject() override { owner.ClickOrClose(2, false); }

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
            owner.ClickOrClose(1, true);
        else
            QDialog::keyPressEvent(event);
    }

  private:
    QtDialog& owner;
};

QtDialog::QtDialog(const hostkit::DialogResource& resource, hostkit::dg::DialogEvents& events,
                   QWidget* parent, OnDialog onDialog)
    : events(events),
      onDialog(std::move(onDialog)),
      id(resource.id),
      window(std::make_unique<Window>(*this, parent)) {
    window->setWindowTitle(ToQString(resource.title));
    window->setModal(true);
    for (const hostkit::DialogItem& item : resource.items) {
        const auto number = static_cast<short>(items.size() + 1);
        items[number] = MakeItem(item, number);
    }
    LayOut(resource);
}

QtDialog::~QtDialog() = default;

QWidget* QtDialog::MakeItem(const hostkit::DialogItem& item, short number) {
    QWidget* made = nullptr;
    if (item.kind == "Button") {
        auto* button = new QPushButton(ToQString(item.text));
        button->setDefault(number == 1);
        button->setAutoDefault(false);
        button->setMinimumWidth(item.rect.width);
        QObject::connect(button, &QPushButton::clicked, window.get(),
                         [this, number] { events.UserClicked(number); });
        made = button;
    } else if (item.kind == "TextEdit") {
        auto* field = new QLineEdit(ToQString(item.text));
        const int length = item.options.empty() ? 0 : QString::fromStdString(item.options.back()).toInt();
        if (length > 0) field->setMaxLength(length);
        made = field;
    } else if (item.kind == "SingleSelList") {
        auto* list = new QTreeWidget;
        list->setRootIsDecorated(false);
        list->setUniformRowHeights(true);
        list->setColumnCount(1);
        list->setHeaderHidden(!Has(item.options, "HasHeader"));
        list->setFrameShape(QFrame::StyledPanel);
        list->resize(item.rect.width, item.rect.height);
        made = list;
    } else {
        auto* label = new QLabel(ToQString(item.text));
        label->setWordWrap(true);
        label->setTextFormat(Qt::PlainText);
        made = label;
    }
    made->setToolTip(ToQString(item.tooltip));
    return made;
}

void QtDialog::LayOut(const hostkit::DialogResource& resource) {
    auto* layout = new QVBoxLayout(window.get());
    layout->setContentsMargins(18, 16, 18, 14);
    layout->setSpacing(10);
    for (const auto& row : RowsOf(resource.items)) {
        auto* line = new QHBoxLayout;
        const auto isButton = [&](std::size_t i) { return resource.items[i].kind == "Button"; };
        if (std::ranges::all_of(row, isButton) && resource.items[row.back()].rect.x * 2 > resource.rect.width)
            line->addStretch();
        for (const std::size_t i : row)
            line->addWidget(items.at(static_cast<short>(i + 1)), isButton(i) ? 0 : 1);
        const bool grows = std::ranges::any_of(
            row, [&](std::size_t i) { return resource.items[i].kind == "SingleSelList"; });
        layout->addLayout(line, grows ? 1 : 0);
    }
    window->resize(resource.rect.width, resource.rect.height);
    QWidget* first = window->findChild<QLineEdit*>();
    if (first == nullptr) first = window->findChild<QPushButton*>();
    if (first != nullptr) first->setFocus();
}

bool QtDialog::Run() {
    ended.reset();
    if (onDialog) {
        if (const std::optional<DialogAnswer> answer = onDialog(Shown())) {
            Answer(*answer);
            return ended.value_or(false);
        }
    }
    if (!ended) window->exec();
    return ended.value_or(false);
}

void QtDialog::Answer(const DialogAnswer& answer) {
    if (answer.text) {
        for (const auto& [number, item] : items) {
            auto* field = qobject_cast<QLineEdit*>(item);
            if (field == nullptr) continue;
            field->setText(*answer.text);
            break;
        }
    }
    if (answer.item > 0) events.UserClicked(answer.item);
    if (!ended) ClickOrClose(2, false);
}

void QtDialog::End(bool accepted) {
    ended = accepted;
    window->done(accepted ? QDialog::Accepted : QDialog::Rejected);
}

bool QtDialog::IsButton(short item) const {
    const auto found = items.find(item);
    return found != items.end() && qobject_cast<QPushButton*>(found->second) != nullptr;
}

void QtDialog::ClickOrClose(short item, bool accepting) {
    if (IsButton(item))
        events.UserClicked(item);
    else
        events.UserRequestedClose(accepting);
}

ShownDialog QtDialog::Shown() const {
    ShownDialog shown{id, {window->windowTitle()}};
    for (const auto& [number, item] : items) {
        const QTreeWidget* list = List(number);
        if (list == nullptr) {
            shown.texts += ToQString(Text(number));
            continue;
        }
        for (int column = 0; column < list->columnCount() && !list->isHeaderHidden(); ++column)
            shown.texts += list->headerItem()->text(column);
        for (int row = 0; row < list->topLevelItemCount(); ++row)
            for (int column = 0; column < list->columnCount(); ++column)
                shown.texts += list->topLevelItem(row)->text(column);
    }
    shown.texts.removeAll("");
    return shown;
}

void QtDialog::SetText(short item, const GS::UniString& text) {
    const auto found = items.find(item);
    if (found != items.end()) found->second->setProperty("text", ToQString(text));
}

GS::UniString QtDialog::Text(short item) const {
    const auto found = items.find(item);
    return found == items.end() ? GS::UniString() : ToUniString(found->second->property("text").toString());
}

QTreeWidget* QtDialog::List(short item) const {
    const auto found = items.find(item);
    return found == items.end() ? nullptr : qobject_cast<QTreeWidget*>(found->second);
}

short QtDialog::ListWidth(short item) const {
    const QTreeWidget* list = List(item);
    return list == nullptr ? short{0} : static_cast<short>(list->width());
}

// Columns keep the widths that they are given; the last one takes the rest.
void QtDialog::SetListHeader(short item, short column, const GS::UniString& text, short width) {
    QTreeWidget* list = List(item);
    if (list == nullptr || column < 1) return;
    list->setColumnCount(std::max<int>(list->columnCount(), column));
    list->headerItem()->setText(column - 1, ToQString(text));
    if (column < list->columnCount()) list->header()->resizeSection(column - 1, width);
}

void QtDialog::AppendListRow(short item) {
    if (QTreeWidget* list = List(item)) list->addTopLevelItem(new QTreeWidgetItem);
}

void QtDialog::SetListCell(short item, short row, short column, const GS::UniString& text) {
    QTreeWidget* list = List(item);
    if (list == nullptr || column < 1) return;
    QTreeWidgetItem* cells = list->topLevelItem(row - 1);
    if (cells == nullptr) return;
    list->setColumnCount(std::max<int>(list->columnCount(), column));
    cells->setText(column - 1, ToQString(text));
    cells->setToolTip(column - 1, ToQString(text));
}

}  // namespace workbench
