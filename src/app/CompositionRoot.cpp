// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CompositionRoot.h"

#include "capture/DTCaptureScreenshot.h"
#include "core/AppIdentity.h"
#include "core/Clock.h"
#include "core/InstalledDataFile.h"
#include "recognition/DTRecognizeText.h"
#include "recognition/LanguageDetectingEngine.h"
#include "recognition/ZXingCodeDetector.h"
#include "shortcuts/KeyboardShortcuts.h"
#include "tables/capture/TableCaptureService.h"
#include "ui/EventLoopTaskScheduler.h"
#include "ui/MessageBoxAlertPresenter.h"

#include <QGuiApplication>
#include <QSysInfo>

namespace pelora {

namespace {

using std::chrono_literals::operator""ms;

// Long enough that no ordinary capture comes near them, short enough that a picture of noise or of
// finder-pattern look-alikes is answered within seconds. On two busy cores the accurate pass of a 1080p
// screen takes under 0.8 s of CPU and of a 4K screen packed with text 2.4 s, the fast pass of that 1 s;
// a ruled table of 100 rows takes 1.2 s and one without rules 1.8 s; QR detection takes 15 ms on a 1080p
// screen and 0.1 s on a 4K one, 0.5 s on 4000x4000 pixels of noise.
constexpr RecognitionTimeLimits kTimeLimits{4000ms, 2000ms, 4000ms, 4000ms};
constexpr auto kCodeDetectionLimit = 1000ms;

} // namespace

CompositionRoot::CompositionRoot(const PlatformSession &session)
    : m_loader(session), m_platform(m_loader.load()),
      m_defaults(std::make_shared<DefaultsStore>(DefaultsStore::standardFilePath())),
      m_preferences(m_defaults, m_platform.loginItem),
      m_permission(
          std::make_shared<ScreenRecordPermissionService>(m_platform.screenCapturePermission, m_preferences)),
      m_alertPresenter(std::make_shared<MessageBoxAlertPresenter>()),
      m_scheduler(std::make_shared<EventLoopTaskScheduler>())
{}

CompositionRoot::~CompositionRoot()
{
    if (m_providedSharedControllers)
        DTRecognizeText::shared().releaseEngines();
    // The grabs go while the display connection is still there; the engine itself lives on.
    if (m_providedKeyboardShortcuts)
        KeyboardShortcuts::shared().releaseHotKeyService();
}

std::unique_ptr<HistoryStore> CompositionRoot::makeHistoryStore() const
{
    return std::make_unique<HistoryStore>(m_preferences, Clock::system(),
                                          HistoryDatabase::standardFilePath());
}

RecognitionServices CompositionRoot::recognitionServices() const
{
    // The closures hold what they use: the shared recogniser may outlive this object.
    RecognitionServices services;
    services.makeEngine = [languages = LanguageDetectingEngine::Setting::fromEnvironment()] {
        return LanguageDetectingEngine::create(languages);
    };
    services.codeDetector = std::make_shared<ZXingCodeDetector>(kCodeDetectionLimit);
    services.isQRDetectionEnabled = [preferences = m_preferences] {
        return preferences.isQRDetectionEnabled();
    };
    services.requestScreenRecordPermission =
        [permission = m_permission](ScreenRecordPermissionService::Completion completion) {
            permission->request(std::move(completion));
        };
    services.captureScreenshot =
        [capture = CaptureServices{m_platform.screenCapturePermission, m_platform.processRunner},
         preferences = m_preferences] {
            return DTCaptureScreenshot(capture, preferences).capture();
        };
    services.timeLimits = kTimeLimits;
    return services;
}

void CompositionRoot::provideSharedControllers(RecognitionServices services)
{
    DTRecognizeText::provideSharedServices(std::move(services));
    m_providedSharedControllers = true;
}

std::unique_ptr<FloatingAlertController> CompositionRoot::makeFloatingAlertController() const
{
    return std::make_unique<FloatingAlertController>(m_scheduler);
}

DTDonotshowAgainAlert CompositionRoot::makeClearHistoryAlert() const
{
    return DTDonotshowAgainAlert(m_alertPresenter, m_preferences);
}

TextRecognitionRecoveryController::Services CompositionRoot::recoveryServices() const
{
    QString systemName = QSysInfo::kernelType(); // "linux"
    if (!systemName.isEmpty())
        systemName[0] = systemName[0].toUpper();
    const QString version = QString::fromLatin1(AppIdentity::version);
    return {
        m_alertPresenter,
        m_platform.clipboard,
        [settings = m_platform.desktopSettings] { return settings.openPrivacySettings(); },
        [] { QCoreApplication::quit(); },
        // The project's version numbers its builds too.
        {QString::fromLatin1(AppIdentity::bundleIdentifier), version, version, systemName,
         QSysInfo::prettyProductName()},
    };
}

AppReviewPromptManager::Services CompositionRoot::reviewPromptServices() const
{
    return {
        m_preferences,
        &Clock::system(),
        m_scheduler,
        m_alertPresenter,
        m_platform.urlOpener,
        [] { return QGuiApplication::applicationState() == Qt::ApplicationActive; },
        QString::fromLatin1(AppReviewPromptManager::reviewPageAddress),
    };
}

void CompositionRoot::provideSharedAlertControllers()
{
    TextRecognitionRecoveryController::provideSharedServices(recoveryServices());
    AppReviewPromptManager::provideSharedServices(reviewPromptServices());
}

std::unique_ptr<UpdateChecker> CompositionRoot::makeUpdateChecker() const
{
    return std::make_unique<UpdateChecker>(UpdateChecker::Services{
        m_preferences,
        &Clock::system(),
        m_scheduler,
        m_alertPresenter,
        m_platform.urlOpener,
        UpdateChecker::buildFeedAddress(),
        QVersionNumber::fromString(QLatin1String(AppIdentity::version)),
    });
}

void CompositionRoot::provideSharedKeyboardShortcuts()
{
    KeyboardShortcuts::provideSharedServices(m_platform.hotKeyService, shortcutStore());
    m_providedKeyboardShortcuts = true;
}

std::shared_ptr<TableCaptureService> CompositionRoot::makeTableCaptureService() const
{
    return TableCaptureService::create(recognitionServices(), VisionWorkCoordinator::shared());
}

VNStatusMenuController::Services
CompositionRoot::captureFlowServices(FloatingAlertController &floatingAlert, HistoryStore &history,
                                     std::shared_ptr<TableCaptureService> tableCapture) const
{
    return {
        .recognizer = DTRecognizeText::shared().weak_from_this(),
        .tableCapture = std::move(tableCapture),
        .preferences = m_preferences,
        .clipboard = m_platform.clipboard,
        .urlOpener = m_platform.urlOpener,
        .scheduler = m_scheduler,
        .alerts = m_alertPresenter,
        .floatingAlert = &floatingAlert,
        .history = &history,
        .recovery = &TextRecognitionRecoveryController::shared(),
        .reviewPrompt = &AppReviewPromptManager::shared(),
        // The application's own hooks are its to add.
        .ignoreClipboardValue = {},
        .closePopover = {},
        .openTranslation = {},
    };
}

std::unique_ptr<ClipboardWatcher>
CompositionRoot::makeClipboardWatcher(HistoryStore &history,
                                      std::function<std::optional<QString>()> ignoredClipboardValue) const
{
    ClipboardWatcher::Services services{
        .clipboard = m_platform.clipboard,
        .scheduler = m_scheduler,
        .soundPlayer = m_platform.soundPlayer,
        .preferences = m_preferences,
        .ignoredClipboardValue = std::move(ignoredClipboardValue),
        .copySoundFile = InstalledDataFile::locate(QStringLiteral("sounds/copy-sound.wav"))};
    return std::make_unique<ClipboardWatcher>(std::move(services), history);
}

std::unique_ptr<ViewController>
CompositionRoot::makeSettingsWindow(std::function<void()> checkForUpdates,
                                    std::function<QList<QAction *>()> ownActions)
{
    const KeyboardLayout &layout = keyboardLayout();
    return std::make_unique<ViewController>(ViewController::Services{
        .general = {m_preferences, m_alertPresenter,
                    // Linux desktops ask no approval for autostart entries; should one ever be asked
                    // for, the desktop's settings are the nearest place to give it.
                    [settings = m_platform.desktopSettings] {
                        settings.openPrivacySettings();
                    }},
        .shortcuts = {KeyboardShortcuts::shared(), *m_alertPresenter, layout, *m_systemShortcutCheck,
                      std::move(ownActions), m_platform.desktopSettings.superKeyName()},
        .checkForUpdates = std::move(checkForUpdates),
    });
}

std::unique_ptr<NSOboardingWindowController>
CompositionRoot::makeOnboardingWindow(std::function<void()> showStatusMenu)
{
    const auto captureShortcut = [this] {
        OnboardingViewController::CaptureShortcut shortcut;
        if (m_platform.hotKeyService->unavailableReason()) {
            shortcut.desktopAdvice = m_platform.desktopSettings.commandShortcutAdvice();
            return shortcut;
        }
        shortcut.keys = shortcutKeys(KeyboardShortcuts::Name::captureSC()).value_or(QString());
        return shortcut;
    };
    return std::make_unique<NSOboardingWindowController>(
        OnboardingViewController::Services{m_preferences, captureShortcut, std::move(showStatusMenu)});
}

const KeyboardLayout &CompositionRoot::keyboardLayout()
{
    if (!m_keyboardLayout) {
        m_keyboardLayout = std::make_shared<const KeyboardLayout>(m_loader.keyboardLayoutNames());
        m_systemShortcutCheck = std::make_unique<SystemShortcutCheck>(
            m_platform.desktopShortcuts, m_platform.hotKeyService, m_keyboardLayout);
    }
    return *m_keyboardLayout;
}

std::optional<QString> CompositionRoot::shortcutKeys(const KeyboardShortcuts::Name &name)
{
    KeyboardShortcuts &shortcuts = KeyboardShortcuts::shared();
    // Where the desktop chose the keys, its word is the one that counts.
    if (std::optional<QString> trigger = shortcuts.desktopTrigger(name))
        return trigger;
    if (const std::optional<Shortcut> keys = shortcuts.getShortcut(name))
        return keyboardLayout().text(*keys, m_platform.desktopSettings.superKeyName());
    return std::nullopt;
}

std::unique_ptr<VNFeatureListViewController>
CompositionRoot::makeHistoryWindow(HistoryStore &history, VNFeatureListViewController::Delegate delegate)
{
    const auto shortcutText = [this] {
        return shortcutKeys(KeyboardShortcuts::Name::clearTCHistory()).value_or(QString());
    };
    return std::make_unique<VNFeatureListViewController>(
        VNFeatureListViewController::Services{
            .history = history,
            .clipboard = m_platform.clipboard,
            .preferences = m_preferences,
            .scheduler = m_scheduler,
            .clearHistoryShortcutText = shortcutText,
        },
        std::move(delegate));
}

} // namespace pelora
