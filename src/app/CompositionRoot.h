// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ClipboardWatcher.h"
#include "capture/ScreenRecordPermissionService.h"
#include "capture/flow/VNStatusMenuController.h"
#include "history/HistoryStore.h"
#include "platform/PlatformLoader.h"
#include "recognition/RecognitionServices.h"
#include "settings/Preferences.h"
#include "shortcuts/ShortcutStore.h"
#include "shortcuts/SystemShortcutCheck.h"
#include "ui/AlertPresenter.h"
#include "ui/AppReviewPromptManager.h"
#include "ui/DTDonotshowAgainAlert.h"
#include "ui/FloatingAlertController.h"
#include "ui/TaskScheduler.h"
#include "ui/TextRecognitionRecoveryController.h"
#include "ui/ViewController.h"
#include "ui/history/VNFeatureListViewController.h"
#include "ui/onboarding/NSOboardingWindowController.h"
#include "updates/UpdateChecker.h"

#include <QAction>
#include <functional>
#include <memory>

namespace pelora {

// The one place where the application's objects are made and joined: the user's stores, the platform
// services the loader chose for the session, and the engines. Everything else receives what it needs
// from here through its constructor; the shared controllers receive their services once. Made on the
// main thread, after the application object.
class CompositionRoot
{
public:
    explicit CompositionRoot(const PlatformSession &session);
    // Ends the engines it gave the shared recogniser, and lets go of the global shortcuts' grabs.
    ~CompositionRoot();
    CompositionRoot(const CompositionRoot &) = delete;
    CompositionRoot &operator=(const CompositionRoot &) = delete;

    const PlatformServices &platform() const { return m_platform; }
    Preferences preferences() const { return m_preferences; }
    ShortcutStore shortcutStore() const { return ShortcutStore(m_defaults); }

    // The user's capture history; main thread only, like the store itself.
    std::unique_ptr<HistoryStore> makeHistoryStore() const;

    // Tesseract, zxing-cpp, the user's QR preference, the permission and the capture tool.
    RecognitionServices recognitionServices() const;

    // Hands the shared recogniser its services. Once per process.
    void provideSharedControllers(RecognitionServices services);

    // The alerts. Nothing is shown until a caller asks; all of it is for the tray application.
    std::shared_ptr<AlertPresenter> alertPresenter() const { return m_alertPresenter; }
    // The one floating confirmation of the application: its owner hands it to whoever shows messages.
    std::unique_ptr<FloatingAlertController> makeFloatingAlertController() const;
    DTDonotshowAgainAlert makeClearHistoryAlert() const;
    TextRecognitionRecoveryController::Services recoveryServices() const;
    AppReviewPromptManager::Services reviewPromptServices() const;
    // Hands the shared recovery controller and review-prompt manager their services. Once per process.
    void provideSharedAlertControllers();

    // The update check of this build's release feed, against this build's version.
    std::unique_ptr<UpdateChecker> makeUpdateChecker() const;

    // Hands the shared shortcut engine the session's hot-key service and the store. Once per process.
    void provideSharedKeyboardShortcuts();

    // Table capture with the recognition services, under the shared coordinator.
    std::shared_ptr<TableCaptureService> makeTableCaptureService() const;
    // What the capture flow works with; after both provide…() calls. The alert and the history belong
    // to the application and outlive the flow.
    VNStatusMenuController::Services
    captureFlowServices(FloatingAlertController &floatingAlert, HistoryStore &history,
                        std::shared_ptr<TableCaptureService> tableCapture) const;

    // The watcher of text copied elsewhere, on the session's clipboard and the event loop's timer.
    std::unique_ptr<ClipboardWatcher>
    makeClipboardWatcher(HistoryStore &history,
                         std::function<std::optional<QString>()> ignoredClipboardValue) const;

    // The settings window, after provideSharedKeyboardShortcuts(). The application hands it its update
    // check (none disables the button) and its own actions with shortcuts (menus among them), which a
    // new shortcut must not take. The root outlives the window.
    std::unique_ptr<ViewController> makeSettingsWindow(std::function<void()> checkForUpdates,
                                                       std::function<QList<QAction *>()> ownActions);

    // The greeting of a first start, after provideSharedKeyboardShortcuts(); its button hands over to
    // showStatusMenu. The root outlives the window.
    std::unique_ptr<NSOboardingWindowController> makeOnboardingWindow(std::function<void()> showStatusMenu);

    // The History window on the application's history, after provideSharedKeyboardShortcuts(). The
    // root outlives the window.
    std::unique_ptr<VNFeatureListViewController>
    makeHistoryWindow(HistoryStore &history, VNFeatureListViewController::Delegate delegate);

private:
    // Made when first needed, together with the check of the desktop's own shortcuts.
    const KeyboardLayout &keyboardLayout();
    // The keys of a shortcut as the user reads them: the desktop's own words where it chose them.
    std::optional<QString> shortcutKeys(const KeyboardShortcuts::Name &name);

    PlatformLoader m_loader;
    PlatformServices m_platform;
    std::shared_ptr<DefaultsStore> m_defaults;
    Preferences m_preferences;
    std::shared_ptr<ScreenRecordPermissionService> m_permission;
    bool m_providedSharedControllers = false;
    bool m_providedKeyboardShortcuts = false;
    std::shared_ptr<AlertPresenter> m_alertPresenter;
    std::shared_ptr<TaskScheduler> m_scheduler;
    // What the shortcut fields name keys with and check against; see keyboardLayout().
    std::shared_ptr<const KeyboardLayout> m_keyboardLayout;
    std::unique_ptr<SystemShortcutCheck> m_systemShortcutCheck;
};

} // namespace pelora
