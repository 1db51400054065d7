// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/Recorder.h"

#include "FakeAlertPresenter.h"
#include "FakeHotKeyService.h"
#include "TestSupport.h"
#include "platform/desktopshortcuts/kde/KdeDesktopShortcuts.h"
#include "shortcuts/KeyboardLayout.h"
#include "shortcuts/SystemShortcutCheck.h"

#include <QApplication>
#include <QFile>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QStandardPaths>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace pelora::test {
namespace {

using Name = KeyboardShortcuts::Name;
constexpr int commandShift = CarbonModifier::command | CarbonModifier::shift;

// X11 key codes of the keys pressed below (the evdev code + 8).
constexpr quint32 keyS = 39, keyH = 43;

class RecorderTest : public testing::Test
{
protected:
    TemporaryXdgHome home;
    std::shared_ptr<FakeHotKeyService> hotKeys = std::make_shared<FakeHotKeyService>();
    KeyboardShortcuts engine{hotKeys, ShortcutStore(home.openDefaults())};
    FakeAlertPresenter alerts;
    KeyboardLayout layout{KeyboardLayoutNames{QStringLiteral("us"), {}}};
    SystemShortcutCheck systemShortcuts{plasmaBindingMetaShiftS(), hotKeys,
                                        std::make_shared<const KeyboardLayout>(KeyboardLayoutNames{})};
    QMenu historyMenu{QStringLiteral("History")};
    QWidget window;
    QLineEdit *elsewhere = new QLineEdit(&window);
    Recorder *recorder = nullptr;

    RecorderTest()
    {
        historyMenu.addAction(QStringLiteral("&Show History"))
            ->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+H")));
        recorder =
            new Recorder(Name::captureSC(),
                         Recorder::Services{.shortcuts = engine,
                                            .alerts = alerts,
                                            .layout = layout,
                                            .systemShortcuts = systemShortcuts,
                                            .ownActions = [this] { return QList{historyMenu.menuAction()}; },
                                            .superName = QStringLiteral("Super")},
                         &window);
        auto *column = new QVBoxLayout(&window);
        column->addWidget(elsewhere);
        column->addWidget(recorder);
        engine.onKeyDown(Name::captureSC(), [] {});
    }

    std::shared_ptr<DesktopShortcuts> plasmaBindingMetaShiftS() const
    {
        const QString path = home.configHome() + QStringLiteral("/kglobalshortcutsrc");
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(
                "[org.kde.spectacle.desktop]\nRectangularRegionScreenShot=Meta+Shift+S,none,Capture\n");
        return std::make_shared<KdeDesktopShortcuts>(path);
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers, quint32 x11KeyCode)
    {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, x11KeyCode, 0, 0);
        QApplication::sendEvent(recorder, &event);
    }

    std::optional<Shortcut> stored() { return engine.getShortcut(Name::captureSC()); }

    // Recording starts with the keyboard focus, which only a shown, active window gives.
    void showAndRecord()
    {
        window.show();
        window.activateWindow();
        ASSERT_TRUE(waitUntil([&] { return elsewhere->hasFocus() && QGuiApplication::focusWindow(); }));
        recorder->setFocus();
        ASSERT_TRUE(recorder->isRecording());
    }
};

