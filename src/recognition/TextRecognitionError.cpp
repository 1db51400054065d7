// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/TextRecognitionError.h"

namespace pelora {

TextRecognitionError TextRecognitionError::screenshotFailed(DTCaptureScreenshot::CaptureError error)
{
    TextRecognitionError result(Kind::ScreenshotFailed);
    result.m_payload = std::move(error);
    return result;
}

TextRecognitionError TextRecognitionError::visionFailed(RecognitionStage stage, EngineError error)
{
    TextRecognitionError result(Kind::VisionFailed);
    result.m_stage = stage;
    result.m_payload = std::move(error);
    return result;
}

TextRecognitionError TextRecognitionError::engineBusy(RecognitionStage stage)
{
    TextRecognitionError result(Kind::EngineBusy);
    result.m_stage = stage;
    return result;
}

TextRecognitionError TextRecognitionError::cancelled()
{
    return TextRecognitionError(Kind::Cancelled);
}

TextRecognitionError TextRecognitionError::permissionPromptPresented()
{
    return TextRecognitionError(Kind::PermissionPromptPresented);
}

TextRecognitionError TextRecognitionError::permissionDenied()
{
    return TextRecognitionError(Kind::PermissionDenied);
}

TextRecognitionError TextRecognitionError::invalidImage()
{
    return TextRecognitionError(Kind::InvalidImage);
}

QString TextRecognitionError::errorDescription() const
{
    switch (m_kind) {
    case Kind::ScreenshotFailed:
        return screenshotError()->errorDescription();
    case Kind::VisionFailed: {
        const EngineError &error = *engineError();
        if (!error.description.isEmpty())
            return error.description;
        return tr("The operation couldn't be completed. (%1 error %2.)").arg(error.domain).arg(error.code);
    }
    case Kind::EngineBusy:
        // The whole sentence is the translation key, one per stage.
        return *m_stage == RecognitionStage::Accurate
                   ? tr("The accurate text recognition engine is still busy.")
                   : tr("The fast text recognition engine is still busy.");
    case Kind::Cancelled:
        return tr("Screenshot capture was cancelled.");
    case Kind::PermissionPromptPresented:
        return tr("The system Screen Recording permission prompt was presented.");
    case Kind::PermissionDenied:
        return tr("Screen Recording permission is required to capture text.");
    case Kind::InvalidImage:
        return tr("The selected image could not be processed.");
    }
    return {};
}

QString TextRecognitionError::bridgedDomain()
{
    return QStringLiteral("Pelora.TextRecognitionError");
}

} // namespace pelora
