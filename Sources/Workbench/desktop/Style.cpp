#include "Workbench/desktop/Style.hpp"

#include <QApplication>
#include <QFont>
#include <QPalette>

namespace workbench {

namespace {

const char* const sheet = R"css(
QMenuBar { background: #ffffff; border-bottom: 1px solid #dde3e8; padding: 2px 4px; }
QMenuBar::item { padding: 4px 10px; border-radius: 4px; background: transparent; }
QMenuBar::item:selected { background: #e3eef3; }
QDockWidget { font-weight: 600; }
QDockWidget::title { background: #ffffff; padding: 7px 10px; border-bottom: 1px solid #dde3e8; }
QMainWindow::separator { background: #dde3e8; width: 3px; height: 3px; }
QTreeView { border: none; background: #ffffff; outline: none; }
QTreeView::item { height: 23px; }
QTreeView::item:hover { background: #f0f5f8; }
QTreeView::item:selected { background: #d6e8ef; color: #10242e; }
QHeaderView::section { background: #ffffff; border: none; border-bottom: 1px solid #dde3e8; padding: 5px; color: #5a6b75; }
QLineEdit { border: 1px solid #c3ced5; border-radius: 5px; padding: 5px 8px; background: #ffffff; }
QLineEdit:focus { border-color: #1d5567; }
QStatusBar { background: #ffffff; border-top: 1px solid #dde3e8; color: #5a6b75; }
QStatusBar::item { border: none; }
QStatusBar QLabel { padding: 3px 6px; color: #5a6b75; }
QProgressBar { border: none; border-radius: 3px; background: #e3e9ed; height: 6px; text-align: center; }
QProgressBar::chunk { border-radius: 3px; background: #1d5567; }
)css";

}  // namespace

void ApplyStyle(QApplication& application) {
    QApplication::setStyle("Fusion");
    QFont font("Liberation Sans");
    font.setPointSizeF(9.75);
    QApplication::setFont(font);

    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0xf5, 0xf7, 0xf9));
    palette.setColor(QPalette::WindowText, QColor(0x10, 0x24, 0x2e));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, QColor(0x10, 0x24, 0x2e));
    palette.setColor(QPalette::Button, QColor(0xff, 0xff, 0xff));
    palette.setColor(QPalette::ButtonText, QColor(0x10, 0x24, 0x2e));
    palette.setColor(QPalette::Highlight, QColor(0x1d, 0x55, 0x67));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(0x9a, 0xa6, 0xae));
    QApplication::setPalette(palette);
    application.setStyleSheet(sheet);
}

}  // namespace workbench