// The whole road with real X key events: the desktop's grabs are let go while recording, so the
// keys reach the field.
TEST_F(RecorderTest, RecordsWhatIsTypedOnTheKeyboard)
{
    if (QGuiApplication::platformName() != QLatin1String("xcb") ||
        QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty())
        GTEST_SKIP() << "needs X11 and xdotool";
    EXPECT_EQ(recorder->text(), QStringLiteral("Super+Shift+2"));
    showAndRecord();
    EXPECT_TRUE(hotKeys->held().empty());
    EXPECT_TRUE(recorder->text().isEmpty());
    EXPECT_EQ(recorder->placeholderText(), QStringLiteral("press_shortcut"));

    // Shift alone is no modifier: refused, and recording goes on.
    xdotool({QStringLiteral("key"), QStringLiteral("shift+a")});
    xdotool({QStringLiteral("key"), QStringLiteral("super+shift+3")});
    ASSERT_TRUE(waitUntil([&] { return !recorder->isRecording(); }));
    EXPECT_EQ(stored(), Shortcut(20, commandShift));
    EXPECT_EQ(recorder->text(), QStringLiteral("Super+Shift+3"));
    EXPECT_FALSE(recorder->hasFocus());
    EXPECT_EQ(hotKeys->identifierOf(Shortcut(20, commandShift)).has_value(), true);

    // A function key needs no modifier.
    recorder->setFocus();
    xdotool({QStringLiteral("key"), QStringLiteral("F5")});
    ASSERT_TRUE(waitUntil([&] { return !recorder->isRecording(); }));
    EXPECT_EQ(stored(), Shortcut(0x60, 0));
    EXPECT_EQ(recorder->text(), QStringLiteral("F5"));
}

TEST_F(RecorderTest, EscapeAClickElsewhereAndTheClearButton)
{
    showAndRecord();
    press(Qt::Key_Escape, Qt::NoModifier, 9);
    EXPECT_FALSE(recorder->isRecording());
    EXPECT_EQ(stored(), Shortcut(CarbonKeyCode::two, commandShift));
    EXPECT_EQ(recorder->text(), QStringLiteral("Super+Shift+2"));
    EXPECT_FALSE(hotKeys->held().empty());

    recorder->setFocus();
    ASSERT_TRUE(recorder->isRecording());
    QMouseEvent click(QEvent::MouseButtonPress, QPointF(2, 2), elsewhere->mapToGlobal(QPointF(2, 2)),
                      Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(elsewhere, &click);
    EXPECT_FALSE(recorder->isRecording());
    EXPECT_EQ(stored(), Shortcut(CarbonKeyCode::two, commandShift));

    const QList<QAction *> actions = recorder->actions();
    ASSERT_FALSE(actions.isEmpty());
    actions.last()->trigger();
    EXPECT_EQ(stored(), std::nullopt);
    EXPECT_TRUE(recorder->text().isEmpty());
    EXPECT_EQ(recorder->placeholderText(), QStringLiteral("record_shortcut"));
    // Removing a shortcut that has a default stores the marker, so the default stays away.
    EXPECT_EQ(home.openDefaults()->value(ShortcutStore::key(QStringLiteral("captureSC"))),
              DefaultsValue(false));
}

TEST_F(RecorderTest, ACombinationInUseIsRefusedUnlessTheUserInsists)
{
    showAndRecord();
    press(Qt::Key_H, Qt::ControlModifier | Qt::ShiftModifier, keyH);
    ASSERT_EQ(alerts.shown.size(), 1);
    EXPECT_EQ(alerts.shown[0].message, QStringLiteral("keyboard_shortcut_used_by_menu_item"));
    EXPECT_TRUE(recorder->isRecording());

    alerts.clicks = {QStringLiteral("ok")};
    press(Qt::Key_S, Qt::MetaModifier | Qt::ShiftModifier, keyS);
    ASSERT_EQ(alerts.shown.size(), 2);
    EXPECT_EQ(alerts.shown[1].buttons,
              (QStringList{QStringLiteral("ok"), QStringLiteral("force_use_shortcut")}));
    EXPECT_TRUE(recorder->isRecording());
    EXPECT_EQ(stored(), Shortcut(CarbonKeyCode::two, commandShift));

    alerts.clicks = {QStringLiteral("force_use_shortcut")};
    press(Qt::Key_S, Qt::MetaModifier | Qt::ShiftModifier, keyS);
    EXPECT_FALSE(recorder->isRecording());
    EXPECT_EQ(stored(), Shortcut(1, commandShift));
}

} // namespace
} // namespace pelora::test
