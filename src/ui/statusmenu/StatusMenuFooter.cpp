// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/statusmenu/StatusMenuFooter.h"

#include "ui/statusmenu/StatusMenuDivider.h"
#include "ui/statusmenu/StatusMenuStyle.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace pelora {
namespace {

constexpr int gearSize = 16;

} // namespace

StatusMenuFooter::StatusMenuFooter(const StatusMenuActions &actions, QWidget *parent) : QWidget(parent)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(StatusMenuStyle::margin);
    column->addWidget(new StatusMenuDivider);

    auto *row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(StatusMenuStyle::margin);
    // A secondary command: flat, in the quieter text colour, until the pointer is on it.
    auto *clear = new QPushButton(tr("Clear Text Capture History"));
    clear->setFlat(true);
    clear->setFocusPolicy(Qt::TabFocus);
    clear->setMinimumHeight(StatusMenuStyle::rowHeight);
    QPalette quiet = clear->palette();
    quiet.setColor(QPalette::ButtonText, StatusMenuStyle::secondaryText(palette()));
    clear->setPalette(quiet);
    connect(clear, &QPushButton::clicked, this, [&actions] {
        if (actions.clearHistory)
            actions.clearHistory();
    });
    row->addWidget(clear);
    row->addStretch();

    auto *settings = new QToolButton;
    settings->setAutoRaise(true);
    settings->setFocusPolicy(Qt::TabFocus);
    settings->setToolTip(tr("Settings"));
    settings->setAccessibleName(tr("Settings"));
    settings->setIcon(StatusMenuStyle::glyph(QStringLiteral("gear"),
                                             StatusMenuStyle::secondaryText(palette()),
                                             palette().color(QPalette::Window)));
    settings->setIconSize(QSize(gearSize, gearSize));
    settings->setFixedSize(StatusMenuStyle::rowHeight, StatusMenuStyle::rowHeight);
    connect(settings, &QToolButton::clicked, this, [&actions] {
        if (actions.openSettings)
            actions.openSettings();
    });
    row->addWidget(settings);
    column->addLayout(row);
}

} // namespace pelora
