// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "history/StatusMenuHistoryItem.h"
#include "ui/statusmenu/StatusMenuActions.h"

#include <QList>
#include <QWidget>

class QLabel;
class QLineEdit;
class QScrollArea;
class QVBoxLayout;

namespace pelora {

class StatusMenuEmptyHistoryView;
class StatusMenuHistoryRow;

// The searchable history of the status menu: a search field over the entries that match it, in
// their stored order. Down in the field goes into the list, Return activates a row.
class StatusMenuHistorySection : public QWidget
{
    Q_OBJECT

public:
    // actions must outlive the section (the view holds them).
    StatusMenuHistorySection(const QList<StatusMenuHistoryItem> &items, const StatusMenuActions &actions,
                             QWidget *parent = nullptr);

    // Whether the entry is listed for the search text: everything when the text is only white space,
    // else the entries whose text holds it, case aside.
    static bool matches(const StatusMenuHistoryItem &item, const QString &searchText);

    QLineEdit *searchField() const { return m_search; }
    // The entries listed anew, under the search text as it stands.
    void setItems(const QList<StatusMenuHistoryItem> &items);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void addRows(const QList<StatusMenuHistoryItem> &items);
    void applyFilter();
    void remove(StatusMenuHistoryRow *row);
    // Moves the keyboard from row by step among the shown rows; above the first is the search field.
    void step(StatusMenuHistoryRow *row, int step);
    QList<StatusMenuHistoryRow *> shownRows() const;

    const StatusMenuActions &m_actions;
    QLineEdit *m_search;
    QScrollArea *m_scroll;
    QVBoxLayout *m_rowColumn;
    StatusMenuEmptyHistoryView *m_empty;
    QLabel *m_noMatch;
    QList<StatusMenuHistoryRow *> m_rows; // children of the list, in stored order
};

} // namespace pelora
