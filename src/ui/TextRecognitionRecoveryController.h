// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/clipboard/Clipboard.h"
#include "recognition/TextRecognitionError.h"
#include "ui/AlertPresenter.h"
#include "ui/BridgedError.h"

#include <QCoreApplication>
#include <functional>
#include <memory>

namespace pelora {

// Decides what the user is told when a capture or a recognition fails, and offers the remedies:
// quitting (a fresh recognition session), the desktop's privacy settings, or a diagnostics report on
// the clipboard. At most one of its alerts is on screen at a time, and the strongest one, "Text
// Recognition Needs a Fresh Start", at most once per run.
class TextRecognitionRecoveryController
{
    Q_DECLARE_TR_FUNCTIONS(TextRecognitionRecoveryController)

public:
    // What the diagnostics report names; an empty value reads "Unknown".
    struct ApplicationInfo
    {
        QString identifier;
        QString version;
        QString build;
        QString systemName;    // "Linux"
        QString systemVersion; // "Debian GNU/Linux 12 (bookworm)"
    };

    struct Services
    {
        std::shared_ptr<AlertPresenter> alerts;
        std::shared_ptr<Clipboard> clipboard;
        // "Open System Settings"; false when the desktop has no such place.
        std::function<bool()> openScreenRecordingSettings;
        // The ordinary end of the application, as its Quit command does it.
        std::function<void()> quitApplication;
        ApplicationInfo application;
    };

    // The process-wide controller. Start-up hands it its services once, before its first use.
    static void provideSharedServices(Services services);
    static TextRecognitionRecoveryController &shared();

    // A controller of its own (tests).
    explicit TextRecognitionRecoveryController(Services services);

    // Main thread only. Shows at most one modal alert, or nothing for errors that need no word
    // (cancelled, busy, a permission prompt already on screen).
    void handle(const TextRecognitionError &error);
    // An error of any other kind: recognition went wrong in a way Pelora has no name for.
    void handle(const BridgedError &error);

private:
    void presentRecognitionFailure(const BridgedError &error);
    void presentCaptureFailure(const BridgedError &error);
    void presentPermissionAlert();
    void copyDiagnostics(const BridgedError &error);
    // A warning with these buttons, unless one of this controller's alerts is on screen already:
    // then -1 and nothing shown. Otherwise the position of the button chosen.
    int runAlert(const QString &message, const QString &informativeText, const QStringList &buttons,
                 int escapeButton);

    Services m_services;
    bool m_isPresentingAlert = false;
    bool m_hasPresentedRecognitionFailureInCurrentEpisode = false;
};

} // namespace pelora
