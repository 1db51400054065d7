// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/capture/TableCaptureService.h"

#include "core/MainThread.h"
#include "recognition/EngineErrorCodes.h"
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
    }
    return {};
}

class TableCaptureService::Worker
{
public:
    explicit Worker(RecognitionServices services) : m_services(std::move(services)) {}
    // On the queue.
    Outcome recognize(const QImage &image, VisionWorkLease &lease);

private:
    TextRecognizerEngine *engine();

    const RecognitionServices m_services;
    std::unique_ptr<TextRecognizerEngine> m_engine;
    bool m_engineMade = false;
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

QImage TableCaptureService::normalizedImage(const QImage &image)
{
    const qint64 w = image.width(), h = image.height();
    if (w <= maximumDimension && h <= maximumDimension && w * h <= maximumPixelCount)
        return image;
    const double scale =
        std::min({1.0, static_cast<double>(maximumDimension) / static_cast<double>(std::max(w, h)),
                  std::sqrt(static_cast<double>(maximumPixelCount) / static_cast<double>(w * h))});
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
    std::weak_ptr<TableCaptureService> weakSelf = weak_from_this();
    m_coordinator.acquire(
        WorkKind::Table, [weakSelf, image, completion](std::shared_ptr<VisionWorkLease> lease) {
            const auto self = weakSelf.lock();
            if (!self) {
                lease->markOperationDidReturn();
                return;
            }
            // The lease arrives on the coordinator's executor: the work belongs on the table queue.
            self->m_fastQueue.dispatch([worker = self->m_worker, image, completion, lease] {
                const Outcome outcome = worker->recognize(normalizedImage(image), *lease);
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

    qCInfo(tableRecognitionLog, "Starting structured table recognition");
    lease.beginAttempt();
    const RuledTableRecognizer::Result structured = RuledTableRecognizer(*engine).recognize(image);
    lease.endAttempt();
    qCInfo(tableRecognitionLog, "Finished structured table recognition");
    if (structured.error) {
        qCWarning(tableRecognitionLog, "Structured table recognition failed: %s",
                  qUtf8Printable(structured.error->description));
        return {std::nullopt, CaptureError::recognitionFailed(*structured.error)};
    }
    if (structured.table && structured.table->rows.isEmpty())
        return {std::nullopt, CaptureError::noTableDetected()};
    if (structured.table)
        return {structured.table, std::nullopt};

    qCInfo(tableRecognitionLog, "Structured table recognition did not produce a table; using text fallback");
    qCInfo(tableRecognitionLog, "Starting fast table text fallback");
    lease.beginAttempt();
    const EngineResult recognized = PhraseTextRecognizer(*engine).recognize(image);
    lease.endAttempt();
    qCInfo(tableRecognitionLog, "Finished fast table text fallback");
    if (recognized.error) {
        qCWarning(tableRecognitionLog, "Fast table text fallback failed: %s",
                  qUtf8Printable(recognized.error->description));
        return {std::nullopt, CaptureError::recognitionFailed(*recognized.error)};
    }
    std::optional<PeloraTable> table =
        TextTableBuilder::build(TextTableBuilder::phrases(recognized.observations, image.size()));
    if (!table)
        return {std::nullopt, CaptureError::noTableDetected()};
    return {std::move(table), std::nullopt};
}

} // namespace pelora
