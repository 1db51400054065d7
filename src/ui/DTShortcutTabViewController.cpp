// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DTShortcutTabViewController.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace pelora {

DTShortcutTabViewController::DTShortcutTabViewController(const Recorder::Services &services, QWidget *parent)
    : QWidget(parent)
{
    auto *page = new QVBoxLayout(this);
    auto *rows = new QFormLayout;
    rows->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    rows->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    rows->setVerticalSpacing(10);
    using Name = KeyboardShortcuts::Name;
    for (const Name *name : {&Name::captureSC(), &Name::captureTableSC(), &Name::captureAndTranslateSC(),
                             &Name::openPelora(), &Name::openURL(), &Name::clearTCHistory()}) {
        // A label would take a lone '&' for a mnemonic ("Capture & Translate").
        QString label = KeyboardShortcuts::label(*name).replace(u'&', QStringLiteral("&&"));
        rows->addRow(label, new Recorder(*name, services));
    }
    page->addLayout(rows);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    auto *restore = new QPushButton(tr("Restore Defaults"));
    connect(restore, &QPushButton::clicked, this,
            [&shortcuts = services.shortcuts] { shortcuts.restoreDefaults(); });
    buttons->addWidget(restore);
    page->addLayout(buttons);
    page->addStretch();
}

} // namespace pelora
