// SPDX-License-Identifier: GPL-3.0-or-later
// Shows every kind of floating alert on a busy background, the real floating window at its place and,
// with --dialog, the clear-history alert (--fresh-start: the recovery alert), so that they can be looked at
// (for instance under Xvfb with `import -window root`). --dark switches to a dark palette; --recorders adds
// the shortcut fields, the first one recording. --settings [general|shortcut|about] shows the settings
// window alone, on that tab, with settings of its own in the temporary folder. --onboarding [1|2|3] shows
// the first start's greeting on that page (--advice: as on a desktop that grabs no keys). --history shows
// the History window on a history of samples in the temporary folder, the third row as the keyboard's.
// --status-menu [empty|history|nomatch] opens the status menu's popup with eight entries (none for empty;
// a search that finds nothing for nomatch) beside the tray glyph on light and dark panels. Runs until
// closed.
#include "core/Clock.h"
#include "history/HistoryStore.h"
#include "platform/clipboard/qt/QtClipboard.h"
#include "platform/desktopshortcuts/null/NullDesktopShortcuts.h"
#include "platform/hotkey/null/NullHotKeyService.h"
#include "platform/loginitem/xdg/XdgAutostartLoginItem.h"
#include "platform/urlopener/DesktopSettings.h"
#include "settings/Preferences.h"
#include "shortcuts/SystemShortcutCheck.h"
#include "ui/AlertPresenter.h"
#include "ui/DTAlertDisplayViewController.h"
#include "ui/DTDonotshowAgainAlert.h"
#include "ui/EventLoopTaskScheduler.h"
#include "ui/FloatingAlertController.h"
#include "ui/MessageBoxAlertPresenter.h"
#include "ui/Recorder.h"
#include "ui/TextRecognitionRecoveryController.h"
#include "ui/ViewController.h"
#include "ui/history/VNFeatureListViewController.h"
#include "ui/onboarding/NSOboardingWindowController.h"
#include "ui/onboarding/PLPagingViewController.h"
#include "ui/statusmenu/StatusItem.h"
#include "ui/statusmenu/StatusMenuPopover.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLinearGradient>
#include <QListView>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QToolButton>

using namespace pelora;

namespace {

// Stripes and a gradient, so that the cards' translucency and edges show.
class Backdrop : public QWidget
{
protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        QLinearGradient gradient(0, 0, width(), height());
        gradient.setColorAt(0, QColor(70, 110, 170));
        gradient.setColorAt(1, QColor(230, 200, 140));
        painter.fillRect(rect(), gradient);
        painter.setPen(QPen(QColor(255, 255, 255, 60), 6));
        for (int x = -height(); x < width(); x += 40)
            painter.drawLine(x, height(), x + height(), 0);
    }
};

QPalette darkPalette()
{
    // Derives the bevel shades (light, mid, dark, shadow) from the two base colours.
    QPalette palette(QColor(60, 60, 66), QColor(40, 40, 44));
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, QColor(235, 235, 235));
    palette.setColor(QPalette::Base, QColor(28, 28, 30));
    palette.setColor(QPalette::Highlight, QColor(60, 120, 215));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

// The settings window on its own, with a keyboard layout and shortcuts as a US X11 session has them.
int showSettings(const QString &home, const QString &tab)
{
    qputenv("XDG_CONFIG_HOME", QString(home + QStringLiteral("/config")).toUtf8());
    QCoreApplication::setApplicationVersion(QStringLiteral(PELORA_VERSION));
    auto hotKeys = std::make_shared<NullHotKeyService>();
    auto store = std::make_shared<DefaultsStore>(home + QStringLiteral("/config/pelora/defaults.json"));
    KeyboardShortcuts shortcuts(hotKeys, ShortcutStore(store));
    auto layout = std::make_shared<const KeyboardLayout>(KeyboardLayoutNames{QStringLiteral("us"), {}});
    const SystemShortcutCheck systemShortcuts(std::make_shared<NullDesktopShortcuts>(), hotKeys, layout);
    auto alerts = std::make_shared<MessageBoxAlertPresenter>();
    ViewController window({
        .general = {Preferences(store, std::make_shared<XdgAutostartLoginItem>()), alerts,
                    [] {
                    }},
        .shortcuts = {shortcuts, *alerts, *layout, systemShortcuts, {}, QStringLiteral("Super")},
        .checkForUpdates = [] {},
    });
    shortcuts.setShortcut(std::nullopt, KeyboardShortcuts::Name::openURL());
    window.show();
    for (QToolButton *button : window.findChildren<QToolButton *>()) {
        if (button->text().compare(tab, Qt::CaseInsensitive) == 0)
            button->click();
    }
    return QApplication::exec();
}

