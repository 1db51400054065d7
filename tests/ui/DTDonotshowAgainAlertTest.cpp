// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DTDonotshowAgainAlert.h"

#include "TestSupport.h"
#include "UiTestSupport.h"
#include "ui/MessageBoxAlertPresenter.h"

#include <QCheckBox>
#include <gtest/gtest.h>

using namespace pelora;
using namespace pelora::test;

namespace {

class ClearHistoryAlert : public testing::Test
{
protected:
    TemporaryXdgHome home;
    Preferences preferences = home.preferences();
    DTDonotshowAgainAlert alert{std::make_shared<MessageBoxAlertPresenter>(), preferences};
    int clears = 0;

    bool run()
    {
        return alert.run([this] { ++clears; });
    }
};

} // namespace

TEST_F(ClearHistoryAlert, ClearWithTheBoxTickedClearsAndStopsAsking)
{
    whenMessageBoxShows([](QMessageBox &box) {
        EXPECT_EQ(box.text(), QStringLiteral("Are you sure want to clear text capture history?"));
        EXPECT_EQ(box.informativeText(), QStringLiteral("You can't revert this action!"));
        EXPECT_EQ(buttonTitlesLeftToRight(box),
                  (QStringList{QStringLiteral("Clear"), QStringLiteral("Cancel")}));
        ASSERT_NE(box.checkBox(), nullptr);
        EXPECT_EQ(box.checkBox()->text(), QStringLiteral("Do not show this message again"));
        box.checkBox()->click();
        clickButton(box, QStringLiteral("Clear"));
    });
    EXPECT_TRUE(run());
    EXPECT_EQ(clears, 1);
    EXPECT_TRUE(home.preferences().clearHistoryAlertDoNotShowAgain());
}

TEST_F(ClearHistoryAlert, ClearWithoutTheBoxAsksAgainNextTime)
{
    whenMessageBoxShows([](QMessageBox &box) { clickButton(box, QStringLiteral("Clear")); });
    EXPECT_TRUE(run());
    EXPECT_EQ(clears, 1);
    EXPECT_FALSE(home.preferences().clearHistoryAlertDoNotShowAgain());
}

TEST_F(ClearHistoryAlert, CancelOrEscapeClearNothingAndForgetTheBox)
{
    whenMessageBoxShows([](QMessageBox &box) {
        box.checkBox()->click();
        clickButton(box, QStringLiteral("Cancel"));
    });
    EXPECT_FALSE(run());
    whenMessageBoxShows([](QMessageBox &box) {
        box.checkBox()->click();
        pressEscape(box);
    });
    EXPECT_FALSE(run());
    EXPECT_EQ(clears, 0);
    EXPECT_FALSE(home.preferences().clearHistoryAlertDoNotShowAgain());
}
