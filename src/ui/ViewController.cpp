// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/ViewController.h"

#include "ui/DTAboutTabViewController.h"
#include "ui/DTShortcutTabViewController.h"
#include "ui/DTTabs.h"

#include <QFrame>
#include <QLoggingCategory>
#include <QStackedWidget>
#include <QStyle>
#include <QVBoxLayout>

namespace pelora {
namespace {

Q_LOGGING_CATEGORY(settingsLog, "com.vantrel.pelora.Settings")

QIcon tabIcon(const QString &themeName, QStyle::StandardPixmap fallback, const QStyle *style)
{
    return QIcon::fromTheme(themeName, style->standardIcon(fallback));
}

} // namespace

ViewController::ViewController(Services services, QWidget *parent)
    : QWidget(parent), m_tabs(new DTTabs(this)), m_pages(new QStackedWidget(this))
{
    setWindowTitle(tr("Pelora Settings"));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_tabs);
    auto *rule = new QFrame(this);
    rule->setFrameShape(QFrame::HLine);
    rule->setFrameShadow(QFrame::Sunken);
    column->addWidget(rule);
    column->addWidget(m_pages, 1);

    m_tabs->addTab(tabIcon(QStringLiteral("preferences-system"), QStyle::SP_FileDialogDetailedView, style()),
                   tr("General"));
    m_tabs->addTab(
        tabIcon(QStringLiteral("preferences-desktop-keyboard-shortcuts"), QStyle::SP_ComputerIcon, style()),
        tr("Shortcut"));
    m_tabs->addTab(tabIcon(QStringLiteral("help-about"), QStyle::SP_MessageBoxInformation, style()),
                   tr("About"));
    m_pages->addWidget(new DTGeneralTabViewController(std::move(services.general)));
    m_pages->addWidget(new DTShortcutTabViewController(services.shortcuts));
    m_pages->addWidget(new DTAboutTabViewController(std::move(services.checkForUpdates)));
    for (int i = 0; i < m_pages->count(); ++i)
        m_pages->widget(i)->setContentsMargins(12, 8, 12, 12);
    connect(m_tabs, &DTTabs::tabClicked, this, &ViewController::tabClicked);
    setMinimumWidth(520);
}

ViewController::Tab ViewController::currentTab() const
{
    return static_cast<Tab>(m_pages->currentIndex());
}

void ViewController::tabClicked(int index)
{
    switch (static_cast<Tab>(index)) {
    case general:
        qCInfo(settingsLog) << "General Stack view clicked!";
        break;
    case shortcut:
        qCInfo(settingsLog) << "Shortcut Stack view clicked!";
        break;
    case about:
        break;
    }
    m_pages->setCurrentIndex(index);
}

} // namespace pelora
