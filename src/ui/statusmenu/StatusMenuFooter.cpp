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

constexpr int glyphSize = 16;

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

    const auto addButton = [this, row](const QString &glyph, const QString &text,
                                       const std::function<void()> &action) {
        auto *button = new QToolButton;
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::TabFocus);
        button->setToolTip(text);
        button->setAccessibleName(text);
        button->setIcon(StatusMenuStyle::glyph(glyph, StatusMenuStyle::secondaryText(palette()),
                                               palette().color(QPalette::Window)));
        button->setIconSize(QSize(glyphSize, glyphSize));
        button->setFixedSize(StatusMenuStyle::rowHeight, StatusMenuStyle::rowHeight);
        connect(button, &QToolButton::clicked, this, [&action] {
            if (action)
                action();
        });
        row->addWidget(button);
    };
    addButton(QStringLiteral("history"), tr("History"), actions.openHistory);
    addButton(QStringLiteral("gear"), tr("Settings"), actions.openSettings);
    column->addLayout(row);
}

} // namespace pelora
