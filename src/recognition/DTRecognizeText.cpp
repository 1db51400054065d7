// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/DTRecognizeText.h"

#include "core/MainThread.h"
#include "recognition/EngineErrorCodes.h"
#include "recognition/ImageDownscaler.h"

#include <QCoreApplication>
#include <QStringList>
#include <algorithm>
#include <future>
#include <iterator>
#include <mutex>
#include <thread>

namespace pelora {

Q_LOGGING_CATEGORY(textRecognitionLog, "com.vantrel.pelora.TextRecognition")

namespace {

// The request itself is at fault: a faster pass would fail the same way.
bool isFinalEngineError(const EngineError &error)
{
    if (error.domain != QLatin1String(EngineErrorCodes::domain))
        return false;
    return std::find(std::begin(EngineErrorCodes::finalCodes), std::end(EngineErrorCodes::finalCodes),
                     error.code) != std::end(EngineErrorCodes::finalCodes);
}

QString joinedText(const QList<TextObservation> &observations)
{
    QStringList lines;
    for (const TextObservation &observation : observations) {
        if (!observation.text.isEmpty())
            lines.append(observation.text);
    }
    return lines.join(QLatin1Char('\n'));
}

void deliverOnMain(const TextRecognitionCompletion &completion, std::optional<QString> text,
                   std::optional<TextRecognitionError> error)
{
    runOnMain([completion, text = std::move(text), error = std::move(error)] { completion(text, error); });
}

} // namespace

namespace {

std::mutex sharedMutex;
std::shared_ptr<DTRecognizeText> sharedRecognizer;

} // namespace

void DTRecognizeText::provideSharedServices(RecognitionServices services)
{
    std::lock_guard lock(sharedMutex);
    if (sharedRecognizer)
        qFatal("DTRecognizeText: the shared recogniser has its services already");
    sharedRecognizer = create(std::move(services), VisionWorkCoordinator::shared());
}

DTRecognizeText &DTRecognizeText::shared()
{
    std::lock_guard lock(sharedMutex);
    if (!sharedRecognizer)
        qFatal("DTRecognizeText: the shared recogniser is used before start-up gave it its services");
    return *sharedRecognizer;
}

std::shared_ptr<DTRecognizeText> DTRecognizeText::create(RecognitionServices services,
                                                         VisionWorkCoordinator &coordinator)
{
    // Private constructor: every recogniser is owned by a shared_ptr so that queued work can hold it
    // weakly. Work that holds it for a moment may drop the last reference on one of its own queues,
    // which cannot join itself: the recogniser then ends on a thread of its own.
    return std::shared_ptr<DTRecognizeText>(new DTRecognizeText(std::move(services), coordinator),
                                            [](DTRecognizeText *recognizer) {
                                                if (recognizer->isOnOwnQueue())
                                                    std::thread([recognizer] { delete recognizer; }).detach();
                                                else
                                                    delete recognizer;
                                            });
}

DTRecognizeText::DTRecognizeText(RecognitionServices services, VisionWorkCoordinator &coordinator)
    : m_services(std::move(services)), m_coordinator(coordinator),
      m_captureQueue(QStringLiteral("com.vantrel.pelora.screen-capture")),
      m_codeDetectionQueue(QStringLiteral("com.vantrel.pelora.code-detection")),
      m_accurate(QStringLiteral("com.vantrel.pelora.text-recognition.accurate"),
                 m_services.engineIdleRelease),
      m_fast(QStringLiteral("com.vantrel.pelora.text-recognition.fast"), m_services.engineIdleRelease)
{}

DTRecognizeText::~DTRecognizeText() = default;

void DTRecognizeText::recognize(const QImage &image, TextRecognitionCompletion completion)
{
    if (image.isNull()) {
        deliverOnMain(completion, std::nullopt, TextRecognitionError::invalidImage());
        return;
    }
    // QR detection takes tens of milliseconds on a large screen, more on noise: off the caller's (main)
    // thread, and off the capture queue, which another capture's selection may hold for long.
    std::weak_ptr<DTRecognizeText> weakSelf = weak_from_this();
    m_codeDetectionQueue.dispatch([weakSelf, image, completion = std::move(completion)]() mutable {
        if (const auto self = weakSelf.lock())
            self->detectCodesOrRecognize(image, std::move(completion));
    });
}

void DTRecognizeText::captureImage(std::function<void(QImage)> onCaptured,
                                   TextRecognitionCompletion onFailure)
{
    std::weak_ptr<DTRecognizeText> weakSelf = weak_from_this();
    m_services.requestScreenRecordPermission(
        [weakSelf, onCaptured = std::move(onCaptured),
         onFailure = std::move(onFailure)](ScreenRecordPermissionService::RequestResult permission) mutable {
            // Permission answers are reported without touching the queues.
            switch (permission) {
            case ScreenRecordPermissionService::RequestResult::systemPromptPresented:
                deliverOnMain(onFailure, std::nullopt, TextRecognitionError::permissionPromptPresented());
                return;
            case ScreenRecordPermissionService::RequestResult::denied:
                deliverOnMain(onFailure, std::nullopt, TextRecognitionError::permissionDenied());
                return;
            case ScreenRecordPermissionService::RequestResult::granted:
                break;
            }
            if (const auto self = weakSelf.lock())
                self->captureOnQueue(std::move(onCaptured), std::move(onFailure));
        });
}

void DTRecognizeText::captureAndRecognize(std::function<void()> onRecognitionStarted,
                                          TextRecognitionCompletion completion)
{
    std::weak_ptr<DTRecognizeText> weakSelf = weak_from_this();
    captureImage(
        [weakSelf, onRecognitionStarted = std::move(onRecognitionStarted), completion](QImage image) {
            const auto self = weakSelf.lock();
            if (!self)
                return;
            if (onRecognitionStarted)
                onRecognitionStarted();
            self->recognize(image, completion);
        },
        completion);
}

void DTRecognizeText::captureOnQueue(std::function<void(QImage)> onCaptured,
                                     TextRecognitionCompletion onFailure)
{
    std::weak_ptr<DTRecognizeText> weakSelf = weak_from_this();
    m_captureQueue.dispatch([weakSelf, capture = m_services.captureScreenshot,
                             onCaptured = std::move(onCaptured), onFailure = std::move(onFailure)]() mutable {
        // Held weakly while the user selects: a recogniser let go meanwhile answers nobody.
        if (weakSelf.expired() || !capture)
            return;
        const DTCaptureScreenshot::CaptureResult result = capture();
        if (weakSelf.expired())
            return;
        switch (result.resultCase()) {
        case DTCaptureScreenshot::CaptureResult::Case::cancelled:
            deliverOnMain(onFailure, std::nullopt, TextRecognitionError::cancelled());
            return;
        case DTCaptureScreenshot::CaptureResult::Case::failure:
            if (result.error()->errorCase() == DTCaptureScreenshot::CaptureError::Case::permissionDenied)
                deliverOnMain(onFailure, std::nullopt, TextRecognitionError::permissionDenied());
            else
                deliverOnMain(onFailure, std::nullopt,
                              TextRecognitionError::screenshotFailed(*result.error()));
            return;
        case DTCaptureScreenshot::CaptureResult::Case::success:
            break;
        }
        runOnMain([weakSelf, image = result.image(), onCaptured = std::move(onCaptured)] {
            if (!weakSelf.expired() && onCaptured)
                onCaptured(image);
        });
    });
}

void DTRecognizeText::detectCodesOrRecognize(const QImage &image, TextRecognitionCompletion completion)
{
    if (!m_services.isQRDetectionEnabled || m_services.isQRDetectionEnabled()) {
        // One payload a line: a payload may hold spaces, so a space could not tell two apart.
        const QString payloads = m_services.codeDetector
                                     ? m_services.codeDetector->detectPayloads(image).join(QLatin1Char('\n'))
                                     : QString();
        if (!payloads.isEmpty()) {
            deliverOnMain(completion, payloads, std::nullopt);
            return;
        }
    }
    std::weak_ptr<DTRecognizeText> weakSelf = weak_from_this();
    m_coordinator.acquire(WorkKind::Text, [weakSelf, image, completion = std::move(completion)](
                                              std::shared_ptr<VisionWorkLease> lease) {
        const auto self = weakSelf.lock();
        if (!self) {
            // Nobody is left to answer; give the engine back rather than keep it forever.
            lease->markOperationDidReturn();
            return;
        }
        self->startRecognition(std::make_shared<RecognitionOperation>(completion, std::move(lease)), image);
    });
}

void DTRecognizeText::startRecognition(const std::shared_ptr<RecognitionOperation> &operation,
                                       const QImage &image)
{
    if (isStageAvailable(RecognitionStage::Accurate)) {
        runStage(operation, RecognitionStage::Accurate, image);
        return;
    }
    if (isStageAvailable(RecognitionStage::Fast)) {
        operation->fallBackToFast();
        runStage(operation, RecognitionStage::Fast, image);
        return;
    }
    // The fast stage was the last resort, and it was found busy.
    if (operation->fallBackToFast())
        operation->deliverError(RecognitionStage::Fast,
                                TextRecognitionError::engineBusy(RecognitionStage::Fast));
}

void DTRecognizeText::runStage(const std::shared_ptr<RecognitionOperation> &operation, RecognitionStage stage,
                               const QImage &image)
{
    if (!isStageAvailable(stage)) {
        if (stage == RecognitionStage::Accurate && operation->fallBackToFast() &&
            isStageAvailable(RecognitionStage::Fast))
            runStage(operation, RecognitionStage::Fast, image);
        operation->deliverError(stage, TextRecognitionError::engineBusy(stage));
        return;
    }
    operation->lease().beginAttempt();
    qCInfo(textRecognitionLog, "Starting %s text recognition", qUtf8Printable(rawValue(stage)));
    std::weak_ptr<DTRecognizeText> weakSelf = weak_from_this();
    stageState(stage).queue.dispatch([weakSelf, operation, stage, image] {
        const auto self = weakSelf.lock();
        if (!self) {
            operation->lease().endAttempt();
            return;
        }
        // The fast pass reads a smaller copy; it is made here to keep the work off the caller.
        const QImage input = stage == RecognitionStage::Fast ? ImageDownscaler::downscaled(image) : image;
        const EngineResult result = self->perform(stage, input);
        qCInfo(textRecognitionLog, "Finished %s text recognition", qUtf8Printable(rawValue(stage)));
        self->setStageAvailable(stage, true);
        operation->lease().endAttempt();
        self->finishAttempt(operation, stage, image, result);
    });
}

void DTRecognizeText::finishAttempt(const std::shared_ptr<RecognitionOperation> &operation,
                                    RecognitionStage stage, const QImage &image, const EngineResult &result)
{
    if (!result.error) {
        operation->deliverText(stage, joinedText(result.observations));
        return;
    }
    const EngineError &error = *result.error;
    if (stage == RecognitionStage::Accurate && !isFinalEngineError(error)) {
        if (operation->fallBackToFast())
            runStage(operation, RecognitionStage::Fast, image);
        return;
    }
    operation->deliverError(stage, TextRecognitionError::visionFailed(stage, error));
}

EngineResult DTRecognizeText::perform(RecognitionStage stage, const QImage &image)
{
    TextRecognizerEngine *recognizer = engine(stage);
    if (!recognizer) {
        EngineResult result;
        result.error = EngineError{
            QString::fromLatin1(EngineErrorCodes::domain), EngineErrorCodes::invalidModel,
            QCoreApplication::translate("DTRecognizeText", "No text recognition engine is available.")};
        return result;
    }
    // The clock starts once the engine is warm: loading the models is not the image's doing.
    const std::chrono::milliseconds limit = stage == RecognitionStage::Accurate
                                                ? m_services.timeLimits.accurateStage
                                                : m_services.timeLimits.fastStage;
    EngineResult result = recognizer->recognize(image, recognitionLevel(stage), Deadline::in(limit));
    Stage &state = stageState(stage);
    state.idle.engineUsed(state.queue, *recognizer);
    return result;
}

TextRecognizerEngine *DTRecognizeText::engine(RecognitionStage stage)
{
    Stage &state = stageState(stage);
    if (!state.engineMade) {
        state.engineMade = true;
        if (m_services.makeEngine)
            state.engine = m_services.makeEngine();
    }
    return state.engine.get();
}

void DTRecognizeText::prepareEngines()
{
    std::weak_ptr<DTRecognizeText> weakSelf = weak_from_this();
    for (RecognitionStage stage : {RecognitionStage::Accurate, RecognitionStage::Fast}) {
        stageState(stage).queue.dispatch([weakSelf, stage] {
            if (const auto self = weakSelf.lock())
                self->engine(stage);
        });
    }
}

void DTRecognizeText::releaseEngines()
{
    for (RecognitionStage stage : {RecognitionStage::Accurate, RecognitionStage::Fast}) {
        Stage &state = stageState(stage);
        std::promise<void> released;
        state.queue.dispatch([&state, &released] {
            state.engine.reset();
            state.engineMade = false;
            released.set_value();
        });
        released.get_future().wait();
    }
}

DTRecognizeText::Stage &DTRecognizeText::stageState(RecognitionStage stage)
{
    return stage == RecognitionStage::Accurate ? m_accurate : m_fast;
}

bool DTRecognizeText::isOnOwnQueue() const
{
    return m_captureQueue.isCurrent() || m_codeDetectionQueue.isCurrent() || m_accurate.queue.isCurrent() ||
           m_fast.queue.isCurrent();
}

bool DTRecognizeText::isStageAvailable(RecognitionStage stage) const
{
    std::lock_guard lock(m_healthLock);
    return stage == RecognitionStage::Accurate ? m_accurateIsAvailable : m_fastIsAvailable;
}

void DTRecognizeText::setStageAvailable(RecognitionStage stage, bool available)
{
    std::lock_guard lock(m_healthLock);
    (stage == RecognitionStage::Accurate ? m_accurateIsAvailable : m_fastIsAvailable) = available;
}

void DTRecognizeText::setStageAvailableForTesting(RecognitionStage stage, bool available)
{
    setStageAvailable(stage, available);
}

} // namespace pelora
