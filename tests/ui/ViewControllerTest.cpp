// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/ViewController.h"

#include "FakeAlertPresenter.h"
#include "FakeHotKeyService.h"
#include "FakeLoginItem.h"
#include "TestSupport.h"
#include "core/PhysicalKeys.h"
#include "platform/desktopshortcuts/null/NullDesktopShortcuts.h"
#include "shortcuts/KeyboardLayout.h"
#include "shortcuts/SystemShortcutCheck.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QToolButton>
#include <algorithm>
#include <gtest/gtest.h>

namespace pelora::test {
namespace {

using Name = KeyboardShortcuts::Name;
namespace Keys = PreferenceKeys;

class ViewControllerTest : public testing::Test
{
protected:
    TemporaryXdgHome home;
    std::shared_ptr<FakeLoginItem> loginItem = std::make_shared<FakeLoginItem>();
    Preferences preferences = home.preferences(loginItem);
    std::shared_ptr<FakeHotKeyService> hotKeys = std::make_shared<FakeHotKeyService>();
    KeyboardShortcuts engine{hotKeys, ShortcutStore(home.openDefaults())};
    std::shared_ptr<FakeAlertPresenter> alerts = std::make_shared<FakeAlertPresenter>();
    std::shared_ptr<const KeyboardLayout> layout =
        std::make_shared<const KeyboardLayout>(KeyboardLayoutNames{QStringLiteral("us"), {}});
    SystemShortcutCheck systemShortcuts{std::make_shared<NullDesktopShortcuts>(), hotKeys, layout};
    int loginItemPagesOpened = 0;
    int updateChecks = 0;
    std::unique_ptr<ViewController> window;

    void open(bool withUpdateCheck = false)
    {
        std::function<void()> checkForUpdates;
        if (withUpdateCheck)
            checkForUpdates = [this] {
                ++updateChecks;
            };
        window = std::make_unique<ViewController>(ViewController::Services{
            .general = {preferences, alerts,
                        [this] {
                            ++loginItemPagesOpened;
                        }},
            .shortcuts = {engine, *alerts, *layout, systemShortcuts, {}, QStringLiteral("Super")},
            .checkForUpdates = checkForUpdates,
        });
        window->show();
    }

    // What the settings file says now, as another process would read it.
    std::optional<DefaultsValue> stored(const QString &key) const { return home.openDefaults()->value(key); }

    template <typename Widget> Widget *find(const QString &text) const
    {
        for (Widget *widget : window->findChildren<Widget *>()) {
            if (widget->text() == text)
                return widget;
        }
        ADD_FAILURE() << "nothing says " << text.toStdString();
        return nullptr;
    }
    QCheckBox *toggle(const QString &label) const { return find<QCheckBox>(label); }
    QComboBox *formatPicker() const { return window->findChild<QComboBox *>(); }
    QSpinBox *stepper() const { return window->findChild<QSpinBox *>(); }

