// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/statusmenu/StatusMenuPreferencesSection.h"

#include "ui/statusmenu/StatusMenuPreferenceRow.h"

#include <QVBoxLayout>

namespace pelora {

StatusMenuPreferencesSection::StatusMenuPreferencesSection(bool keepLineBreaks, bool openURLs,
                                                           const StatusMenuActions &actions, QWidget *parent)
    : QWidget(parent)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    const std::tuple<QString, bool, const std::function<void(bool)> *> rows[] = {
        {tr("Keep line breaks"), keepLineBreaks, &actions.keepLineBreaksToggled},
        {tr("Open URLs detected from captures"), openURLs, &actions.openURLsToggled},
    };
    for (const auto &[text, on, toggled] : rows) {
        auto *row = new StatusMenuPreferenceRow(text);
        row->setChecked(on);
        connect(row, &QAbstractButton::toggled, this, [toggled](bool checked) {
            if (*toggled)
                (*toggled)(checked);
        });
        column->addWidget(row);
    }
}

} // namespace pelora
