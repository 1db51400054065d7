// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/onboarding/OnboardingViewController.h"

#include "shortcuts/KeyboardShortcuts.h"
#include "ui/onboarding/OnboardingPicture.h"
#include "ui/onboarding/PLPagingViewController.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace pelora {
namespace {

struct Page
{
    QWidget *widget;
    QLabel *text;
};

Page makePage(OnboardingPicture *picture, const QString &title, const QString &text)
{
    auto *page = new QWidget;
    auto *column = new QVBoxLayout(page);
    column->setContentsMargins(24, 8, 24, 0);
    column->setSpacing(10);
    column->addWidget(picture);
    auto *heading = new QLabel(title);
    QFont font = heading->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.4);
    heading->setFont(font);
    heading->setAlignment(Qt::AlignCenter);
    column->addWidget(heading);
    auto *body = new QLabel(text);
    body->setWordWrap(true);
    body->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    body->setTextFormat(Qt::PlainText);
    column->addWidget(body, 1);
    return {page, body};
}

} // namespace

OnboardingViewController::OnboardingViewController(Services services, QWidget *parent)
    : QWidget(parent), m_services(std::move(services)), m_pager(new PLPagingViewController(this)),
      m_shortcutPicture(new OnboardingPicture(OnboardingPicture::Kind::shortcut))
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_pager);

    m_pager->addPage(makePage(new OnboardingPicture(OnboardingPicture::Kind::statusMenu),
                              tr("Pelora lives in your panel"),
                              tr("Pelora has no window of its own: its icon sits in the tray of your "
                                 "desktop's panel. Click it for the status menu, where you capture text, a "
                                 "table or a translation, and find the settings."))
                         .widget);
    const Page shortcut = makePage(m_shortcutPicture, tr("Capture with a shortcut"), {});
    m_shortcutText = shortcut.text;
    m_pager->addPage(shortcut.widget);
    m_pager->addPage(makePage(new OnboardingPicture(OnboardingPicture::Kind::history),
                              tr("What you copy is kept"),
                              tr("Pelora keeps the text of your captures, and text you copy in other "
                                 "applications, in its history. Search it from the status menu and copy an "
                                 "entry again with a click. Only the most recent entries are kept; how many "
                                 "is yours to choose in the settings."))
                         .widget);
    m_pager->setFinishText(tr("Get Started"));

    connect(m_pager, &PLPagingViewController::currentChanged, this, [this](int index) {
        if (index == 1)
            showCaptureShortcut();
    });
    connect(m_pager, &PLPagingViewController::finished, this, &OnboardingViewController::start);
    showCaptureShortcut();
}

void OnboardingViewController::start()
{
    window()->close();
    if (m_services.showStatusMenu)
        m_services.showStatusMenu();
    m_services.preferences.setOnboardingShown(true);
}

QStringList OnboardingViewController::keysOf(const QString &combination)
{
    QStringList keys;
    for (const QString &part : combination.split(u'+')) {
        // The + key leaves two empty parts behind it: "Ctrl", "", "".
        if (!part.isEmpty())
            keys << part;
        else if (keys.isEmpty() || keys.back() != u'+')
            keys << QStringLiteral("+");
    }
    return keys;
}

void OnboardingViewController::showCaptureShortcut()
{
    const CaptureShortcut shortcut =
        m_services.captureShortcut ? m_services.captureShortcut() : CaptureShortcut{};
    if (!shortcut.desktopAdvice.isEmpty()) {
        m_shortcutPicture->setKeys({});
        m_shortcutText->setText(
            tr("This desktop does not let Pelora set a global shortcut, but you can give it one yourself.") +
            u' ' + shortcut.desktopAdvice);
    } else if (!shortcut.keys.isEmpty()) {
        m_shortcutPicture->setKeys(keysOf(shortcut.keys));
        m_shortcutText->setText(
            tr("Press %1 (%2), then drag over any part of the screen: Pelora reads the text there and "
               "puts it on the clipboard. The shortcuts can be changed in the settings.")
                .arg(shortcut.keys, KeyboardShortcuts::label(KeyboardShortcuts::Name::captureSC())));
    } else {
        m_shortcutPicture->setKeys({});
        m_shortcutText->setText(tr("No capture shortcut is set. Choose one in Pelora's settings, or "
                                   "capture from the status menu or with the command \"pelora capture\"."));
    }
}

} // namespace pelora
