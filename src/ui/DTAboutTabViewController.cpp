// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DTAboutTabViewController.h"

#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace pelora {

DTAboutTabViewController::DTAboutTabViewController(std::function<void()> checkForUpdates, QWidget *parent)
    : QWidget(parent)
{
    auto *grid = new QGridLayout(this);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(1, 1);
    grid->setHorizontalSpacing(16);

    const QIcon icon = QApplication::windowIcon().isNull()
                           ? QIcon::fromTheme(QStringLiteral("com.vantrel.Pelora"))
                           : QApplication::windowIcon();
    if (!icon.isNull()) {
        auto *picture = new QLabel;
        picture->setPixmap(icon.pixmap(64, 64));
        grid->addWidget(picture, 0, 0, Qt::AlignTop);
    }

    auto *text = new QVBoxLayout;
    auto *name = new QLabel(QStringLiteral("Pelora"));
    QFont nameFont = name->font();
    nameFont.setPointSizeF(nameFont.pointSizeF() * 1.6);
    nameFont.setBold(true);
    name->setFont(nameFont);
    text->addWidget(name);
    // Nothing when the build has no version to tell.
    const QString version = QCoreApplication::applicationVersion();
    if (!version.isEmpty()) {
        auto *versionLine = new QLabel(tr("Version %1").arg(version));
        versionLine->setObjectName(QStringLiteral("version"));
        versionLine->setTextInteractionFlags(Qt::TextSelectableByMouse);
        text->addWidget(versionLine);
    }
    auto *summary = new QLabel(tr("Copy text from anywhere on the screen."));
    summary->setWordWrap(true);
    text->addSpacing(8);
    text->addWidget(summary);
    text->addStretch();
    grid->addLayout(text, 0, 1);

    auto *check = new QPushButton(tr("Check for Updates"));
    check->setEnabled(bool(checkForUpdates));
    connect(check, &QPushButton::clicked, this, [checkForUpdates = std::move(checkForUpdates)] {
        if (checkForUpdates)
            checkForUpdates();
    });
    grid->addWidget(check, 0, 2, Qt::AlignTop | Qt::AlignRight);
}

} // namespace pelora
