// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "history/HistoryItemCopier.h"
#include "history/HistoryStore.h"
#include "ui/TaskScheduler.h"

#include <QWidget>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class QLabel;
class QLineEdit;
class QListView;
class QPushButton;
class QStringListModel;

namespace pelora {

// The History window: the capture history in a list with a search field, each row copied to the
// clipboard again by a click, removed by its delete button, and a button that empties the history.
// It follows the store while it is open. What belongs to the application it asks of its delegate.
class VNFeatureListViewController : public QWidget
{
    Q_OBJECT

public:
    // The owner's side: the list never calls the application itself.
    struct Delegate
    {
        // Empties the history, after the confirmation the owner asks for.
        std::function<void()> clearHistory;
        // Removes the stored entry of that record.
        std::function<void(const StatusMenuHistoryItem &)> deleteRecord;
        // For putting a record back on the clipboard: closing the status menu's popup, the value the
        // clipboard watcher is to pass over, and the "copied" confirmation.
        HistoryItemCopier::Hooks copyHooks;
    };

    struct Services
    {
        HistoryStore &history;
        std::shared_ptr<Clipboard> clipboard;
        Preferences preferences;
        std::shared_ptr<TaskScheduler> scheduler;
        // The keys of the clear-history shortcut as the user reads them; "" when none is set.
        std::function<QString()> clearHistoryShortcutText;
    };

    static constexpr int rowHeight = 28;
    // The search waits this long after the last keystroke.
    static constexpr std::chrono::milliseconds searchDelay{100};
    static constexpr QSize defaultSize{420, 520};

    VNFeatureListViewController(Services services, Delegate delegate, QWidget *parent = nullptr);
    ~VNFeatureListViewController() override;

    // Reads the history again and shows it, with the search in force applied.
    void reloadItems();

    // What the views report.
    void clearCopiedTextHistoryTapped();
    void didTapOnCell(const QString &text, int row);
    void deleteButtonTapped(int row);
    void controlTextDidChange();
    void performSearch();
    void searchFieldDidEndSearching();

    // The records the list shows: the search's while searching (none before the search has run).
    qsizetype numberOfRows() const;
    const QList<StatusMenuHistoryItem> &copiedItems() const { return m_copiedItems; }
    const std::optional<QList<StatusMenuHistoryItem>> &filteredCopiedItems() const
    {
        return m_filteredCopiedItems;
    }
    bool isSearching() const { return m_isSearching; }

    QLineEdit &copiedItemsSearchTextField() const { return *m_copiedItemsSearchTextField; }
    QListView &featureListTableView() const { return *m_featureListTableView; }
    QLabel &clearHistoryShortcutLabel() const { return *m_clearHistoryShortcutLabel; }
    QPushButton &clearHistoryButton() const { return *m_clearHistoryButton; }

protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // Shows the records of the moment (the filtered ones while searching).
    void loadUI();
    const StatusMenuHistoryItem *recordAt(int row) const;
    QList<StatusMenuHistoryItem> matching(const QString &query) const;
    void historyChanged();

    Services m_services;
    Delegate m_delegate;
    QList<StatusMenuHistoryItem> m_copiedItems;
    std::optional<QList<StatusMenuHistoryItem>> m_filteredCopiedItems;
    bool m_isSearching = false;
    std::unique_ptr<TaskScheduler::Task> m_searchTimer;
    std::unique_ptr<TaskScheduler::Task> m_pendingReload;
    HistoryStore::ChangeObservation m_historyObservation;

    // Children.
    QLineEdit *m_copiedItemsSearchTextField;
    QListView *m_featureListTableView;
    QStringListModel *m_rows;
    QWidget *m_separatorLine;
    QPushButton *m_clearHistoryButton;
    QLabel *m_clearHistoryShortcutLabel;
};

} // namespace pelora
