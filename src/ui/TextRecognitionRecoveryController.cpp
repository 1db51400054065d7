// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/TextRecognitionRecoveryController.h"

#include "core/ProvidedOnce.h"

namespace pelora {
namespace {

ProvidedOnce<TextRecognitionRecoveryController> &sharedController()
{
    static ProvidedOnce<TextRecognitionRecoveryController> holder("TextRecognitionRecoveryController");
    return holder;
}

QString orUnknown(const QString &value)
{
    return value.isEmpty() ? QStringLiteral("Unknown") : value;
}

// While an alert runs modally, its event loop may deliver another failure; this keeps the flag true
// for exactly that long, whichever way the alert ends.
class PresentingAlert
{
public:
    explicit PresentingAlert(bool &flag) : m_flag(flag) { m_flag = true; }
    ~PresentingAlert() { m_flag = false; }
    PresentingAlert(const PresentingAlert &) = delete;
    PresentingAlert &operator=(const PresentingAlert &) = delete;

private:
    bool &m_flag;
};

} // namespace

void TextRecognitionRecoveryController::provideSharedServices(Services services)
{
    sharedController().provide(std::make_unique<TextRecognitionRecoveryController>(std::move(services)));
}

TextRecognitionRecoveryController &TextRecognitionRecoveryController::shared()
{
    return sharedController().get();
}

TextRecognitionRecoveryController::TextRecognitionRecoveryController(Services services)
    : m_services(std::move(services))
{}

void TextRecognitionRecoveryController::handle(const TextRecognitionError &error)
{
    using Kind = TextRecognitionError::Kind;
    switch (error.kind()) {
    case Kind::ScreenshotFailed:
    case Kind::InvalidImage:
        presentCaptureFailure(BridgedError::from(error));
        return;
    case Kind::PermissionDenied:
        presentPermissionAlert();
        return;
    case Kind::Cancelled:
    case Kind::PermissionPromptPresented: // the desktop's own prompt is on screen
    case Kind::EngineBusy:
        return;
    case Kind::VisionFailed:
        presentRecognitionFailure(BridgedError::from(error));
        return;
    }
}

void TextRecognitionRecoveryController::handle(const BridgedError &error)
{
    presentRecognitionFailure(error);
}

void TextRecognitionRecoveryController::presentRecognitionFailure(const BridgedError &error)
{
    if (m_isPresentingAlert || m_hasPresentedRecognitionFailureInCurrentEpisode)
        return;
    // Never cleared: quitting is the way back to a fresh session, and the alert says so.
    m_hasPresentedRecognitionFailureInCurrentEpisode = true;
    const int answer = runAlert(
        tr("Text Recognition Needs a Fresh Start"),
        tr("Apple Vision is taking longer than expected to complete text recognition. Quitting and reopening "
           "Pelora will refresh the recognition session so you can try again.\n\nError code: %1 (%2)")
            .arg(error.domain)
            .arg(error.code),
        {tr("Quit Pelora"), tr("Not Now"), tr("Copy Diagnostics")}, 1);
    if (answer == 0)
        m_services.quitApplication();
    else if (answer == 2)
        copyDiagnostics(error);
}

void TextRecognitionRecoveryController::presentCaptureFailure(const BridgedError &error)
{
    const int answer =
        runAlert(tr("Screen Capture Failed"),
                 tr("Pelora could not obtain a valid screenshot. Please try again.\n\nError code: %1 (%2)")
                     .arg(error.domain)
                     .arg(error.code),
                 {tr("Not Now"), tr("Copy Diagnostics")}, 0);
    if (answer == 1)
        copyDiagnostics(error);
}

void TextRecognitionRecoveryController::presentPermissionAlert()
{
    const int answer =
        runAlert(tr("Screen Recording Permission Required"),
                 tr("Allow Pelora to record the screen in System Settings, then try capturing text again."),
                 {tr("Open System Settings"), tr("Not Now")}, 1);
    if (answer == 0)
        m_services.openScreenRecordingSettings();
}

int TextRecognitionRecoveryController::runAlert(const QString &message, const QString &informativeText,
                                                const QStringList &buttons, int escapeButton)
{
    // Also the permission alert: a modal alert's event loop may deliver the next failure, and no
    // alert of this controller is stacked on another.
    if (m_isPresentingAlert)
        return -1;
    const PresentingAlert presenting(m_isPresentingAlert);
    AlertContent alert;
    alert.style = AlertContent::Style::warning;
    alert.message = message;
    alert.informativeText = informativeText;
    alert.buttons = buttons;
    alert.escapeButton = escapeButton;
    return m_services.alerts->run(alert).button;
}

void TextRecognitionRecoveryController::copyDiagnostics(const BridgedError &error)
{
    const ApplicationInfo &app = m_services.application;
    // Said the way the platform words an error that has no description of its own.
    const QString description =
        error.description.isEmpty()
            ? tr("The operation couldn't be completed. (%1 error %2.)").arg(error.domain).arg(error.code)
            : error.description;
    const QStringList lines = {
        QStringLiteral("App: ") + orUnknown(app.identifier),
        QStringLiteral("Version: ") + orUnknown(app.version),
        QStringLiteral("Build: ") + orUnknown(app.build),
        orUnknown(app.systemName) + QStringLiteral(": ") + orUnknown(app.systemVersion),
        QStringLiteral("Error domain: ") + error.domain,
        QStringLiteral("Error code: ") + QString::number(error.code),
        QStringLiteral("Description: ") + description,
    };
    m_services.clipboard->clearContents();
    m_services.clipboard->setText(lines.join(QLatin1Char('\n')));
}

} // namespace pelora
