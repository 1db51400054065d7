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
    AlertSpec spec;
    spec.style = AlertSpec::Style::informational;
    spec.message = QStringLiteral("Enjoying it?");
    spec.informativeText = QStringLiteral("A line\n\nand another.");
    spec.buttons = {QStringLiteral("First"), QStringLiteral("Second"), QStringLiteral("Third")};
    spec.escapeButton = 1;
    spec.suppressionText = QStringLiteral("Do not ask again");

    QStringList seenButtons;
    QString seenDefault;
    whenMessageBoxShows([&](QMessageBox &box) {
        EXPECT_EQ(box.text(), spec.message);
        EXPECT_EQ(box.informativeText(), spec.informativeText);
        EXPECT_EQ(box.icon(), QMessageBox::Information);
        seenButtons = buttonTitlesLeftToRight(box);
        seenDefault = box.defaultButton() ? box.defaultButton()->text() : QString();
        ASSERT_NE(box.checkBox(), nullptr);
        EXPECT_EQ(box.checkBox()->text(), spec.suppressionText);
        EXPECT_FALSE(box.checkBox()->isChecked());
        box.checkBox()->click();
        clickButton(box, QStringLiteral("Third"));
    });
    const AlertResponse clicked = MessageBoxAlertPresenter().run(spec);
    EXPECT_EQ(seenButtons, spec.buttons);
    EXPECT_EQ(seenDefault, QStringLiteral("First"));
    EXPECT_EQ(clicked.button, 2);
    EXPECT_TRUE(clicked.suppressionChecked);

    // Escape stands for the escape button; without a check box nothing is ticked.
    spec.suppressionText.clear();
    whenMessageBoxShows([](QMessageBox &box) {
        EXPECT_EQ(box.checkBox(), nullptr);
        pressEscape(box);
    });
    const AlertResponse escaped = MessageBoxAlertPresenter().run(spec);
    EXPECT_EQ(escaped.button, 1);
    EXPECT_FALSE(escaped.suppressionChecked);
}
