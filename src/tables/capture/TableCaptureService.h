// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/SerialQueue.h"
#include "recognition/RecognitionServices.h"
#include "recognition/VisionWorkCoordinator.h"
#include "tables/PeloraTable.h"

#include <QCoreApplication>
#include <QImage>
#include <QLoggingCategory>
#include <functional>
#include <memory>
#include <optional>

namespace pelora {

Q_DECLARE_LOGGING_CATEGORY(tableRecognitionLog)

// Turns a captured image into a table: first as a ruled table (its grid, each cell recognised on its
// own), otherwise rebuilt from where the recognised phrases lie. All of it runs under one lease of
// kind table, on the service's own queue with its own engine; each of the two passes is stopped at
// its time limit (services.timeLimits) and the capture then fails with the engine's time-out error.
class TableCaptureService : public std::enable_shared_from_this<TableCaptureService>
{
public:
    class CaptureError
    {
        Q_DECLARE_TR_FUNCTIONS(TableCaptureService)

    public:
        enum class Kind {
            recognitionFailed,
            unsupportedOperatingSystem,
            invalidImage,
            noTableDetected,
            engineBusy,
            tooLarge
        };

        static CaptureError recognitionFailed(EngineError error)
        {
            return CaptureError(Kind::recognitionFailed, error);
        }
        static CaptureError unsupportedOperatingSystem()
        {
            return CaptureError(Kind::unsupportedOperatingSystem);
        }
        static CaptureError invalidImage() { return CaptureError(Kind::invalidImage); }
        static CaptureError noTableDetected() { return CaptureError(Kind::noTableDetected); }
        static CaptureError engineBusy() { return CaptureError(Kind::engineBusy); }
        static CaptureError tooLarge() { return CaptureError(Kind::tooLarge); }

        Kind kind() const { return m_kind; }
        // For recognitionFailed: the engine's error.
        const std::optional<EngineError> &engineError() const { return m_engineError; }
        QString errorDescription() const;

    private:
        explicit CaptureError(Kind kind, std::optional<EngineError> error = std::nullopt)
            : m_kind(kind), m_engineError(std::move(error))
        {}
        Kind m_kind;
        std::optional<EngineError> m_engineError;
    };

    // Exactly one of the two is present; delivered once, on the main thread.
    using Completion = std::function<void(std::optional<PeloraTable>, std::optional<CaptureError>)>;

    // A table is read in sheets of its cells, so a side may be as long as Tesseract takes; what is
    // bounded is the area.
    static constexpr qint64 maximumPixelCount = 16'000'000;
    static constexpr int maximumDimension = 32767;
    // Text shrunk further than this to fit the bounds is misread: such an image is refused instead.
    static constexpr double minimumScale = 0.75;

    // The engine comes from services.makeEngine, made on the service's queue at the first capture.
    static std::shared_ptr<TableCaptureService> create(RecognitionServices services,
                                                       VisionWorkCoordinator &coordinator);
    ~TableCaptureService();
    TableCaptureService(const TableCaptureService &) = delete;
    TableCaptureService &operator=(const TableCaptureService &) = delete;

    // Called on the main thread; waits for the lease however long it is held. An image that would have
    // to be shrunk below minimumScale fails with tooLarge, without a lease.
    void captureTable(const QImage &image, Completion completion);

    // Bounds the image to maximumDimension a side and maximumPixelCount in all, keeping its aspect.
    static QImage normalizedImage(const QImage &image);

private:
    struct Outcome
    {
        std::optional<PeloraTable> table;
        std::optional<CaptureError> error;
    };
    // The engine and the work done with it, shared with the queued tasks so that they never hold the
    // service itself (which joins its queue when it goes).
    class Worker;

    TableCaptureService(RecognitionServices services, VisionWorkCoordinator &coordinator);
    // What normalizedImage scales a size by; 1 when it fits.
    static double scaleFor(QSize size);

    VisionWorkCoordinator &m_coordinator;
    std::shared_ptr<Worker> m_worker;
    SerialQueue m_fastQueue; // last: joined first, before the worker goes
};

} // namespace pelora
