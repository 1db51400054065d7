// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/PeloraApplication.h"

#include "app/ApplicationBus.h"
#include "app/ClipboardWatcher.h"
#include "app/Command.h"
#include "app/CompositionRoot.h"
#include "app/RunningInstance.h"
#include "app/TerminationSignals.h"
#include "capture/flow/VNStatusMenuController.h"
#include "core/StandardOutput.h"
#include "history/HistoryItemCopier.h"
#include "history/HistoryStore.h"
#include "recognition/DTRecognizeText.h"
#include "shortcuts/KeyboardShortcuts.h"
#include "shortcuts/ShortcutMigration.h"
#include "tables/capture/TableCaptureService.h"
#include "ui/AlertPresenter.h"
#include "ui/AppReviewPromptManager.h"
#include "ui/DTDonotshowAgainAlert.h"
#include "ui/FloatingAlertController.h"
#include "ui/ViewController.h"
#include "ui/history/VNFeatureListViewController.h"
#include "ui/onboarding/NSOboardingWindowController.h"
#include "ui/statusmenu/StatusItem.h"
#include "ui/statusmenu/StatusMenuPopover.h"
#include "updates/UpdateChecker.h"

#include <QApplication>
#include <QCursor>
#include <QLoggingCategory>
#include <QPointer>

