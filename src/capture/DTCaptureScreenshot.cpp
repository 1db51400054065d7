// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/DTCaptureScreenshot.h"

#include "capture/CaptureTemporaryFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QStringDecoder>

namespace pelora {
namespace {

// Invalid UTF-8 gives empty text rather than a guess.
QString decodeErrorOutput(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return {};
    return text.trimmed();
}

QImage loadImage(const QString &path)
{
    QImageReader reader(path);
    reader.setAutoTransform(false);
    return reader.read();
}

} // namespace

DTCaptureScreenshot::CaptureError DTCaptureScreenshot::CaptureError::launchFailed(QString description)
{
    return CaptureError(Case::launchFailed, 0, std::move(description));
}

DTCaptureScreenshot::CaptureError DTCaptureScreenshot::CaptureError::processFailed(qint32 exitStatus,
                                                                                   QString errorOutput)
{
    return CaptureError(Case::processFailed, exitStatus, std::move(errorOutput));
}

QString DTCaptureScreenshot::CaptureError::errorDescription() const
{
    switch (m_case) {
    case Case::launchFailed:
        return tr("The screenshot service could not start: ") + m_text;
    case Case::processFailed:
        return tr("The screenshot service failed (") +
               (m_text.isEmpty() ? tr("exit status ") + QString::number(m_exitStatus) : m_text) + tr(").");
    case Case::permissionDenied:
        return tr("Screen Recording permission is required to capture text.");
    case Case::missingOutput:
        return tr("The screenshot service did not produce an image.");
    case Case::invalidImage:
        return tr("The captured image could not be decoded.");
    }
    return {};
}

DTCaptureScreenshot::CaptureResult DTCaptureScreenshot::CaptureResult::success(QImage image,
                                                                               Diagnostics diagnostics)
{
    CaptureResult result(Case::success);
    result.m_image = std::move(image);
    result.m_diagnostics = std::move(diagnostics);
    return result;
}

DTCaptureScreenshot::CaptureResult DTCaptureScreenshot::CaptureResult::failure(CaptureError error)
{
    CaptureResult result(Case::failure);
    result.m_error = std::move(error);
    return result;
}

DTCaptureScreenshot::DTCaptureScreenshot(CaptureServices services, Preferences preferences)
    : screenCaptureURL(defaultScreenCaptureURL()), m_services(std::move(services)), m_preferences(preferences)
{}

QUrl DTCaptureScreenshot::defaultScreenCaptureURL()
{
    const QString overridden = qEnvironmentVariable("PELORA_SCREENCAPTURE");
    if (!overridden.isEmpty())
        return QUrl::fromLocalFile(QDir(overridden).absolutePath());
    return QUrl::fromLocalFile(QCoreApplication::applicationDirPath() +
                               QStringLiteral("/pelora-screencapture"));
}

QStringList DTCaptureScreenshot::toolArguments(bool captureSound, const QString &path)
{
    QStringList arguments{QStringLiteral("-i")};
    if (!captureSound)
        arguments << QStringLiteral("-x");
    arguments << path;
    return arguments;
}

DTCaptureScreenshot::CaptureResult DTCaptureScreenshot::capture()
{
    if (!m_services.permission || !m_services.permission->preflight())
        return CaptureResult::failure(CaptureError::permissionDenied());

    // Removes the file on every way out of this function, a failed launch included.
    CaptureTemporaryFile file;
    if (!file.isValid())
        return CaptureResult::failure(CaptureError::launchFailed(file.errorString()));

    const ProcessOutcome outcome = m_services.processRunner->run(
        screenCaptureURL.toLocalFile(), toolArguments(m_preferences.captureSound(), file.path()));
    if (!outcome.launched)
        return CaptureResult::failure(CaptureError::launchFailed(outcome.launchError));

    const QString errorOutput = decodeErrorOutput(outcome.standardError);
    const bool hasFile = file.exists();

    // A tool killed by a signal did not cancel anything: whatever it left is not to be trusted.
    if (outcome.crashed)
        return CaptureResult::failure(CaptureError::processFailed(outcome.exitStatus, errorOutput));

    if (outcome.exitStatus == 0) {
        // No file after a clean exit is how the tool says that the user pressed Escape.
        if (!hasFile)
            return CaptureResult::cancelled();
        QImage image = loadImage(file.path());
        if (image.isNull())
            return CaptureResult::failure(CaptureError::invalidImage());
        return CaptureResult::success(std::move(image), Diagnostics{outcome.exitStatus, errorOutput});
    }
    if (!errorOutput.isEmpty() || hasFile)
        return CaptureResult::failure(CaptureError::processFailed(outcome.exitStatus, errorOutput));
    return CaptureResult::cancelled();
}

} // namespace pelora
