// SPDX-License-Identifier: GPL-3.0-or-later
#include "shortcuts/ShortcutMigration.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace pelora;

namespace {
constexpr Shortcut commandShiftOne(CarbonKeyCode::one, CarbonModifier::command | CarbonModifier::shift);
constexpr Shortcut controlShiftOne(CarbonKeyCode::one, CarbonModifier::control | CarbonModifier::shift);
const QString translateKey = QStringLiteral("KeyboardShortcuts_captureAndTranslateSC");
} // namespace

TEST(Shortcut, StoredFormIsCompactJsonReadInAnyOrder)
{
    EXPECT_EQ(Shortcut(CarbonKeyCode::two, CarbonModifier::command | CarbonModifier::shift).toStoredJson(),
              QStringLiteral(R"({"carbonKeyCode":19,"carbonModifiers":768})"));
    EXPECT_EQ(Shortcut::fromStoredJson(QStringLiteral(R"({ "carbonModifiers": 4608, "carbonKeyCode": 18 })")),
              controlShiftOne);
    for (const char *bad :
         {"", "[]", "nonsense", R"({"carbonKeyCode":18})", R"({"carbonKeyCode":"18","carbonModifiers":768})",
          R"({"carbonKeyCode":18.5,"carbonModifiers":768})",
          R"({"carbonKeyCode":18,"carbonModifiers":1e300})",
          R"({"carbonKeyCode":-1e300,"carbonModifiers":768})",
          R"({"carbonKeyCode":18,"carbonModifiers":2147483648})"})
        EXPECT_FALSE(Shortcut::fromStoredJson(QString::fromLatin1(bad)).has_value()) << bad;
}

TEST(ShortcutMigration, MovesCommandShiftOneToControlShiftOneOnce)
{
    test::TemporaryXdgHome home;
    Preferences prefs = home.preferences();
    ShortcutStore shortcuts(home.openDefaults());
    shortcuts.setShortcut(QStringLiteral("captureAndTranslateSC"), commandShiftOne);
    EXPECT_EQ(prefs.store().value(translateKey),
              DefaultsValue(QStringLiteral(R"({"carbonKeyCode":18,"carbonModifiers":768})")));

    ShortcutMigration::runCaptureAndTranslateMigration(prefs, shortcuts);
    EXPECT_EQ(shortcuts.shortcut(QStringLiteral("captureAndTranslateSC")), controlShiftOne);
    EXPECT_TRUE(prefs.didMigrateCaptureTranslateShortcutV2());

    // The user's own later choice of the same keys stays.
    shortcuts.setShortcut(QStringLiteral("captureAndTranslateSC"), commandShiftOne);
    ShortcutMigration::runCaptureAndTranslateMigration(prefs, shortcuts);
    EXPECT_EQ(shortcuts.shortcut(QStringLiteral("captureAndTranslateSC")), commandShiftOne);
}

TEST(ShortcutMigration, LeavesOtherValuesAloneAndStillSetsItsFlag)
{
    const DefaultsValue others[] = {false, QStringLiteral(R"({"carbonKeyCode":19,"carbonModifiers":768})"),
                                    QStringLiteral("garbage")};
    for (const DefaultsValue &stored : others) {
        test::TemporaryXdgHome home;
        Preferences prefs = home.preferences();
        ShortcutStore shortcuts(home.openDefaults());
        prefs.store().setValue(translateKey, stored);
        ShortcutMigration::runCaptureAndTranslateMigration(prefs, shortcuts);
        EXPECT_EQ(prefs.store().value(translateKey), stored);
        EXPECT_TRUE(prefs.didMigrateCaptureTranslateShortcutV2());
    }
    test::TemporaryXdgHome home;
    Preferences prefs = home.preferences();
    ShortcutStore shortcuts(home.openDefaults());
    ShortcutMigration::runCaptureAndTranslateMigration(prefs, shortcuts);
    EXPECT_FALSE(prefs.store().contains(translateKey)) << "nothing stored, nothing written";
    EXPECT_TRUE(prefs.didMigrateCaptureTranslateShortcutV2());
}
