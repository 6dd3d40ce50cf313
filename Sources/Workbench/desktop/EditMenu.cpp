#include "Workbench/desktop/EditMenu.hpp"

#include <QAction>
#include <QMenu>

namespace workbench {

namespace {

// A command's name as a part of a menu text, where & marks a letter.
QString Named(const char* text, const std::string& name) {
    return QString(text).arg(QString::fromStdString(name).replace('&', "&&"));
}

}  // namespace

EditMenu::EditMenu(QMenu* menu, Application& application)
    : QObject(menu), application(application), say{application.GetSettings().language} {
    undo = menu->addAction({}, QKeySequence("Ctrl+Z"), this, [this] { this->application.Undo(); });
    redo = menu->addAction({}, QKeySequence("Ctrl+Shift+Z"), this, [this] { this->application.Redo(); });
    menu->addSeparator();
    undoAll = menu->addAction({}, this,
                              [this] { this->application.Undo(this->application.History().UndoCount()); });
    redoAll = menu->addAction({}, this,
                              [this] { this->application.Redo(this->application.History().RedoCount()); });
    application.Watch(*this);
    HistoryChanged();
}

EditMenu::~EditMenu() {
    application.Unwatch(*this);
}

void EditMenu::HistoryChanged() {
    const EditHistory& history = application.History();
    const std::size_t undoCount = history.UndoCount();
    const std::size_t redoCount = history.RedoCount();
    undo->setEnabled(undoCount > 0);
    redo->setEnabled(redoCount > 0);
    undo->setText(undoCount == 0 ? say("&Undo", "&Rückgängig")
                                 : Named(say("&Undo %1", "&Rückgängig: %1"), history.NextUndoName()));
    redo->setText(redoCount == 0 ? say("&Redo", "&Wiederholen")
                                 : Named(say("&Redo %1", "&Wiederholen: %1"), history.NextRedoName()));
    undoAll->setEnabled(undoCount > 1);
    redoAll->setEnabled(redoCount > 1);
    undoAll->setText(undoCount < 2
                         ? QString(say("Undo &All Steps", "&Alle Schritte rückgängig"))
                         : QString(say("Undo &All %1 Steps", "&Alle %1 Schritte rückgängig")).arg(undoCount));
    redoAll->setText(
        redoCount < 2 ? QString(say("Redo A&ll Steps", "A&lle Schritte wiederholen"))
                      : QString(say("Redo A&ll %1 Steps", "A&lle %1 Schritte wiederholen")).arg(redoCount));
}

}  // namespace workbench
