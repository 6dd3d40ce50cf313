#pragma once

#include <QDockWidget>

#include "Workbench/api/Application.hpp"

class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace workbench {

/// The project's publisher sets. A double click turns the windows to an item; what is chosen can be published
/// into a folder.
class NavigatorDock : public QDockWidget, public ApplicationObserver {
    Q_OBJECT

  public:
    explicit NavigatorDock(Application& application);
    ~NavigatorDock() override;

    /// Publishes what is chosen, and all of a chosen set or folder. What failed is told in a message.
    void PublishInto(const std::filesystem::path& folder);

    void ProjectReplaced() override { Reload(); }
    void ProjectEdited() override { Reload(); }

  signals:
    /// For the status bar.
    void published(const QString& summary);

  private:
    QWidget* MakeContent();
    void Reload();
    void AddItems(QTreeWidgetItem& parent, const std::vector<PublisherItem>& items);
    const PublisherItem* ItemOf(const QTreeWidgetItem& row) const;
    std::vector<const PublisherItem*> Chosen() const;
    void AskAndPublish();
    void ShowMenu(QPoint at);
    void Show(const API_Guid& guid);

    Application& application;
    Say say;
    QTreeWidget* tree;
    QPushButton* publish;
};

}  // namespace workbench
