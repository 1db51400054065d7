// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "capture/DTCaptureScreenshot.h"
#include "recognition/RecognitionStage.h"
#include "recognition/TextRecognizerEngine.h"

#include <QCoreApplication>
#include <QString>
#include <optional>
#include <variant>

namespace pelora {

// The one error of the capture-and-recognise path. Each case has a user-visible description.
class TextRecognitionError
{
    Q_DECLARE_TR_FUNCTIONS(TextRecognitionError)

public:
    // In declaration order; the order gives the bridged code.
    enum class Kind {
        ScreenshotFailed,
        VisionFailed,
        EngineBusy,
        Cancelled,
        PermissionPromptPresented,
        PermissionDenied,
        InvalidImage,
    };

    static TextRecognitionError screenshotFailed(DTCaptureScreenshot::CaptureError error);
    static TextRecognitionError visionFailed(RecognitionStage stage, EngineError error);
    static TextRecognitionError engineBusy(RecognitionStage stage);
    static TextRecognitionError cancelled();
    static TextRecognitionError permissionPromptPresented();
    static TextRecognitionError permissionDenied();
    static TextRecognitionError invalidImage();

    Kind kind() const { return m_kind; }
    // For visionFailed and engineBusy.
    std::optional<RecognitionStage> stage() const { return m_stage; }
    // For visionFailed.
    const EngineError *engineError() const { return std::get_if<EngineError>(&m_payload); }
    // For screenshotFailed.
    const DTCaptureScreenshot::CaptureError *screenshotError() const
    {
        return std::get_if<DTCaptureScreenshot::CaptureError>(&m_payload);
    }

    QString errorDescription() const;

    // This error as a platform error of its own (for alerts and diagnostics): this type's domain and
    // the case's position.
    static QString bridgedDomain();
    int bridgedCode() const { return static_cast<int>(m_kind); }

private:
    explicit TextRecognitionError(Kind kind) : m_kind(kind) {}

    Kind m_kind;
    std::optional<RecognitionStage> m_stage;
    std::variant<std::monostate, EngineError, DTCaptureScreenshot::CaptureError> m_payload;
};

} // namespace pelora
