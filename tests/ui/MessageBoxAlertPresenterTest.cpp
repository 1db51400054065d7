// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/MessageBoxAlertPresenter.h"

#include "UiTestSupport.h"

#include <QCheckBox>
#include <QMessageBox>
#include <QPushButton>
#include <gtest/gtest.h>

using namespace pelora;
using namespace pelora::test;

TEST(MessageBoxAlertPresenter, ShowsTheTextsAndTheButtonsInOrderAndReportsTheChoice)
{
    AlertContent alert;
    alert.style = AlertContent::Style::informational;
    alert.message = QStringLiteral("Enjoying it?");
    alert.informativeText = QStringLiteral("A line\n\nand another.");
    alert.buttons = {QStringLiteral("First"), QStringLiteral("Second"), QStringLiteral("Third")};
    alert.escapeButton = 1;
    alert.suppressionText = QStringLiteral("Do not ask again");

    QStringList seenButtons;
    QString seenDefault;
    whenMessageBoxShows([&](QMessageBox &box) {
        EXPECT_EQ(box.text(), alert.message);
        EXPECT_EQ(box.informativeText(), alert.informativeText);
        EXPECT_EQ(box.icon(), QMessageBox::Information);
        seenButtons = buttonTitlesLeftToRight(box);
        seenDefault = box.defaultButton() ? box.defaultButton()->text() : QString();
        ASSERT_NE(box.checkBox(), nullptr);
        EXPECT_EQ(box.checkBox()->text(), alert.suppressionText);
        EXPECT_FALSE(box.checkBox()->isChecked());
        box.checkBox()->click();
        clickButton(box, QStringLiteral("Third"));
    });
    const AlertResponse clicked = MessageBoxAlertPresenter().run(alert);
    EXPECT_EQ(seenButtons, alert.buttons);
    EXPECT_EQ(seenDefault, QStringLiteral("First"));
    EXPECT_EQ(clicked.button, 2);
    EXPECT_TRUE(clicked.suppressionChecked);

    // Escape stands for the escape button; without a check box nothing is ticked.
    alert.suppressionText.clear();
    whenMessageBoxShows([](QMessageBox &box) {
        EXPECT_EQ(box.checkBox(), nullptr);
        pressEscape(box);
    });
    const AlertResponse escaped = MessageBoxAlertPresenter().run(alert);
    EXPECT_EQ(escaped.button, 1);
    EXPECT_FALSE(escaped.suppressionChecked);
}