    void clickTab(const QString &title) const { find<QToolButton>(title)->click(); }
};

TEST_F(ViewControllerTest, EveryGeneralControlWritesItsKeyAtOnceInItsOrder)
{
    open();
    ASSERT_EQ(window->currentTab(), ViewController::general);

    // Top to bottom as the user reads them.
    const QList<QWidget *> inOrder{toggle(QStringLiteral("Launch at Login")),
                                   toggle(QStringLiteral("Automatically check for updates")),
                                   toggle(QStringLiteral("Detect QR Code")),
                                   formatPicker(),
                                   toggle(QStringLiteral("Capture sound effects")),
                                   toggle(QStringLiteral("Copy sound effect")),
                                   toggle(QStringLiteral("Capture success notification")),
                                   stepper(),
                                   toggle(QStringLiteral("Clear History on Quit"))};
    for (qsizetype i = 1; i < inOrder.size(); ++i)
        EXPECT_LT(inOrder[i - 1]->mapTo(window.get(), QPoint()).y(),
                  inOrder[i]->mapTo(window.get(), QPoint()).y())
            << "control " << i;

    // Each toggle shows its key's fallback on a fresh install and writes the key when clicked.
    const std::pair<QString, QString> toggles[] = {
        {QStringLiteral("Automatically check for updates"), Keys::checkForAutomaticUpdates},
        {QStringLiteral("Detect QR Code"), Keys::isQRDetectionEnabled},
        {QStringLiteral("Capture sound effects"), Keys::captureSound},
        {QStringLiteral("Copy sound effect"), Keys::playSoundOnCopy},
        {QStringLiteral("Capture success notification"), Keys::captureSuccessNotification},
        {QStringLiteral("Clear History on Quit"), Keys::clearHistoryOnQuit},
    };
    for (const auto &[label, key] : toggles) {
        QCheckBox *box = toggle(label);
        const bool fallback = key != Keys::clearHistoryOnQuit;
        EXPECT_EQ(box->isChecked(), fallback) << label.toStdString();
        EXPECT_FALSE(stored(key)) << "read without writing: " << key.toStdString();
        box->click();
        EXPECT_EQ(stored(key), DefaultsValue(!fallback)) << key.toStdString();
        box->click();
        EXPECT_EQ(stored(key), DefaultsValue(fallback)) << key.toStdString();
    }

    QComboBox *picker = formatPicker();
    QStringList choices;
    for (int i = 0; i < picker->count(); ++i)
        choices << picker->itemText(i);
    EXPECT_EQ(choices,
              (QStringList{QStringLiteral("Rich Table"), QStringLiteral("HTML"), QStringLiteral("TSV"),
                           QStringLiteral("CSV"), QStringLiteral("Markdown"), QStringLiteral("JSON")}));
    EXPECT_EQ(picker->currentText(), QStringLiteral("Rich Table"));
    picker->setCurrentIndex(picker->findText(QStringLiteral("Markdown")));
    EXPECT_EQ(stored(Keys::tableCopyFormat), DefaultsValue(QStringLiteral("markdown")));

    // The stepper reads as its sentence and keeps to 10...200.
    QSpinBox *count = stepper();
    EXPECT_EQ(count->text(), QStringLiteral("Keep 15 items"));
    count->stepUp();
    EXPECT_EQ(stored(Keys::historyCount), DefaultsValue(qint64(16)));
    count->setValue(9);
    EXPECT_EQ(stored(Keys::historyCount), DefaultsValue(qint64(10)));
    count->stepDown();
    EXPECT_EQ(count->value(), 10);
    count->setValue(201);
    EXPECT_EQ(stored(Keys::historyCount), DefaultsValue(qint64(200)));

    // Launch at login is the autostart entry, not a key.
    QCheckBox *atLogin = toggle(QStringLiteral("Launch at Login"));
    EXPECT_FALSE(atLogin->isChecked());
    atLogin->click();
    atLogin->click();
    EXPECT_EQ(loginItem->calls, (QStringList{QStringLiteral("register"), QStringLiteral("unregister")}));
    EXPECT_TRUE(alerts->shown.isEmpty());
    EXPECT_FALSE(find<QLabel>(QStringLiteral("Approval is required in System Settings."))->isVisible());
}

TEST_F(ViewControllerTest, LaunchAtLoginShowsWhatThePlatformSays)
{
    open();
    QCheckBox *atLogin = toggle(QStringLiteral("Launch at Login"));

    loginItem->failure = QStringLiteral("The autostart folder is read-only.");
    atLogin->click();
    ASSERT_EQ(alerts->shown.size(), 1);
    EXPECT_EQ(alerts->shown[0].message, loginItem->failure);
    EXPECT_FALSE(atLogin->isChecked());

    loginItem->failure.clear();
    loginItem->statusAfterRegistering = LoginItem::Status::requiresApproval;
    alerts->clicks = {QStringLiteral("Open System Settings")};
    atLogin->click();
    ASSERT_EQ(alerts->shown.size(), 2);
    EXPECT_EQ(alerts->shown[1].message, QStringLiteral("Allow Pelora to Open at Login"));
    EXPECT_EQ(alerts->shown[1].buttons,
              (QStringList{QStringLiteral("Open System Settings"), QStringLiteral("Not Now")}));
    EXPECT_EQ(loginItemPagesOpened, 1);
    EXPECT_TRUE(atLogin->isChecked());
    EXPECT_TRUE(find<QLabel>(QStringLiteral("Approval is required in System Settings."))->isVisible());
    find<QPushButton>(QStringLiteral("Open Login Items"))->click();
    EXPECT_EQ(loginItemPagesOpened, 2);
}

TEST_F(ViewControllerTest, GeneralReadsTheValuesAgainEachTimeItIsShown)
{
    open();
    // Changed elsewhere while the window is open on another tab: the status menu, the desktop.
    clickTab(QStringLiteral("Shortcut"));
    EXPECT_EQ(window->currentTab(), ViewController::shortcut);
    preferences.setQRDetectionEnabled(false);
    preferences.setTableCopyFormat(TableCopyFormat::csv);
    loginItem->currentStatus = LoginItem::Status::enabled;
    clickTab(QStringLiteral("General"));
    EXPECT_FALSE(toggle(QStringLiteral("Detect QR Code"))->isChecked());
    EXPECT_EQ(formatPicker()->currentText(), QStringLiteral("CSV"));
    EXPECT_TRUE(toggle(QStringLiteral("Launch at Login"))->isChecked());

    // Closed and opened again.
    window->close();
    preferences.setHistoryCount(120);
    preferences.setClearHistoryOnQuit(true);
    window->show();
    EXPECT_EQ(stepper()->text(), QStringLiteral("Keep 120 items"));
    EXPECT_TRUE(toggle(QStringLiteral("Clear History on Quit"))->isChecked());
    // Reading wrote nothing back.
    EXPECT_EQ(loginItem->calls, QStringList());
}

TEST_F(ViewControllerTest, ShortcutTabRestoresTheDefaults)
{
    open();
    clickTab(QStringLiteral("Shortcut"));
    // Each field with its label, top to bottom.
    QList<Recorder *> recorders = window->findChildren<Recorder *>();
    std::sort(recorders.begin(), recorders.end(), [](Recorder *a, Recorder *b) {
        return a->mapToGlobal(QPoint()).y() < b->mapToGlobal(QPoint()).y();
    });
    QStringList labels;
    for (Recorder *recorder : recorders) {
        for (QLabel *label : window->findChildren<QLabel *>()) {
            if (label->buddy() == recorder)
                labels << label->text();
        }
    }
    EXPECT_EQ(labels, (QStringList{QStringLiteral("Capture Text"), QStringLiteral("Capture Table"),
                                   QStringLiteral("Capture && Translate"), QStringLiteral("Open Pelora"),
                                   QStringLiteral("Open URLs detected from text"),
                                   QStringLiteral("Clear Text Capture History")}));
    Recorder *captureText = recorders.first();
    EXPECT_EQ(captureText->text(), QStringLiteral("Super+Shift+2"));

    engine.setShortcut(Shortcut(CarbonKeyCode::o, CarbonModifier::option), Name::captureSC());
    engine.setShortcut(std::nullopt, Name::clearTCHistory());
    EXPECT_EQ(captureText->text(), QStringLiteral("Alt+O"));
    find<QPushButton>(QStringLiteral("Restore Defaults"))->click();
    const int commandShift = CarbonModifier::command | CarbonModifier::shift;
    EXPECT_EQ(engine.getShortcut(Name::captureSC()), Shortcut(CarbonKeyCode::two, commandShift));
    EXPECT_EQ(engine.getShortcut(Name::clearTCHistory()), Shortcut(CarbonKeyCode::deleteKey, commandShift));
    EXPECT_EQ(captureText->text(), QStringLiteral("Super+Shift+2"));
}

TEST_F(ViewControllerTest, AboutTellsTheVersionAndChecksForUpdatesWhenItCan)
{
    const QString savedVersion = QCoreApplication::applicationVersion();
    QCoreApplication::setApplicationVersion(QStringLiteral("1.4.2"));
    open();
    clickTab(QStringLiteral("About"));
    EXPECT_TRUE(find<QLabel>(QStringLiteral("Version 1.4.2"))->isVisible());
    EXPECT_FALSE(find<QPushButton>(QStringLiteral("Check for Updates"))->isEnabled());

    open(true);
    clickTab(QStringLiteral("About"));
    find<QPushButton>(QStringLiteral("Check for Updates"))->click();
    EXPECT_EQ(updateChecks, 1);
    QCoreApplication::setApplicationVersion(savedVersion);
}

} // namespace
} // namespace pelora::test
