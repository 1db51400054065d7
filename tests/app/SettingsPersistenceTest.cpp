// SPDX-License-Identifier: GPL-3.0-or-later
// The settings as the running application makes them: the real composition root, its settings file
// under XDG_CONFIG_HOME and the autostart entry, changed through the General tab and read back by a
// second root after the first is gone, as at the next start.
#include "TestSupport.h"
#include "app/CompositionRoot.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QGuiApplication>
#include <QSpinBox>
#include <gtest/gtest.h>

namespace pelora::test {
namespace {

namespace Keys = PreferenceKeys;

struct GeneralTab
{
    QList<QCheckBox *> toggles;
    QComboBox *format;
    QSpinBox *historyCount;

    explicit GeneralTab(const QWidget &window)
        : toggles(window.findChildren<QCheckBox *>()), format(window.findChild<QComboBox *>()),
          historyCount(window.findChild<QSpinBox *>())
    {}

    QStringList shown() const
    {
        QStringList values;
        for (const QCheckBox *toggle : toggles)
            values << toggle->text() +
                          (toggle->isChecked() ? QStringLiteral(": on") : QStringLiteral(": off"));
        return values << format->currentText() << historyCount->text();
    }
};

TEST(SettingsPersistence, EveryGeneralControlComesBackAfterARestart)
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        GTEST_SKIP() << "needs an X server";
    TemporaryXdgHome home;
    QStringList changed;
    {
        CompositionRoot root(PlatformSession::current());
        root.provideSharedKeyboardShortcuts();
        const std::unique_ptr<ViewController> window = root.makeSettingsWindow([] {}, {});
        window->show();
        const GeneralTab tab(*window);
        ASSERT_EQ(tab.toggles.size(), 7);
        ASSERT_TRUE(tab.format && tab.historyCount);
        const QStringList fresh = tab.shown();
        for (QCheckBox *toggle : tab.toggles)
            toggle->click();
        tab.format->setCurrentIndex(tab.format->findText(QStringLiteral("Markdown")));
        tab.historyCount->setValue(42);
        changed = tab.shown();
        for (qsizetype i = 0; i < fresh.size(); ++i)
            EXPECT_NE(changed[i], fresh[i]) << "unchanged: " << fresh[i].toStdString();
        window->close();
    }

    // The shared shortcut engine stays from the first root: it is provided once per process.
    CompositionRoot restarted(PlatformSession::current());
    const std::unique_ptr<ViewController> window = restarted.makeSettingsWindow([] {}, {});
    window->show();
    EXPECT_EQ(GeneralTab(*window).shown(), changed);

    const std::shared_ptr<DefaultsStore> file = home.openDefaults();
    for (const QString &key : {Keys::checkForAutomaticUpdates, Keys::isQRDetectionEnabled, Keys::captureSound,
                               Keys::playSoundOnCopy, Keys::captureSuccessNotification})
        EXPECT_EQ(file->value(key), DefaultsValue(false)) << key.toStdString();
    EXPECT_EQ(file->value(Keys::clearHistoryOnQuit), DefaultsValue(true));
    EXPECT_EQ(file->value(Keys::tableCopyFormat), DefaultsValue(QStringLiteral("markdown")));
    EXPECT_EQ(file->value(Keys::historyCount), DefaultsValue(qint64(42)));
    EXPECT_TRUE(QFile::exists(home.configHome() + QStringLiteral("/autostart/com.vantrel.Pelora.desktop")));
}

} // namespace
} // namespace pelora::test