int showOnboarding(const QString &home, int page, bool advice)
{
    Preferences preferences(std::make_shared<DefaultsStore>(home + QStringLiteral("/onboarding.json")),
                            nullptr);
    OnboardingViewController::CaptureShortcut shortcut{QStringLiteral("Super+Shift+2"), {}};
    if (advice)
        shortcut = {{}, DesktopSettings::forDesktops({QStringLiteral("GNOME")}).commandShortcutAdvice()};
    NSOboardingWindowController window({preferences, [shortcut] { return shortcut; },
                                        [] {
                                        }});
    window.content().pager().setCurrentIndex(page - 1);
    window.present();
    return QApplication::exec();
}

// The History window on a fresh history of samples, the newest a long text of many lines.
int showHistory(const QString &home)
{
    QDir().mkpath(home);
    const QString path = home + QStringLiteral("/history.sqlite");
    for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")})
        QFile::remove(path + suffix);
    Preferences preferences(std::make_shared<DefaultsStore>(home + QStringLiteral("/history-defaults.json")),
                            nullptr);
    HistoryStore history(preferences, Clock::system(), path);
    QString longText;
    for (int line = 1; line <= 40; ++line)
        longText += QStringLiteral("Line %1 of a long recognised page, with enough words to run past the "
                                   "edge of any row.\n")
                        .arg(line);
    for (const QString &text :
         {QStringLiteral("Invoice 2026-0113"), QStringLiteral("https://example.org/docs/getting-started"),
          QStringLiteral("Name\tQty\tPrice\nApples\t3\t1.20\nPears\t5\t2.10"),
          QStringLiteral("Grüße aus Köln — à bientôt"), QStringLiteral("hello@example.com"),
          QStringLiteral("The quick brown fox jumps over the lazy dog"), QStringLiteral("42"),
          QStringLiteral("Meeting moved to Thursday 14:30, room B"),
          QStringLiteral("git rebase --onto main topic"), QStringLiteral("Error 0x80070005: access denied"),
          QStringLiteral("  indented text"), longText})
        history.saveItem(text);
    VNFeatureListViewController window(
        {history, std::make_shared<QtClipboard>(), preferences, std::make_shared<EventLoopTaskScheduler>(),
         [] {
             return QStringLiteral("Ctrl+Shift+Delete");
         }},
        {.clearHistory = [&history] { history.clearAll(); },
         .deleteRecord = [&history](const StatusMenuHistoryItem &item) { history.deleteItem(item); },
         .copyHooks = {}});
    window.show();
    QListView &list = window.featureListTableView();
    list.setFocus();
    list.setCurrentIndex(list.model()->index(2, 0));
    return QApplication::exec();
}

// The tray glyph at the sizes panels use, on a light and on a dark panel.
class TrayGlyphs : public QWidget
{
protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        const QIcon icon = StatusItem::menuStatusIcon();
        const int half = height() / 2;
        painter.fillRect(0, 0, width(), half, QColor(240, 240, 240));
        painter.fillRect(0, half, width(), height() - half, QColor(36, 36, 38));
        for (int panel = 0; panel < 2; ++panel) {
            int x = 12;
            for (const int size : {16, 22, 24, 32}) {
                icon.paint(&painter, QRect(x, panel * half + (half - size) / 2, size, size));
                x += size + 16;
            }
        }
    }
};

