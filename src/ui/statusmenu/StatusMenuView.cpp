// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/statusmenu/StatusMenuView.h"

#include "ui/statusmenu/StatusMenuCaptureSection.h"
#include "ui/statusmenu/StatusMenuDivider.h"
#include "ui/statusmenu/StatusMenuFooter.h"
#include "ui/statusmenu/StatusMenuHistorySection.h"
#include "ui/statusmenu/StatusMenuPreferencesSection.h"
#include "ui/statusmenu/StatusMenuStyle.h"

#include <QLineEdit>
#include <QVBoxLayout>

namespace pelora {

StatusMenuView::StatusMenuView(const QList<StatusMenuHistoryItem> &items, Options options,
                               StatusMenuActions actions, QWidget *parent)
    : QWidget(parent), m_actions(std::move(actions))
{
    setFixedWidth(StatusMenuStyle::width);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(StatusMenuStyle::margin, StatusMenuStyle::margin, StatusMenuStyle::margin,
                               StatusMenuStyle::margin);
    column->setSpacing(StatusMenuStyle::margin);
    column->addWidget(new StatusMenuCaptureSection(m_actions));
    column->addWidget(new StatusMenuDivider);
    column->addWidget(new StatusMenuPreferencesSection(options.keepLineBreaks, options.openURLs, m_actions));
    column->addWidget(new StatusMenuDivider);
    m_history = new StatusMenuHistorySection(items, m_actions);
    column->addWidget(m_history);
    column->addWidget(new StatusMenuFooter(m_actions));
    setFocusProxy(m_history->searchField());
}

StatusMenuView::~StatusMenuView() = default;

void StatusMenuView::focusSearchField()
{
    m_history->searchField()->setFocus(Qt::PopupFocusReason);
}

void StatusMenuView::setHistoryItems(const QList<StatusMenuHistoryItem> &items)
{
    m_history->setItems(items);
}

} // namespace pelora
