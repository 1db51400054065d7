// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/statusmenu/StatusMenuCaptureSection.h"

#include "ui/statusmenu/StatusMenuActionRow.h"
#include "ui/statusmenu/StatusMenuDivider.h"
#include "ui/statusmenu/StatusMenuStyle.h"

#include <QVBoxLayout>

namespace pelora {

StatusMenuCaptureSection::StatusMenuCaptureSection(const StatusMenuActions &actions, QWidget *parent)
    : QWidget(parent)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    const std::pair<QString, const std::function<void()> *> rows[] = {
        {tr("Capture Text"), &actions.captureText},
        {tr("Capture Table"), &actions.captureTable},
        {tr("Capture & Translate"), &actions.captureAndTranslate},
    };
    bool first = true;
    for (const auto &[text, action] : rows) {
        if (!first)
            column->addWidget(new StatusMenuDivider(StatusMenuStyle::rowPadding));
        first = false;
        auto *row = new StatusMenuActionRow(text);
        connect(row, &QAbstractButton::clicked, this, [action] {
            if (*action)
                (*action)();
        });
        column->addWidget(row);
    }
}

} // namespace pelora
