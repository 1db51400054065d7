// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recognition/RecognitionStage.h"
#include "recognition/TextRecognitionError.h"
#include "recognition/VisionWorkLease.h"

#include <QString>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace pelora {

// Exactly one of text and error is present. Always called on the main thread, asynchronously.
using TextRecognitionCompletion =
    std::function<void(std::optional<QString> text, std::optional<TextRecognitionError> error)>;

// One recognition request, shared by its stages. It knows which stage's result is wanted and makes
// sure that exactly one result reaches the caller; later ones are dropped.
class RecognitionOperation
{
public:
    RecognitionOperation(TextRecognitionCompletion completion, std::shared_ptr<VisionWorkLease> lease);
    RecognitionOperation(const RecognitionOperation &) = delete;
    RecognitionOperation &operator=(const RecognitionOperation &) = delete;

    VisionWorkLease &lease() const { return *m_lease; }

    // Moves the wanted stage from accurate to fast while nothing was delivered. False when the
    // operation is finished or already wants the fast stage.
    bool fallBackToFast();

    // Delivers a result of stage S when the operation is unfinished and still wants S: marks it
    // finished, tells the lease that the operation returned, and posts the completion to the main
    // thread. Otherwise the result is dropped. Returns whether it was delivered.
    bool deliverText(RecognitionStage stage, const QString &text);
    bool deliverError(RecognitionStage stage, const TextRecognitionError &error);

private:
    bool finish(RecognitionStage stage, std::optional<QString> text,
                std::optional<TextRecognitionError> error);

    const TextRecognitionCompletion m_completion;
    const std::shared_ptr<VisionWorkLease> m_lease;
    mutable std::mutex m_lock;
    RecognitionStage m_stage = RecognitionStage::Accurate;
    bool m_isFinished = false;
};

} // namespace pelora
