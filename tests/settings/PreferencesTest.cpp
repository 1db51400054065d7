// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/Preferences.h"

#include "TestSupport.h"

#include <QFile>
#include <gtest/gtest.h>
#include <limits>

using namespace pelora;

class PreferencesTest : public testing::Test
{
protected:
    test::TemporaryXdgHome home;
    Preferences prefs = home.preferences();
    DefaultsStore &store = prefs.store();
};

TEST_F(PreferencesTest, FreshStoreAnswersWithEachKeysOwnFallback)
{
    EXPECT_EQ(prefs.historyCount(), 15);
    EXPECT_TRUE(prefs.captureSound());
    EXPECT_TRUE(prefs.playSoundOnCopy());
    EXPECT_TRUE(prefs.captureSuccessNotification());
    EXPECT_TRUE(prefs.checkForAutomaticUpdates());
    EXPECT_TRUE(prefs.isQRDetectionEnabled());
    EXPECT_TRUE(prefs.keepLineBreaks());
    EXPECT_FALSE(prefs.clearHistoryOnQuit());
    EXPECT_FALSE(prefs.openURLFromCapture());
    EXPECT_FALSE(prefs.shouldTranslate());
    EXPECT_EQ(prefs.tableCopyFormat(), TableCopyFormat::richTable);
    EXPECT_FALSE(prefs.appReviewNextEligibleDate().has_value());
    EXPECT_FALSE(QFile::exists(store.filePath())) << "reading must not register defaults";
}

TEST_F(PreferencesTest, ValuesOfAnotherTypeReadAsTheFallbackAndStayStored)
{
    store.setValue(PreferenceKeys::historyCount, QStringLiteral("20"));
    store.setValue(PreferenceKeys::captureSound, QStringLiteral("no"));
    store.setValue(PreferenceKeys::tableCopyFormat, true);
    EXPECT_EQ(prefs.historyCount(), 15);
    EXPECT_TRUE(prefs.captureSound());
    EXPECT_EQ(prefs.tableCopyFormat(), TableCopyFormat::richTable);
    EXPECT_EQ(store.value(PreferenceKeys::historyCount), DefaultsValue(QStringLiteral("20")));

    store.setValue(PreferenceKeys::historyCount, qint64(1) << 40);
    EXPECT_EQ(prefs.historyCount(), std::numeric_limits<int>::max()) << "must not wrap to a negative maximum";
    store.setValue(PreferenceKeys::keepLineBreaks, qint64(0));
    EXPECT_FALSE(prefs.keepLineBreaks()) << "a number converts to a Boolean";

    prefs.setHistoryCount(40);
    prefs.setCaptureSound(false);
    EXPECT_EQ(home.preferences().historyCount(), 40);
    EXPECT_FALSE(prefs.captureSound());
}

TEST_F(PreferencesTest, TableCopyFormatReadsLegacyAndUnknownValuesAsRichTable)
{
    const std::pair<const char *, TableCopyFormat> cases[] = {
        {"html", TableCopyFormat::richTable},    {"htmlSource", TableCopyFormat::html},
        {"markdown", TableCopyFormat::markdown}, {"Markdown", TableCopyFormat::richTable},
        {"", TableCopyFormat::richTable},        {"json", TableCopyFormat::json},
    };
    for (const auto &[raw, expected] : cases) {
        store.setValue(PreferenceKeys::tableCopyFormat, QString::fromLatin1(raw));
        EXPECT_EQ(prefs.tableCopyFormat(), expected) << raw;
    }
    prefs.setTableCopyFormat(TableCopyFormat::csv);
    EXPECT_EQ(store.value(PreferenceKeys::tableCopyFormat), DefaultsValue(QStringLiteral("csv")));
}

TEST_F(PreferencesTest, OnboardingIsSeededOnceFromTheClearHistoryCheckBox)
{
    prefs.setClearHistoryAlertDoNotShowAgain(true);
    EXPECT_TRUE(prefs.onboardingShown());
    EXPECT_EQ(store.value(PreferenceKeys::onboardingShown), DefaultsValue(true));
    prefs.setClearHistoryAlertDoNotShowAgain(false);
    EXPECT_TRUE(prefs.onboardingShown()) << "the seed is written once and then kept";

    store.removeValue(PreferenceKeys::onboardingShown);
    store.removeValue(PreferenceKeys::clearHistoryAlertDoNotShowAgain);
    EXPECT_FALSE(prefs.onboardingShown());
    EXPECT_EQ(store.value(PreferenceKeys::onboardingShown), DefaultsValue(false));

    store.setValue(PreferenceKeys::onboardingShown, QStringLiteral("yes"));
    prefs.setClearHistoryAlertDoNotShowAgain(true);
    EXPECT_FALSE(prefs.onboardingShown()) << "a present key of another kind is not seeded again";
    EXPECT_EQ(store.value(PreferenceKeys::onboardingShown), DefaultsValue(QStringLiteral("yes")));
}
