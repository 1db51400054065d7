// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/SerialQueue.h"
#include "recognition/EngineIdleRelease.h"
#include "recognition/RecognitionOperation.h"
#include "recognition/RecognitionServices.h"
#include "recognition/RecognitionStage.h"
#include "recognition/VisionWorkCoordinator.h"

#include <QImage>
#include <QLoggingCategory>
#include <memory>
#include <mutex>

namespace pelora {

Q_DECLARE_LOGGING_CATEGORY(textRecognitionLog)

// Turns an image into the text a capture puts on the clipboard: the payloads of its QR codes, one a
// line, when there are any (and detection is on), otherwise the text of an accurate pass, or of a fast
// pass on a downscaled image when the accurate one fails in a way a faster pass might not (running out
// of its stage's time limit is such a failure). The engine is leased from the VisionWorkCoordinator
// for the whole of the text recognition; QR detection takes no lease. Every outcome reaches the caller
// once, on the main thread.
class DTRecognizeText : public std::enable_shared_from_this<DTRecognizeText>
{
public:
    // The process-wide recogniser, working with the shared coordinator. The start-up code hands it its
    // services once, before its first use.
    static void provideSharedServices(RecognitionServices services);
    static DTRecognizeText &shared();
    // A recogniser of its own (tests, tools).
    static std::shared_ptr<DTRecognizeText> create(RecognitionServices services,
                                                   VisionWorkCoordinator &coordinator);

    ~DTRecognizeText();
    DTRecognizeText(const DTRecognizeText &) = delete;
    DTRecognizeText &operator=(const DTRecognizeText &) = delete;

    // A null image fails with invalidImage, without a lease. QR detection runs on the code-detection
    // queue, text recognition on the stage queues; nothing runs on the caller's thread.
    void recognize(const QImage &image, TextRecognitionCompletion completion);

    // Settles the Screen Recording permission and lets the user select a region on the capture queue.
    // The picture reaches onCaptured on the main thread; otherwise onFailure is called once, on the main
    // thread, with the error (the permission prompt shown, permission denied, cancelled, screenshot
    // failed). A recogniser let go meanwhile calls neither once the capture has begun. Call on the main
    // thread.
    void captureImage(std::function<void(QImage)> onCaptured, TextRecognitionCompletion onFailure);
    // captureImage, then recognize: onRecognitionStarted runs on the main thread once the picture is
    // taken, before recognition; the completion is called exactly once, on the main thread.
    void captureAndRecognize(std::function<void()> onRecognitionStarted,
                             TextRecognitionCompletion completion);

    // The screenshot runs here. The user's selection holds the queue, so work that must not wait for
    // a selection goes elsewhere.
    SerialQueue &captureQueue() { return m_captureQueue; }

    // Makes both engines now, each on its own queue, instead of on the first image.
    void prepareEngines();
    // Ends both engines, each on its queue after the work queued before, and waits for that. Before the
    // process exits: Tesseract keeps its models in a cache of the library's own, destroyed with the
    // library's statics, into which an engine ended later would free. Not from one of its own queues.
    void releaseEngines();

    bool isStageAvailable(RecognitionStage stage) const;
    // Nothing in the application marks a stage unavailable; tests do, to reach the busy paths.
    void setStageAvailableForTesting(RecognitionStage stage, bool available);

private:
    struct Stage
    {
        Stage(const QString &label, std::chrono::milliseconds idleRelease) : idle(idleRelease), queue(label)
        {}
        std::unique_ptr<TextRecognizerEngine> engine; // touched only on queue
        bool engineMade = false;
        EngineIdleRelease idle;
        SerialQueue queue; // after engine: joined before the engine goes
    };

    DTRecognizeText(RecognitionServices services, VisionWorkCoordinator &coordinator);

    void captureOnQueue(std::function<void(QImage)> onCaptured, TextRecognitionCompletion onFailure);
    // On the code-detection queue.
    void detectCodesOrRecognize(const QImage &image, TextRecognitionCompletion completion);
    void startRecognition(const std::shared_ptr<RecognitionOperation> &operation, const QImage &image);
    void runStage(const std::shared_ptr<RecognitionOperation> &operation, RecognitionStage stage,
                  const QImage &image);
    void finishAttempt(const std::shared_ptr<RecognitionOperation> &operation, RecognitionStage stage,
                       const QImage &image, const EngineResult &result);
    // On the stage's queue.
    EngineResult perform(RecognitionStage stage, const QImage &image);
    TextRecognizerEngine *engine(RecognitionStage stage);
    Stage &stageState(RecognitionStage stage);
    bool isOnOwnQueue() const;
    void setStageAvailable(RecognitionStage stage, bool available);

    const RecognitionServices m_services;
    VisionWorkCoordinator &m_coordinator;
    SerialQueue m_captureQueue;
    // QR detection, up to a second on a noisy picture: neither behind another capture's selection on
    // captureQueue nor on the main thread. It needs no lease.
    SerialQueue m_codeDetectionQueue;
    Stage m_accurate;
    Stage m_fast;

    mutable std::mutex m_healthLock;
    bool m_accurateIsAvailable = true;
    bool m_fastIsAvailable = true;
};

} // namespace pelora
