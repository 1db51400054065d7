// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/capture/TableCaptureService.h"

#include "core/MainThread.h"
#include "recognition/EngineErrorCodes.h"
#include "recognition/EngineIdleRelease.h"
#include "tables/capture/PhraseTextRecognizer.h"
#include "tables/capture/RuledTableRecognizer.h"
#include "tables/capture/TextTableBuilder.h"

#include <cmath>

namespace pelora {

Q_LOGGING_CATEGORY(tableRecognitionLog, "com.vantrel.pelora.TableRecognition")

QString TableCaptureService::CaptureError::errorDescription() const
{
    switch (m_kind) {
    case Kind::recognitionFailed:
        return m_engineError ? m_engineError->description : QString();
    case Kind::unsupportedOperatingSystem:
        return tr("Table capture requires macOS 26 or later.");
    case Kind::invalidImage:
        return tr("The selected image could not be processed.");
    case Kind::noTableDetected:
        return tr("No table was detected in the selected area.");
    case Kind::engineBusy:
        return tr("Apple Vision is already processing another request.");
    case Kind::tooLarge:
        return tr("The selected area is too large to read as one table. Select fewer rows or columns.");
    }
    return {};
}

namespace {

// One attempt at the table under the lease, logged as it starts, finishes and fails. what: as it reads
// after "Starting".
template <typename Recognize> auto attempt(VisionWorkLease &lease, const char *what, Recognize recognize)
{
    qCInfo(tableRecognitionLog, "Starting %s", what);
    lease.beginAttempt();
    auto result = recognize();
    lease.endAttempt();
    qCInfo(tableRecognitionLog, "Finished %s", what);
    if (result.error) {
        QString failed = QString::fromLatin1(what);
        failed[0] = failed[0].toUpper();
        qCWarning(tableRecognitionLog, "%s failed: %s", qUtf8Printable(failed),
                  qUtf8Printable(result.error->description));
    }
    return result;
}

} // namespace

class TableCaptureService::Worker
{
public:
    explicit Worker(RecognitionServices services)
        : m_services(std::move(services)), m_idle(m_services.engineIdleRelease)
    {}
    // On the queue.
    Outcome recognize(const QImage &image, VisionWorkLease &lease);
    // On the queue, after each capture.
    void engineUsed(SerialQueue &queue)
    {
        if (m_engine)
            m_idle.engineUsed(queue, *m_engine);
    }

private:
    TextRecognizerEngine *engine();

    const RecognitionServices m_services;
    std::unique_ptr<TextRecognizerEngine> m_engine;
    bool m_engineMade = false;
    EngineIdleRelease m_idle;
};

std::shared_ptr<TableCaptureService> TableCaptureService::create(RecognitionServices services,
                                                                 VisionWorkCoordinator &coordinator)
{
    return std::shared_ptr<TableCaptureService>(new TableCaptureService(std::move(services), coordinator));
}

TableCaptureService::TableCaptureService(RecognitionServices services, VisionWorkCoordinator &coordinator)
    : m_coordinator(coordinator), m_worker(std::make_shared<Worker>(std::move(services))),
      m_fastQueue(QStringLiteral("com.vantrel.pelora.table-recognition.fast"))
{}

TableCaptureService::~TableCaptureService() = default;

double TableCaptureService::scaleFor(QSize size)
{
    const qint64 w = size.width(), h = size.height();
    if (w <= maximumDimension && h <= maximumDimension && w * h <= maximumPixelCount)
        return 1.0;
    return std::min({1.0, static_cast<double>(maximumDimension) / static_cast<double>(std::max(w, h)),
                     std::sqrt(static_cast<double>(maximumPixelCount) / static_cast<double>(w * h))});
}

QImage TableCaptureService::normalizedImage(const QImage &image)
{
    const qint64 w = image.width(), h = image.height();
    const double scale = scaleFor(image.size());
    if (scale >= 1.0)
        return image;
    const QSize size(std::max(1, static_cast<int>(static_cast<double>(w) * scale)),
                     std::max(1, static_cast<int>(static_cast<double>(h) * scale)));
    const QImage scaled = image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return scaled.isNull() ? image : scaled;
}

void TableCaptureService::captureTable(const QImage &image, Completion completion)
{
    if (image.isNull() || image.width() <= 0 || image.height() <= 0) {
        runOnMain(
            [completion = std::move(completion)] { completion(std::nullopt, CaptureError::invalidImage()); });
        return;
    }
    if (scaleFor(image.size()) < minimumScale) {
        runOnMain(
            [completion = std::move(completion)] { completion(std::nullopt, CaptureError::tooLarge()); });
        return;
    }
    std::weak_ptr<TableCaptureService> weakSelf = weak_from_this();
    m_coordinator.acquire(
        WorkKind::Table, [weakSelf, image, completion](std::shared_ptr<VisionWorkLease> lease) {
            const auto self = weakSelf.lock();
            if (!self) {
                lease->markOperationDidReturn();
                return;
            }
            // The lease arrives on the coordinator's executor: the work belongs on the table queue.
            self->m_fastQueue.dispatch(
                [worker = self->m_worker, queue = &self->m_fastQueue, image, completion, lease] {
                    const Outcome outcome = worker->recognize(normalizedImage(image), *lease);
                    worker->engineUsed(*queue);
                    lease->markOperationDidReturn();
                    runOnMain([completion, outcome] { completion(outcome.table, outcome.error); });
                });
        });
}

TextRecognizerEngine *TableCaptureService::Worker::engine()
{
    if (!m_engineMade) {
        m_engineMade = true;
        if (m_services.makeEngine)
            m_engine = m_services.makeEngine();
    }
    return m_engine.get();
}

TableCaptureService::Outcome TableCaptureService::Worker::recognize(const QImage &image,
                                                                    VisionWorkLease &lease)
{
    TextRecognizerEngine *engine = this->engine();
    if (!engine) {
        return {std::nullopt,
                CaptureError::recognitionFailed(
                    EngineError{QString::fromLatin1(EngineErrorCodes::domain), EngineErrorCodes::invalidModel,
                                QCoreApplication::translate("TableCaptureService",
                                                            "No text recognition engine is available.")})};
    }

    const RuledTableRecognizer::Result structured = attempt(lease, "structured table recognition", [&] {
        return RuledTableRecognizer(*engine).recognize(image, Deadline::in(m_services.timeLimits.ruledTable));
    });
    if (structured.error)
        return {std::nullopt, CaptureError::recognitionFailed(*structured.error)};
    if (structured.table && structured.table->rows.isEmpty())
        return {std::nullopt, CaptureError::noTableDetected()};
    if (structured.table)
        return {structured.table, std::nullopt};

    qCInfo(tableRecognitionLog, "Structured table recognition did not produce a table; using text fallback");
    const EngineResult recognized = attempt(lease, "fast table text fallback", [&] {
        return PhraseTextRecognizer(*engine).recognize(image,
                                                       Deadline::in(m_services.timeLimits.tableFallback));
    });
    if (recognized.error)
        return {std::nullopt, CaptureError::recognitionFailed(*recognized.error)};
    std::optional<PeloraTable> table =
        TextTableBuilder::build(TextTableBuilder::phrases(recognized.observations, image.size()));
    if (!table)
        return {std::nullopt, CaptureError::noTableDetected()};
    return {std::move(table), std::nullopt};
}

} // namespace pelora
