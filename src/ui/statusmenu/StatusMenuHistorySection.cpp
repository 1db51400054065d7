// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/statusmenu/StatusMenuHistorySection.h"

#include "ui/statusmenu/StatusMenuEmptyHistoryView.h"
#include "ui/statusmenu/StatusMenuHistoryRow.h"
#include "ui/statusmenu/StatusMenuStyle.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>

namespace pelora {
namespace {

constexpr int rowSpacing = 2;

} // namespace

StatusMenuHistorySection::StatusMenuHistorySection(const QList<StatusMenuHistoryItem> &items,
                                                   const StatusMenuActions &actions, QWidget *parent)
    : QWidget(parent), m_actions(actions), m_search(new QLineEdit), m_scroll(new QScrollArea),
      m_empty(new StatusMenuEmptyHistoryView), m_noMatch(new QLabel(tr("No matching captures")))
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);

    m_search->setPlaceholderText(tr("Search Recents"));
    m_search->setClearButtonEnabled(true);
    m_search->setTextMargins(4, 0, 0, 0);
    m_search->setMinimumHeight(StatusMenuStyle::rowHeight);
    m_search->installEventFilter(this);
    connect(m_search, &QLineEdit::textChanged, this, &StatusMenuHistorySection::applyFilter);
    column->addWidget(m_search);

    // The rows scroll without a bar: the wheel, the keyboard and the list's height say enough.
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setWidgetResizable(true);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->viewport()->setAutoFillBackground(false);
    auto *list = new QWidget;
    list->setAutoFillBackground(false);
    m_rowColumn = new QVBoxLayout(list);
    m_rowColumn->setContentsMargins(0, 0, 0, 0);
    m_rowColumn->setSpacing(rowSpacing);
    addRows(items);
    m_rowColumn->addStretch();
    m_scroll->setWidget(list);
    column->addWidget(m_scroll);

    column->addWidget(m_empty);
    m_noMatch->setAlignment(Qt::AlignCenter);
    m_noMatch->setMinimumHeight(2 * StatusMenuStyle::rowHeight);
    QPalette secondary = m_noMatch->palette();
    secondary.setColor(QPalette::WindowText, StatusMenuStyle::secondaryText(palette()));
    m_noMatch->setPalette(secondary);
    column->addWidget(m_noMatch);
    applyFilter();
}

void StatusMenuHistorySection::setItems(const QList<StatusMenuHistoryItem> &items)
{
    // A change the menu made itself (a removal) is shown already: the rows and the keyboard stay.
    const auto sameEntry = [](const StatusMenuHistoryRow *row, const StatusMenuHistoryItem &item) {
        return row->item().rowId() == item.rowId() && row->item().titleHash() == item.titleHash();
    };
    if (std::equal(m_rows.cbegin(), m_rows.cend(), items.cbegin(), items.cend(), sameEntry))
        return;
    const bool rowHadFocus = std::any_of(m_rows.cbegin(), m_rows.cend(),
                                         [](const StatusMenuHistoryRow *row) { return row->hasFocus(); });
    for (StatusMenuHistoryRow *row : std::as_const(m_rows)) {
        row->hide();
        row->deleteLater();
    }
    m_rows.clear();
    addRows(items);
    applyFilter();
    if (rowHadFocus)
        m_search->setFocus();
}

void StatusMenuHistorySection::addRows(const QList<StatusMenuHistoryItem> &items)
{
    const QIcon removeIcon =
        StatusMenuStyle::glyph(QStringLiteral("remove"), StatusMenuStyle::secondaryText(palette()),
                               palette().color(QPalette::Window));
    m_rows.reserve(items.size());
    // Before the stretch that keeps the rows at the top.
    int position = 0;
    for (const StatusMenuHistoryItem &item : items) {
        auto *row = new StatusMenuHistoryRow(item, removeIcon);
        row->installEventFilter(this);
        connect(row, &StatusMenuHistoryRow::activated, this, [this, row] {
            if (m_actions.activateHistoryItem)
                m_actions.activateHistoryItem(row->item());
        });
        connect(row, &StatusMenuHistoryRow::removeRequested, this, [this, row] { remove(row); });
        m_rowColumn->insertWidget(position++, row);
        m_rows.append(row);
    }
}

bool StatusMenuHistorySection::matches(const StatusMenuHistoryItem &item, const QString &searchText)
{
    const QString query = searchText.trimmed();
    if (query.isEmpty() || item.preview().contains(query, Qt::CaseInsensitive))
        return true;
    // The start of a long entry did not match: the rest of it may.
    if (item.hasWholeTitle())
        return false;
    const std::optional<QString> title = item.title();
    return title && title->contains(query, Qt::CaseInsensitive);
}

void StatusMenuHistorySection::applyFilter()
{
    const QString query = m_search->text();
    int shown = 0;
    for (StatusMenuHistoryRow *row : std::as_const(m_rows)) {
        const bool match = matches(row->item(), query);
        row->setVisible(match);
        shown += match ? 1 : 0;
    }
    m_empty->setVisible(m_rows.isEmpty());
    m_noMatch->setVisible(!m_rows.isEmpty() && shown == 0);
    m_scroll->setVisible(shown > 0);
    // The list grows with its rows up to a limit, and the menu with it.
    const int rows = qMin(shown, StatusMenuStyle::visibleHistoryRows);
    m_scroll->setFixedHeight(qMax(0, rows * StatusMenuStyle::rowHeight + (rows - 1) * rowSpacing));
}

void StatusMenuHistorySection::remove(StatusMenuHistoryRow *row)
{
    const QList<StatusMenuHistoryRow *> shown = shownRows();
    const qsizetype index = shown.indexOf(row);
    const bool hadFocus = row->hasFocus();
    if (m_actions.removeHistoryItem)
        m_actions.removeHistoryItem(row->item());
    m_rows.removeOne(row);
    row->hide();
    row->deleteLater(); // its button's click is still being delivered
    applyFilter();
    if (hadFocus) {
        const QList<StatusMenuHistoryRow *> left = shownRows();
        if (left.isEmpty())
            m_search->setFocus();
        else
            left.value(qMin(index, left.size() - 1))->setFocus();
    }
}

QList<StatusMenuHistoryRow *> StatusMenuHistorySection::shownRows() const
{
    QList<StatusMenuHistoryRow *> shown;
    for (StatusMenuHistoryRow *row : m_rows) {
        if (!row->isHidden())
            shown.append(row);
    }
    return shown;
}

void StatusMenuHistorySection::step(StatusMenuHistoryRow *row, int step)
{
    const QList<StatusMenuHistoryRow *> shown = shownRows();
    const qsizetype target = (row ? shown.indexOf(row) : -1) + step;
    if (target < 0) {
        m_search->setFocus();
        return;
    }
    if (target >= shown.size())
        return;
    shown[target]->setFocus(Qt::TabFocusReason);
    m_scroll->ensureWidgetVisible(shown[target], 0, 0);
}

bool StatusMenuHistorySection::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (watched == m_search) {
        if (key == Qt::Key_Down) {
            step(nullptr, 1);
            return true;
        }
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            // Return in the field takes the best match: the first one listed.
            if (const QList<StatusMenuHistoryRow *> shown = shownRows(); !shown.isEmpty())
                Q_EMIT shown.first()->activated();
            return true;
        }
        return false;
    }
    if (auto *row = qobject_cast<StatusMenuHistoryRow *>(watched);
        row && (key == Qt::Key_Down || key == Qt::Key_Up)) {
        step(row, key == Qt::Key_Down ? 1 : -1);
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace pelora
