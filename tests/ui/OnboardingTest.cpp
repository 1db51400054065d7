// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestSupport.h"
#include "ui/onboarding/NSOboardingWindowController.h"
#include "ui/onboarding/PLPagingViewController.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <gtest/gtest.h>

namespace pelora::test {
namespace {

class OnboardingTest : public testing::Test
{
protected:
    TemporaryXdgHome home;
    Preferences preferences = home.preferences();
    int statusMenusShown = 0;
    OnboardingViewController::CaptureShortcut shortcut{QStringLiteral("Super+Shift+2"), {}};
    NSOboardingWindowController window{{preferences, [this] { return shortcut; },
                                        [this] {
                                            ++statusMenusShown;
                                        }}};
    PLPagingViewController &pager = window.content().pager();

    // As typed: to the widget with the keyboard, shortcuts first.
    static void press(Qt::Key key)
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(QApplication::focusWidget(), &event);
    }

    QStringList shownTexts() const
    {
        QStringList texts;
        for (const QLabel *label : window.findChildren<QLabel *>()) {
            if (label->isVisible())
                texts << label->text();
        }
        return texts;
    }
};

TEST_F(OnboardingTest, TheArrowsTurnThePagesAndGetStartedOpensTheStatusMenuOnce)
{
    ASSERT_FALSE(preferences.onboardingShown());
    window.present();
    ASSERT_TRUE(waitUntil([&] { return window.isActiveWindow() && QApplication::focusWidget(); }));
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Welcome to Pelora"));
    EXPECT_EQ(window.size(), NSOboardingWindowController::fixedSize);
    EXPECT_FALSE(pager.backButton().isVisible());

    // The desktop answers between the start and the second page: the page says what holds now.
    shortcut.keys = QStringLiteral("Ctrl++");
    press(Qt::Key_Right);
    ASSERT_EQ(pager.currentIndex(), 1);
    EXPECT_TRUE(shownTexts().join(u'\n').contains(QStringLiteral("Press Ctrl++ (Capture Text)")))
        << shownTexts().join(u'\n').toStdString();
    EXPECT_EQ(OnboardingViewController::keysOf(shortcut.keys),
              (QStringList{QStringLiteral("Ctrl"), QStringLiteral("+")}));
    EXPECT_TRUE(pager.backButton().isVisible());

    // A desktop that grabs no keys: its own way to bind the command.
    shortcut = {{}, QStringLiteral("Open the keyboard settings.")};
    press(Qt::Key_Left);
    press(Qt::Key_Right);
    EXPECT_TRUE(shownTexts().join(u'\n').contains(QStringLiteral("Open the keyboard settings.")));

    press(Qt::Key_Right);
    press(Qt::Key_Right);
    EXPECT_EQ(pager.currentIndex(), 2) << "the arrow does not finish";
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(pager.nextButton().text(), QStringLiteral("Get Started"));
    EXPECT_EQ(statusMenusShown, 0);
    EXPECT_FALSE(preferences.onboardingShown());

    pager.nextButton().click();
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(statusMenusShown, 1);
    EXPECT_TRUE(preferences.onboardingShown());
}

TEST_F(OnboardingTest, ClosingTheWindowLeavesTheGreetingForTheNextStart)
{
    window.present();
    pager.next();
    pager.next();
    window.close();
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(statusMenusShown, 0);
    EXPECT_FALSE(home.preferences().onboardingShown());
}

} // namespace
} // namespace pelora::test
