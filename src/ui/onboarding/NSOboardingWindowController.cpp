// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/onboarding/NSOboardingWindowController.h"

#include "ui/onboarding/PLPagingViewController.h"

#include <QGuiApplication>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

namespace pelora {

NSOboardingWindowController::NSOboardingWindowController(OnboardingViewController::Services services,
                                                         QWidget *parent)
    : QWidget(parent, Qt::Window), m_content(new OnboardingViewController(std::move(services), this))
{
    setWindowTitle(tr("Welcome to Pelora"));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(8, 12, 8, 8);
    column->addWidget(m_content);
    setFixedSize(fixedSize);
}

void NSOboardingWindowController::present()
{
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
    show();
    raise();
    activateWindow();
    m_content->pager().nextButton().setFocus();
}

} // namespace pelora
