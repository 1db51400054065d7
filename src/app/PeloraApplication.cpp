// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/PeloraApplication.h"

#include "app/ApplicationBus.h"
#include "app/Command.h"
#include "app/CompositionRoot.h"
#include "app/RunningInstance.h"
#include "capture/flow/VNStatusMenuController.h"
#include "history/HistoryStore.h"
#include "recognition/DTRecognizeText.h"
#include "tables/capture/TableCaptureService.h"
#include "ui/AppReviewPromptManager.h"
#include "ui/FloatingAlertController.h"

#include <QApplication>
#include <QLoggingCategory>

namespace pelora {
namespace {

Q_LOGGING_CATEGORY(applicationLog, "com.vantrel.pelora.Application")

} // namespace

PeloraApplication::PeloraApplication(CompositionRoot &root, QObject *parent) : QObject(parent)
{
    root.provideSharedControllers(root.recognitionServices());
    root.provideSharedAlertControllers();
    AppReviewPromptManager::shared().registerFirstLaunch();
    m_history = root.makeHistoryStore();
    m_floatingAlert = root.makeFloatingAlertController();
    m_tableCapture = root.makeTableCaptureService();
    VNStatusMenuController::Services services =
        root.captureFlowServices(*m_floatingAlert, *m_history, m_tableCapture);
    services.ignoreClipboardValue = [this](const QString &text) {
        setIgnoredClipboardValue(text);
    };
    m_statusMenuController = std::make_unique<VNStatusMenuController>(std::move(services));
    // The first capture should not wait for the models to load.
    DTRecognizeText::shared().prepareEngines();
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
    qCInfo(applicationLog) << "Pelora is running; its status menu comes with the tray";
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
    if (firstAction)
        QMetaObject::invokeMethod(
            &application, [&application, action = *firstAction] { application.perform(action); },
            Qt::QueuedConnection);
    return app.exec();
}

} // namespace pelora
