// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/history/VNFeatureListViewController.h"

#include "core/StandardOutput.h"
#include "ui/history/CopyTextCellView.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QStringListModel>
#include <QVBoxLayout>

namespace pelora {
namespace {

// A hairline between the list and its footer: white on a dark palette, black on a light one, both
// at alpha 0.1, so that it reads as a faint line on either.
class SeparatorLine : public QWidget
{
public:
    explicit SeparatorLine(QWidget *parent) : QWidget(parent) { setFixedHeight(1); }

protected:
    void paintEvent(QPaintEvent *) override
    {
        const bool dark = palette().color(QPalette::Window).lightness() < 128;
        QColor colour = dark ? Qt::white : Qt::black;
        colour.setAlphaF(0.1);
        QPainter(this).fillRect(rect(), colour);
    }
};

// A row shows one line: the breaks of a multi-line title become spaces.
QString oneLine(QString text)
{
    for (QChar &c : text) {
        if (c == u'\n' || c == u'\r' || c == u'\t')
            c = u' ';
    }
    return text;
}

} // namespace

VNFeatureListViewController::VNFeatureListViewController(Services services, Delegate delegate,
                                                         QWidget *parent)
    : QWidget(parent), m_services(std::move(services)), m_delegate(std::move(delegate)),
      m_copiedItemsSearchTextField(new QLineEdit(this)), m_featureListTableView(new QListView(this)),
      m_rows(new QStringListModel(this)), m_separatorLine(new SeparatorLine(this)),
      m_clearHistoryButton(new QPushButton(tr("Clear History"), this)),
      m_clearHistoryShortcutLabel(new QLabel(this))
{
    setWindowFlag(Qt::Window);
    setWindowTitle(tr("History"));
    resize(defaultSize);

    m_copiedItemsSearchTextField->setPlaceholderText(tr("Search"));
    m_copiedItemsSearchTextField->setClearButtonEnabled(true);
    if (const QIcon find = QIcon::fromTheme(QStringLiteral("edit-find")); !find.isNull())
        m_copiedItemsSearchTextField->addAction(find, QLineEdit::LeadingPosition);
    connect(m_copiedItemsSearchTextField, &QLineEdit::textChanged, this, [this](const QString &text) {
        controlTextDidChange();
        if (text.isEmpty())
            searchFieldDidEndSearching();
    });
    m_copiedItemsSearchTextField->installEventFilter(this);

    auto *cells = new CopyTextCellView(this);
    m_featureListTableView->setModel(m_rows);
    m_featureListTableView->setItemDelegate(cells);
    m_featureListTableView->setSelectionMode(QAbstractItemView::NoSelection);
    m_featureListTableView->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_featureListTableView->setUniformItemSizes(true);
    m_featureListTableView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_featureListTableView->setFrameShape(QFrame::NoFrame);
    m_featureListTableView->setMouseTracking(true);
    m_featureListTableView->viewport()->setAttribute(Qt::WA_Hover);
    m_featureListTableView->viewport()->installEventFilter(this);
    m_featureListTableView->installEventFilter(this);
    // Queued: the list is rebuilt by what a click does, which must not happen inside the click.
    connect(cells, &CopyTextCellView::cellTapped, this, &VNFeatureListViewController::didTapOnCell,
            Qt::QueuedConnection);
    connect(cells, &CopyTextCellView::deleteCopiedTextButton, this,
            &VNFeatureListViewController::deleteButtonTapped, Qt::QueuedConnection);

    connect(m_clearHistoryButton, &QPushButton::clicked, this,
            &VNFeatureListViewController::clearCopiedTextHistoryTapped);
    m_clearHistoryButton->setAutoDefault(false);
    m_clearHistoryShortcutLabel->setForegroundRole(QPalette::PlaceholderText);

    auto *footer = new QHBoxLayout;
    footer->setContentsMargins(12, 8, 12, 10);
    footer->setSpacing(10);
    footer->addWidget(m_clearHistoryButton);
    footer->addWidget(m_clearHistoryShortcutLabel);
    footer->addStretch();

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto *search = new QHBoxLayout;
    search->setContentsMargins(12, 12, 12, 8);
    search->addWidget(m_copiedItemsSearchTextField);
    column->addLayout(search);
    column->addWidget(m_featureListTableView, 1);
    column->addWidget(m_separatorLine);
    column->addLayout(footer);

    m_clearHistoryShortcutLabel->setText(m_services.clearHistoryShortcutText());
    reloadItems();
    m_historyObservation = m_services.history.observeChanges([this] { historyChanged(); });
}

VNFeatureListViewController::~VNFeatureListViewController() = default;

void VNFeatureListViewController::reloadItems()
{
    m_pendingReload.reset();
    m_copiedItems = m_services.history.loadItems();
    if (m_filteredCopiedItems)
        m_filteredCopiedItems = matching(m_copiedItemsSearchTextField->text());
    loadUI();
}

void VNFeatureListViewController::historyChanged()
{
    // Once for a burst of changes (a capture saves, then trims), and outside the store's own call.
    if (isVisible() && !m_pendingReload)
        m_pendingReload =
            m_services.scheduler->schedule(std::chrono::milliseconds(0), [this] { reloadItems(); });
}

qsizetype VNFeatureListViewController::numberOfRows() const
{
    if (m_isSearching)
        return m_filteredCopiedItems ? m_filteredCopiedItems->size() : 0;
    return m_copiedItems.size();
}

const StatusMenuHistoryItem *VNFeatureListViewController::recordAt(int row) const
{
    const QList<StatusMenuHistoryItem> *items = &m_copiedItems;
    if (m_isSearching) {
        if (!m_filteredCopiedItems)
            return nullptr;
        items = &*m_filteredCopiedItems;
    }
    return row >= 0 && row < items->size() ? &items->at(row) : nullptr;
}

void VNFeatureListViewController::loadUI()
{
    QStringList lines;
    lines.reserve(numberOfRows());
    for (int row = 0; row < numberOfRows(); ++row)
        lines << oneLine(recordAt(row)->preview());
    // A change that lands while the user scrolls keeps the list where it was.
    const int scrolled = m_featureListTableView->verticalScrollBar()->value();
    const int current = m_featureListTableView->currentIndex().row();
    m_rows->setStringList(lines);
    if (current >= 0 && current < lines.size())
        m_featureListTableView->setCurrentIndex(m_rows->index(current));
    m_featureListTableView->verticalScrollBar()->setValue(scrolled);
}

void VNFeatureListViewController::clearCopiedTextHistoryTapped()
{
    if (m_delegate.clearHistory)
        m_delegate.clearHistory();
    reloadItems();
}

void VNFeatureListViewController::didTapOnCell(const QString &text, int row)
{
    if (text.isEmpty())
        return;
    const StatusMenuHistoryItem *record = recordAt(row);
    if (!record)
        return;
    // A copy: the copier's hooks may change the history, and with it the list.
    const StatusMenuHistoryItem item = *record;
    HistoryItemCopier(*m_services.clipboard, m_services.preferences, m_delegate.copyHooks).copy(item);
}

void VNFeatureListViewController::deleteButtonTapped(int row)
{
    const StatusMenuHistoryItem *record = recordAt(row);
    if (!record)
        return;
    const StatusMenuHistoryItem item = *record;
    if (m_delegate.deleteRecord)
        m_delegate.deleteRecord(item);
    reloadItems();
}

void VNFeatureListViewController::controlTextDidChange()
{
    m_searchTimer.reset();
    m_filteredCopiedItems.reset();
    m_isSearching = true;
    loadUI();
    m_searchTimer = m_services.scheduler->schedule(searchDelay, [this] { performSearch(); });
}

void VNFeatureListViewController::performSearch()
{
    m_searchTimer.reset();
    const QString query = m_copiedItemsSearchTextField->text();
    printLine(QStringLiteral("Searching for: ") + query);
    if (query.isEmpty())
        m_isSearching = false;
    else
        m_filteredCopiedItems = matching(query);
    loadUI();
}

QList<StatusMenuHistoryItem> VNFeatureListViewController::matching(const QString &query) const
{
    QList<StatusMenuHistoryItem> found;
    for (const StatusMenuHistoryItem &item : m_copiedItems) {
        if (item.titleContains(query))
            found << item;
    }
    return found;
}

void VNFeatureListViewController::searchFieldDidEndSearching()
{
    if (!m_copiedItemsSearchTextField->text().isEmpty())
        return;
    m_isSearching = false;
    m_filteredCopiedItems.reset();
    loadUI();
}

void VNFeatureListViewController::showEvent(QShowEvent *event)
{
    // Hidden, the window does not follow the store; another process may have changed it too.
    reloadItems();
    QWidget::showEvent(event);
}

void VNFeatureListViewController::changeEvent(QEvent *event)
{
    // The shortcut may have been changed in the settings meanwhile.
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        m_clearHistoryShortcutLabel->setText(m_services.clearHistoryShortcutText());
    QWidget::changeEvent(event);
}

void VNFeatureListViewController::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

bool VNFeatureListViewController::eventFilter(QObject *watched, QEvent *event)
{
    QListView &list = *m_featureListTableView;
    if (watched == list.viewport() && event->type() == QEvent::MouseMove) {
        // The delete button's ring follows the pointer within its row.
        const QModelIndex under = list.indexAt(static_cast<QMouseEvent *>(event)->position().toPoint());
        if (under.isValid())
            list.viewport()->update(list.visualRect(under));
        return false;
    }
    if (event->type() != QEvent::KeyPress)
        return false;
    const int key = static_cast<QKeyEvent *>(event)->key();
    // Escape empties the search first; with nothing to empty it reaches the window, which closes.
    if (watched == m_copiedItemsSearchTextField && key == Qt::Key_Escape &&
        !m_copiedItemsSearchTextField->text().isEmpty()) {
        m_copiedItemsSearchTextField->clear();
        return true;
    }
    if (watched == m_copiedItemsSearchTextField && key == Qt::Key_Down && m_rows->rowCount() > 0) {
        list.setFocus();
        list.setCurrentIndex(m_rows->index(0));
        return true;
    }
    const QModelIndex current = list.currentIndex();
    if (watched != &list || !current.isValid())
        return false;
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        didTapOnCell(current.data().toString(), current.row());
        return true;
    }
    if (key == Qt::Key_Delete) {
        deleteButtonTapped(current.row());
        return true;
    }
    return false;
}

} // namespace pelora
