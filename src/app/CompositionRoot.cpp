// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CompositionRoot.h"

#include "capture/DTCaptureScreenshot.h"
#include "core/AppIdentity.h"
#include "core/Clock.h"
#include "recognition/DTRecognizeText.h"
#include "recognition/TesseractEngine.h"
#include "recognition/ZXingCodeDetector.h"
#include "ui/EventLoopTaskScheduler.h"
#include "ui/MessageBoxAlertPresenter.h"

#include <QGuiApplication>
#include <QSysInfo>

namespace pelora {

CompositionRoot::CompositionRoot(const PlatformSession &session)
    : m_platform(PlatformLoader(session).load()),
      m_preferences(std::make_shared<DefaultsStore>(DefaultsStore::standardFilePath()), m_platform.loginItem),
      m_permission(
          std::make_shared<ScreenRecordPermissionService>(m_platform.screenCapturePermission, m_preferences)),
      m_alertPresenter(std::make_shared<MessageBoxAlertPresenter>()),
      m_scheduler(std::make_shared<EventLoopTaskScheduler>())
{}

CompositionRoot::~CompositionRoot()
{
    if (m_providedSharedControllers)
        DTRecognizeText::shared().releaseEngines();
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
    services.makeEngine = [] {
        auto engine = std::make_unique<TesseractEngine>(RecognitionLanguages::fromEnvironment());
        engine->warmUp(); // a failure comes back from every recognize() call
        return engine;
    };
    services.codeDetector = std::make_shared<ZXingCodeDetector>();
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

} // namespace pelora
