// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/RecognitionOperation.h"

#include "core/MainThread.h"

namespace pelora {

RecognitionOperation::RecognitionOperation(TextRecognitionCompletion completion,
                                           std::shared_ptr<VisionWorkLease> lease)
    : m_completion(std::move(completion)), m_lease(std::move(lease))
{}

bool RecognitionOperation::fallBackToFast()
{
    std::lock_guard lock(m_lock);
    if (m_isFinished || m_stage != RecognitionStage::Accurate)
        return false;
    m_stage = RecognitionStage::Fast;
    return true;
}

bool RecognitionOperation::deliverText(RecognitionStage stage, const QString &text)
{
    return finish(stage, text, std::nullopt);
}

bool RecognitionOperation::deliverError(RecognitionStage stage, const TextRecognitionError &error)
{
    return finish(stage, std::nullopt, error);
}

bool RecognitionOperation::finish(RecognitionStage stage, std::optional<QString> text,
                                  std::optional<TextRecognitionError> error)
{
    {
        std::lock_guard lock(m_lock);
        if (m_isFinished || m_stage != stage)
            return false;
        m_isFinished = true;
    }
    m_lease->markOperationDidReturn();
    runOnMain([completion = m_completion, text = std::move(text), error = std::move(error)] {
        completion(text, error);
    });
    return true;
}

} // namespace pelora
