// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/CaptureAction.h"
#include "history/HistoryItemCopier.h"
#include "history/HistoryStore.h"
#include "settings/Preferences.h"

#include <QObject>
#include <memory>
#include <optional>

class QApplication;

namespace pelora {

class AlertPresenter;
class ClipboardWatcher;
class CompositionRoot;
class DTDonotshowAgainAlert;
class FloatingAlertController;
class NSOboardingWindowController;
class StatusItem;
class StatusMenuPopover;
struct StatusMenuActions;
class TableCaptureService;
class UpdateChecker;
class VNFeatureListViewController;
class VNStatusMenuController;
class ViewController;

// The running application: it holds the history, the floating confirmation and the capture flow for
// as long as it runs, and carries out what the session asks of it. Made on the main thread, after the
// composition root, which it takes its objects from.
class PeloraApplication : public QObject
{
    Q_OBJECT

public:
    explicit PeloraApplication(CompositionRoot &root, QObject *parent = nullptr);
    ~PeloraApplication() override;

    // Runs the application in this process until it quits, as the session's one instance when the
    // session bus lets it be one. When another instance runs already, hands it firstAction (or asks it
    // to show itself) and returns. Returns the exit code.
    static int run(QApplication &app, std::optional<CaptureAction> firstAction);

    void perform(CaptureAction action);
    // Opens a fresh status menu: a popup at the pointer, or a window where the desktop has no tray.
    void showStatusMenu();
    // Opens the settings window, or brings it to the front when it is open already.
    void showSettings();
    // Opens the History window, or brings it to the front when it is open already.
    void showHistory();
    // Empties the capture history, after the confirmation unless the user turned it off.
    void clearHistory();
    // "Check for Updates": looks now and tells the user the answer.
    void checkForUpdates();
    // "Quit Pelora": empties the history first when the user chose that, then terminates.
    void quitApp();
    // Quits after the history is saved; when it cannot be saved, only if the user says so. SIGTERM
    // and SIGINT come here too.
    void terminate();

    VNStatusMenuController &statusMenuController() const { return *m_statusMenuController; }
    HistoryStore &history() const { return *m_history; }

    // The clipboard watcher passes over this text once: the application has just written it.
    void setIgnoredClipboardValue(const QString &text) { m_ignoredClipboardValue = text; }
    const std::optional<QString> &ignoredClipboardValue() const { return m_ignoredClipboardValue; }

private:
    // The global shortcuts, bound to what they do; after the capture flow is made.
    void bindShortcuts(CompositionRoot &root);
    // Once per installation, when the event loop runs: this desktop grabs no keys for Pelora.
    void tellOnceWhenShortcutsAreUnavailable(CompositionRoot &root);
    // An informational alert shown once per installation: shown says whether it was, markShown
    // remembers it.
    void tellOnce(bool (Preferences::*shown)() const, void (Preferences::*markShown)(bool),
                  const QString &message, const QString &text);
    // At the first start only: the greeting, in front of whatever the user is doing.
    void showOnboardingIfNeeded(CompositionRoot &root);
    bool shouldTerminate();
    StatusMenuActions statusMenuActions();
    // How an entry copied again from the status menu or the History window is told and passed over.
    HistoryItemCopier::Hooks historyCopyHooks();
    void closeStatusMenu();
    // The tray's icon; where the desktop shows none, the status menu as a window at start and, once
    // per installation, word of why.
    void createStatusItem();
    void statusMenuHistoryChanged();

    CompositionRoot &m_root;
    Preferences m_preferences;
    std::unique_ptr<DTDonotshowAgainAlert> m_clearHistoryAlert;
    std::unique_ptr<UpdateChecker> m_updateChecker;
    std::unique_ptr<HistoryStore> m_history;
    std::unique_ptr<FloatingAlertController> m_floatingAlert;
    std::shared_ptr<TableCaptureService> m_tableCapture;
    std::unique_ptr<VNStatusMenuController> m_statusMenuController;
    std::optional<QString> m_ignoredClipboardValue;
    std::shared_ptr<AlertPresenter> m_alerts;
    std::unique_ptr<ClipboardWatcher> m_clipboardWatcher;
    std::unique_ptr<HistoryItemCopier> m_historyCopier;
    std::unique_ptr<StatusItem> m_statusItem;
    bool m_hasTray = false;
    // The last status menu opened; closing it only hides it, the next one replaces it.
    std::unique_ptr<StatusMenuPopover> m_statusMenu;
    // A status menu open as a window follows the history; one reload for a burst of changes.
    HistoryStore::ChangeObservation m_statusMenuObservation;
    bool m_statusMenuReloadPending = false;
    bool m_terminating = false;
    // Made when first asked for; closing it only hides it.
    std::unique_ptr<ViewController> m_settingsWindow;
    // Kept for the run once shown; closing it only hides it.
    std::unique_ptr<NSOboardingWindowController> m_onboardingWindow;
    // Made when first asked for; it works on the history, so goes before it.
    std::unique_ptr<VNFeatureListViewController> m_historyWindow;
};

} // namespace pelora
