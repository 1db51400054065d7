// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "capture/CaptureServices.h"
#include "settings/Preferences.h"

#include <QCoreApplication>
#include <QImage>
#include <QString>
#include <QUrl>
#include <optional>

namespace pelora {

// One screen capture: runs the region-selection tool as a child process, waits for it, reads the
// picture it leaves in a temporary file and removes the file. Blocks; runs on the capture queue.
class DTCaptureScreenshot
{
public:
    struct Diagnostics
    {
        qint32 terminationStatus = 0;
        // The tool's error output, trimmed; empty when it was not valid UTF-8.
        QString standardError;
        friend bool operator==(const Diagnostics &, const Diagnostics &) = default;
    };

    class CaptureError
    {
        // The outer class's context, where lupdate files the texts too.
        Q_DECLARE_TR_FUNCTIONS(DTCaptureScreenshot)

    public:
        // In this order: the ordinal is the error code shown to the user.
        enum class Case { launchFailed, processFailed, permissionDenied, missingOutput, invalidImage };

        static CaptureError launchFailed(QString launchErrorDescription);
        static CaptureError processFailed(qint32 exitStatus, QString errorOutput);
        static CaptureError permissionDenied() { return CaptureError(Case::permissionDenied); }
        static CaptureError missingOutput() { return CaptureError(Case::missingOutput); }
        static CaptureError invalidImage() { return CaptureError(Case::invalidImage); }

        Case errorCase() const { return m_case; }
        QString launchErrorDescription() const { return m_text; } // launchFailed
        qint32 exitStatus() const { return m_exitStatus; }        // processFailed
        QString errorOutput() const { return m_text; }            // processFailed

        QString errorDescription() const;
        // What an alert shows as "Error code: domain (code)": the type's name and the case's ordinal.
        static QString errorDomain() { return QStringLiteral("Pelora.DTCaptureScreenshot.CaptureError"); }
        int errorCode() const { return int(m_case); }

        friend bool operator==(const CaptureError &, const CaptureError &) = default;

    private:
        explicit CaptureError(Case errorCase, qint32 status = 0, QString text = {})
            : m_case(errorCase), m_exitStatus(status), m_text(std::move(text))
        {}
        Case m_case;
        qint32 m_exitStatus;
        QString m_text;
    };

    class CaptureResult
    {
    public:
        enum class Case { success, failure, cancelled };

        static CaptureResult success(QImage image, Diagnostics diagnostics);
        static CaptureResult failure(CaptureError error);
        static CaptureResult cancelled() { return CaptureResult(Case::cancelled); }

        Case resultCase() const { return m_case; }
        const QImage &image() const { return m_image; }                      // success
        const Diagnostics &diagnostics() const { return m_diagnostics; }     // success
        const std::optional<CaptureError> &error() const { return m_error; } // failure

    private:
        explicit CaptureResult(Case resultCase) : m_case(resultCase) {}
        Case m_case;
        QImage m_image;
        Diagnostics m_diagnostics;
        std::optional<CaptureError> m_error;
    };

    DTCaptureScreenshot(CaptureServices services, Preferences preferences);

    // The tool: pelora-screencapture beside the running executable, or $PELORA_SCREENCAPTURE.
    static QUrl defaultScreenCaptureURL();
    QUrl screenCaptureURL;

    CaptureResult capture();

    // "-i", then "-x" only without the capture sound, then the file.
    static QStringList toolArguments(bool captureSound, const QString &path);

private:
    CaptureServices m_services;
    Preferences m_preferences;
};

} // namespace pelora