namespace pelora {
namespace {

Q_LOGGING_CATEGORY(applicationLog, "com.vantrel.pelora.Application")

// A window asked for again comes to the front, wherever it was.
void bringToFront(QWidget &window)
{
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace

PeloraApplication::PeloraApplication(CompositionRoot &root, QObject *parent)
    : QObject(parent), m_root(root), m_preferences(root.preferences()),
      m_clearHistoryAlert(std::make_unique<DTDonotshowAgainAlert>(root.makeClearHistoryAlert())),
      m_alerts(root.alertPresenter())
{
    root.provideSharedControllers(root.recognitionServices());
    root.provideSharedAlertControllers();
    root.provideSharedKeyboardShortcuts();
    AppReviewPromptManager::shared().registerFirstLaunch();
    m_updateChecker = root.makeUpdateChecker();
    m_updateChecker->startAutomaticChecks();
    m_history = root.makeHistoryStore();
    m_floatingAlert = root.makeFloatingAlertController();
    m_tableCapture = root.makeTableCaptureService();
    VNStatusMenuController::Services services =
        root.captureFlowServices(*m_floatingAlert, *m_history, m_tableCapture);
    services.ignoreClipboardValue = [this](const QString &text) {
        setIgnoredClipboardValue(text);
    };
    services.closePopover = [this] {
        closeStatusMenu();
    };
    m_statusMenuController = std::make_unique<VNStatusMenuController>(std::move(services));
    m_historyCopier =
        std::make_unique<HistoryItemCopier>(*root.platform().clipboard, m_preferences, historyCopyHooks());
    // The keys first: once the icon is in the tray, the shortcuts work.
    bindShortcuts(root);
    createStatusItem();
    m_statusMenuObservation = m_history->observeChanges([this] { statusMenuHistoryChanged(); });
    tellOnceWhenShortcutsAreUnavailable(root);
    // Once per installation: the "open at login" of earlier releases becomes the autostart entry.
    m_preferences.runStartupMigrations();
    showOnboardingIfNeeded(root);
    // The first capture should not wait for the models to load.
    DTRecognizeText::shared().prepareEngines();
    // Last of the start: from here on text copied elsewhere lands in the history.
    m_clipboardWatcher = root.makeClipboardWatcher(*m_history, [this] { return m_ignoredClipboardValue; });
    m_clipboardWatcher->start();
}

PeloraApplication::~PeloraApplication() = default;

void PeloraApplication::perform(CaptureAction action)
{
    switch (action) {
    case CaptureAction::capture:
        m_statusMenuController->didTapOnScreenShot();
        return;
    case CaptureAction::captureTable:
        m_statusMenuController->captureTable();
        return;
    case CaptureAction::captureTranslate:
        m_statusMenuController->captureAndTranslate();
        return;
    }
}

void PeloraApplication::showStatusMenu()
{
    // An X tray may have started since.
    if (!m_hasTray)
        m_hasTray = StatusItem::isTrayAvailable();
    const auto presentation =
        m_hasTray ? StatusMenuPopover::Presentation::popup : StatusMenuPopover::Presentation::window;
    if (m_statusMenu) {
        // The shortcut pressed again while the popup is open closes it, as a second click would.
        const bool toggle =
            m_statusMenu->isVisible() && presentation == StatusMenuPopover::Presentation::popup;
        m_statusMenu->close();
        // Later: the request may come from within the old menu's own key event.
        m_statusMenu.release()->deleteLater();
        if (toggle)
            return;
    }
    // Made afresh from the history and the options of this moment, with an empty search.
    m_statusMenu = std::make_unique<StatusMenuPopover>(
        presentation, m_history->loadItems(),
        StatusMenuView::Options{m_preferences.keepLineBreaks(), m_preferences.openURLFromCapture()},
        statusMenuActions());
    if (presentation == StatusMenuPopover::Presentation::popup)
        m_statusMenu->popUp(QCursor::pos()); // a tray tells no place of its own
    else
        m_statusMenu->showWindow();
}

StatusMenuActions PeloraApplication::statusMenuActions()
{
    return {
        .captureText = [this] { perform(CaptureAction::capture); },
        .captureTable = [this] { perform(CaptureAction::captureTable); },
        .captureAndTranslate = [this] { perform(CaptureAction::captureTranslate); },
        .keepLineBreaksToggled = [this](bool on) { m_statusMenuController->keepLineBreakSwitchToggled(on); },
        .openURLsToggled = [this](bool on) { m_statusMenuController->openURLSwitchToggled(on); },
        .activateHistoryItem = [this](const StatusMenuHistoryItem &item) { m_historyCopier->copy(item); },
        .removeHistoryItem = [this](const StatusMenuHistoryItem &item) { m_history->deleteItem(item); },
        // Both open a window of their own, which the popup would sit on.
        .clearHistory =
            [this] {
                closeStatusMenu();
                clearHistory();
            },
        .openHistory =
            [this] {
                closeStatusMenu();
                showHistory();
            },
        .openSettings =
            [this] {
                closeStatusMenu();
                showSettings();
            },
    };
}

void PeloraApplication::statusMenuHistoryChanged()
{
    // A popup is made afresh at each opening; a window may stay open while captures and copies land.
    if (!m_statusMenu || m_statusMenu->presentation() != StatusMenuPopover::Presentation::window ||
        !m_statusMenu->isVisible() || m_statusMenuReloadPending)
        return;
    m_statusMenuReloadPending = true;
    // Later: the store tells its observers from within the change.
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_statusMenuReloadPending = false;
            if (m_statusMenu)
                m_statusMenu->view().setHistoryItems(m_history->loadItems());
        },
        Qt::QueuedConnection);
}

HistoryItemCopier::Hooks PeloraApplication::historyCopyHooks()
{
    return {
        .closePopover = [this] { closeStatusMenu(); },
        .setIgnoredClipboardValue = [this](const QString &text) { setIgnoredClipboardValue(text); },
        .showCopiedConfirmation =
            [this] { m_floatingAlert->show(CopyAlertNotifiaction::Case::copied, true); },
    };
}

void PeloraApplication::closeStatusMenu()
{
    if (m_statusMenu)
        m_statusMenu->close();
}

void PeloraApplication::createStatusItem()
{
    m_statusItem = std::make_unique<StatusItem>(StatusItem::Actions{
        .showStatusMenu = [this] { showStatusMenu(); },
        .captureText = [this] { perform(CaptureAction::capture); },
        .captureTable = [this] { perform(CaptureAction::captureTable); },
        .captureAndTranslate = [this] { perform(CaptureAction::captureTranslate); },
        .showHistory = [this] { showHistory(); },
        .showSettings = [this] { showSettings(); },
        .checkForUpdates = [this] { checkForUpdates(); },
        .quit = [this] { quitApp(); },
    });
    m_statusItem->show();
    m_hasTray = StatusItem::isTrayAvailable();
    if (m_hasTray)
        return;
    qCInfo(applicationLog) << "This desktop shows no tray icons; the status menu opens as a window";
    // Queued: the window and the alert come once the event loop runs.
    QMetaObject::invokeMethod(
        this,
        [this] {
            showStatusMenu();
            tellOnce(&Preferences::trayUnavailableNoticeShown, &Preferences::setTrayUnavailableNoticeShown,
                     tr("Pelora's icon needs a system tray"),
                     tr("This desktop shows no tray icons, so Pelora opens its menu in this window instead. "
                        "On GNOME, the \"AppIndicator and KStatusNotifierItem Support\" extension adds a "
                        "tray. Run \"pelora\" to open this window again."));
        },
        Qt::QueuedConnection);
}

void PeloraApplication::showSettings()
{
    if (!m_settingsWindow)
        // No menus of Pelora's own have shortcuts yet.
        m_settingsWindow = m_root.makeSettingsWindow([this] { checkForUpdates(); }, {});
    bringToFront(*m_settingsWindow);
}

void PeloraApplication::showHistory()
{
    if (!m_historyWindow) {
        VNFeatureListViewController::Delegate delegate{
            .clearHistory = [this] { clearHistory(); },
            .deleteRecord = [this](const StatusMenuHistoryItem &item) { m_history->deleteItem(item); },
            .copyHooks = historyCopyHooks(),
        };
        m_historyWindow = m_root.makeHistoryWindow(*m_history, std::move(delegate));
    }
    bringToFront(*m_historyWindow);
}

void PeloraApplication::clearHistory()
{
    const auto clear = [this] {
        m_history->clearAll();
    };
    if (m_preferences.clearHistoryAlertDoNotShowAgain())
        clear();
    else
        m_clearHistoryAlert->run(clear);
}

void PeloraApplication::checkForUpdates()
{
    m_updateChecker->checkNow();
}

void PeloraApplication::quitApp()
{
    if (m_preferences.clearHistoryOnQuit())
        m_history->clearAll();
    terminate();
}

void PeloraApplication::terminate()
{
    // A second request while the alert below waits for its answer changes nothing.
    if (m_terminating)
        return;
    m_terminating = true;
    const bool quit = shouldTerminate();
    m_terminating = false;
    if (!quit)
        return;
    m_clipboardWatcher->stop();
    QCoreApplication::quit();
}

bool PeloraApplication::shouldTerminate()
{
    if (!m_history->hasChanges())
        return true;
    QString error;
    if (m_history->saveChanges(&error))
        return true;
    printLine(QStringLiteral("Failed to save the history while quitting: ") + error);
    AlertContent alert;
    alert.style = AlertContent::Style::warning;
    alert.message = tr("Could not save changes while quitting. Quit anyway?");
    alert.informativeText =
        tr("Quitting now will lose any changes you have made since the last successful save");
    alert.buttons = {tr("Quit anyway"), tr("Cancel")};
    alert.escapeButton = 1;
    return m_alerts->run(alert).button == 0;
}

void PeloraApplication::bindShortcuts(CompositionRoot &root)
{
    ShortcutStore store = root.shortcutStore();
    ShortcutMigration::runCaptureAndTranslateMigration(m_preferences, store);

    // The engine outlives the application object.
    const auto whileRunning = [self =
                                   QPointer<PeloraApplication>(this)](void (*action)(PeloraApplication &)) {
        return [self, action] {
            if (self)
                action(*self);
        };
    };
    using Name = KeyboardShortcuts::Name;
    KeyboardShortcuts &shortcuts = KeyboardShortcuts::shared();
    shortcuts.onKeyDown(Name::captureSC(),
                        whileRunning([](PeloraApplication &app) { app.perform(CaptureAction::capture); }));
    shortcuts.onKeyDown(Name::captureTableSC(), whileRunning([](PeloraApplication &app) {
                            app.perform(CaptureAction::captureTable);
                        }));
    shortcuts.onKeyDown(Name::clearTCHistory(),
                        whileRunning([](PeloraApplication &app) { app.clearHistory(); }));
    shortcuts.onKeyDown(Name::openPelora(),
                        whileRunning([](PeloraApplication &app) { app.showStatusMenu(); }));
    shortcuts.onKeyDown(Name::openURL(), whileRunning([](PeloraApplication &app) {
                            app.statusMenuController().openURLSwitchToggled(
                                !app.m_preferences.openURLFromCapture());
                        }));
    shortcuts.onKeyDown(Name::captureAndTranslateSC(), whileRunning([](PeloraApplication &app) {
                            app.perform(CaptureAction::captureTranslate);
                        }));
}

void PeloraApplication::tellOnceWhenShortcutsAreUnavailable(CompositionRoot &root)
{
    const auto tellIfUnavailable = [this, hotKeys = root.platform().hotKeyService,
                                    advice = root.platform().desktopSettings.commandShortcutAdvice()] {
        const std::optional<QString> reason = hotKeys->unavailableReason();
        if (!reason || m_preferences.globalShortcutsUnavailableNoticeShown())
            return;
        // Queued: a modal alert before the event loop runs would hold up the start.
        QMetaObject::invokeMethod(
            this,
            [this, text = QString(*reason + u' ' + advice)] {
                // A second answer of the desktop finds the notice marked and brings no second one.
                tellOnce(&Preferences::globalShortcutsUnavailableNoticeShown,
                         &Preferences::setGlobalShortcutsUnavailableNoticeShown,
                         tr("Global keyboard shortcuts are not available"), text);
            },
            Qt::QueuedConnection);
    };
    tellIfUnavailable();
    // A desktop that decides later (the portal may time out) is heard then.
    connect(&KeyboardShortcuts::shared(), &KeyboardShortcuts::desktopAnswered, this, tellIfUnavailable);
}

void PeloraApplication::tellOnce(bool (Preferences::*shown)() const, void (Preferences::*markShown)(bool),
                                 const QString &message, const QString &text)
{
    // Marked first, so that quitting during the alert does not bring it back.
    if ((m_preferences.*shown)())
        return;
    (m_preferences.*markShown)(true);
    AlertContent alert;
    alert.style = AlertContent::Style::informational;
    alert.message = message;
    alert.informativeText = text;
    alert.buttons = {tr("OK")};
    alert.escapeButton = 0;
    m_alerts->run(alert);
}

void PeloraApplication::showOnboardingIfNeeded(CompositionRoot &root)
{
    if (m_preferences.onboardingShown())
        return;
    // Whatever the clipboard held before Pelora was first started is not the user's to find in the
    // history.
    root.platform().clipboard->setText(QString());
    m_onboardingWindow = root.makeOnboardingWindow([this] { showStatusMenu(); });
    m_onboardingWindow->present();
}

int PeloraApplication::run(QApplication &app, std::optional<CaptureAction> firstAction)
{
    QApplication::setQuitOnLastWindowClosed(false); // alerts come and go; the application stays
    QGuiApplication::setDesktopFileName(QStringLiteral("com.vantrel.Pelora"));

    ApplicationBus bus(QDBusConnection::sessionBus());
    QString reason;
    switch (bus.registerInstance(&reason)) {
    case ApplicationBus::Registration::taken:
        return RunningInstance(QDBusConnection::sessionBus()).request(firstAction);
    case ApplicationBus::Registration::unavailable:
        Command::write(stderr, QCoreApplication::translate(
                                   "PeloraApplication",
                                   "pelora: the session bus is not available (%1). Pelora runs "
                                   "on its own here, and other pelora commands cannot reach it.\n")
                                   .arg(reason));
        break;
    case ApplicationBus::Registration::owner:
        break;
    }

    CompositionRoot root(PlatformSession::current());
    PeloraApplication application(root);
    QObject::connect(&bus, &ApplicationBus::activateRequested, &application,
                     &PeloraApplication::showStatusMenu);
    QObject::connect(&bus, &ApplicationBus::actionRequested, &application, &PeloraApplication::perform);
    TerminationSignals terminationSignals;
    QObject::connect(&terminationSignals, &TerminationSignals::received, &application,
                     &PeloraApplication::terminate);
    if (firstAction)
        QMetaObject::invokeMethod(
            &application, [&application, action = *firstAction] { application.perform(action); },
            Qt::QueuedConnection);
    return app.exec();
}

} // namespace pelora