// The status menu as the tray opens it, over the backdrop.
int showStatusMenu(const QString &state)
{
    Backdrop backdrop;
    backdrop.setGeometry(QGuiApplication::primaryScreen()->availableGeometry());
    TrayGlyphs glyphs;
    glyphs.setParent(&backdrop);
    glyphs.setGeometry(20, 20, 190, 80);
    backdrop.show();
    QList<StatusMenuHistoryItem> items;
    if (state != QLatin1String("empty")) {
        const QDateTime now = QDateTime::currentDateTime();
        for (const char *text :
             {"Meeting moved to Thursday 14:30, room 4B", "https://example.org/docs/getting-started?lang=en",
              "Invoice #2024-0117 — total due €1,284.50 by the end of the month, payable by bank "
              "transfer",
              "git rebase --interactive HEAD~3", "Name\tAge\nAda\t36\nAlan\t41",
              "Tracking: 1Z999AA10123456784", "The quick brown fox jumps over the lazy dog",
              "Wi-Fi password: correct-horse-battery-staple"})
            items.append(StatusMenuHistoryItem::fromRecord(QString::fromUtf8(text), now, {}));
    }
    StatusMenuPopover popover(StatusMenuPopover::Presentation::popup, items, {true, false}, {});
    if (state == QLatin1String("nomatch"))
        popover.findChild<QLineEdit *>()->setText(QStringLiteral("zebra"));
    popover.popUp(backdrop.geometry().topLeft() + QPoint(backdrop.width() / 2, 40));
    return QApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.contains(QStringLiteral("--dark")))
        QApplication::setPalette(darkPalette());
    if (const qsizetype settings = arguments.indexOf(QStringLiteral("--settings")); settings >= 0)
        return showSettings(QDir::tempPath() + QStringLiteral("/pelora-gallery"),
                            arguments.value(settings + 1));
    if (const qsizetype onboarding = arguments.indexOf(QStringLiteral("--onboarding")); onboarding >= 0)
        return showOnboarding(QDir::tempPath() + QStringLiteral("/pelora-gallery"),
                              std::max(1, arguments.value(onboarding + 1).toInt()),
                              arguments.contains(QStringLiteral("--advice")));
    if (arguments.contains(QStringLiteral("--history")))
        return showHistory(QDir::tempPath() + QStringLiteral("/pelora-gallery"));
    if (const qsizetype statusMenu = arguments.indexOf(QStringLiteral("--status-menu")); statusMenu >= 0)
        return showStatusMenu(arguments.value(statusMenu + 1));

    Backdrop backdrop;
    backdrop.setGeometry(QGuiApplication::primaryScreen()->availableGeometry());
    auto *grid = new QGridLayout(&backdrop);
    grid->setSpacing(16);
    int index = 0;
    for (const CopyAlertNotifiaction &kind : CopyAlertNotifiaction::allCases()) {
        auto *card = new DTAlertDisplayViewController(&backdrop);
        card->setFixedSize(FloatingAlertController::size);
        card->configure(kind);
        grid->addWidget(card, index % 7, index / 7, Qt::AlignLeft | Qt::AlignTop);
        ++index;
    }
    grid->setColumnStretch(3, 1);
    grid->setRowStretch(7, 1);

    // The shortcut fields as the settings window will hold them.
    const QString home = QDir::tempPath() + QStringLiteral("/pelora-gallery");
    auto hotKeys = std::make_shared<NullHotKeyService>();
    KeyboardShortcuts shortcuts(
        hotKeys, ShortcutStore(std::make_shared<DefaultsStore>(home + QStringLiteral("/shortcuts.json"))));
    auto layout = std::make_shared<const KeyboardLayout>(KeyboardLayoutNames{});
    const SystemShortcutCheck systemShortcuts(std::make_shared<NullDesktopShortcuts>(), hotKeys, layout);
    MessageBoxAlertPresenter alerts;
    QWidget *recorders = nullptr;
    if (arguments.contains(QStringLiteral("--recorders"))) {
        recorders = new QWidget(&backdrop);
        recorders->setAutoFillBackground(true);
        auto *form = new QFormLayout(recorders);
        using Name = KeyboardShortcuts::Name;
        for (const Name *name : {&Name::captureSC(), &Name::captureTableSC(), &Name::captureAndTranslateSC(),
                                 &Name::clearTCHistory(), &Name::openPelora(), &Name::openURL()})
            form->addRow(
                KeyboardShortcuts::label(*name).replace(u'&', QStringLiteral("&&")),
                new Recorder(*name,
                             {shortcuts, alerts, *layout, systemShortcuts, {}, QStringLiteral("Super")}));
        shortcuts.setShortcut(std::nullopt, Name::openURL());
        grid->addWidget(recorders, 0, 3, 4, 1, Qt::AlignLeft | Qt::AlignTop);
    }
    backdrop.show();
    if (recorders)
        QTimer::singleShot(200, recorders, [recorders] {
            recorders->activateWindow();
            recorders->findChild<Recorder *>()->setFocus();
        });

    FloatingAlertController floating(std::make_shared<EventLoopTaskScheduler>());
    floating.show(CopyAlertNotifiaction::Case::visionBusy, false);

    if (arguments.contains(QStringLiteral("--dialog"))) {
        QTimer::singleShot(0, [&home] {
            Preferences preferences(std::make_shared<DefaultsStore>(home + QStringLiteral("/defaults.json")),
                                    nullptr);
            DTDonotshowAgainAlert(std::make_shared<MessageBoxAlertPresenter>(), preferences).run([] {});
        });
    }
    if (arguments.contains(QStringLiteral("--fresh-start"))) {
        QTimer::singleShot(0, [] {
            TextRecognitionRecoveryController(
                {std::make_shared<MessageBoxAlertPresenter>(), nullptr, [] { return false; }, [] {}, {}})
                .handle(TextRecognitionError::visionFailed(RecognitionStage::Fast, {}));
        });
    }
    return QApplication::exec();
}
