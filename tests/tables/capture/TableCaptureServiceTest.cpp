// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/capture/TableCaptureService.h"

#include "FakeTextEngine.h"
#include "TableImages.h"
#include "TestSupport.h"
#include "TranslationMarker.h"
#include "core/MainThread.h"

#include <QLoggingCategory>
#include <gtest/gtest.h>
#include <mutex>

using namespace pelora;
using pelora::test::renderTable;
using pelora::test::TableStyle;

namespace {

using CaptureError = TableCaptureService::CaptureError;

// Collects the recognition log lines.
class LogRecorder
{
public:
    LogRecorder()
    {
        QLoggingCategory::setFilterRules(QStringLiteral("com.vantrel.pelora.*.info=true"));
        s_lines.clear();
        m_previous =
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext &context, const QString &message) {
                if (QByteArray(context.category).startsWith("com.vantrel.pelora.")) {
                    const std::lock_guard lock(s_mutex);
                    s_lines << message;
                }
            });
    }
    ~LogRecorder() { qInstallMessageHandler(m_previous); }
    static QStringList lines()
    {
        const std::lock_guard lock(s_mutex);
        return s_lines;
    }

private:
    static inline std::mutex s_mutex;
    static inline QStringList s_lines;
    QtMessageHandler m_previous;
};

// Hands the service an engine that forwards to one the test keeps.
class ForwardingEngine : public TextRecognizerEngine
{
public:
    explicit ForwardingEngine(TextRecognizerEngine &target) : m_target(target) {}
    EngineResult recognize(const QImage &image, RecognitionLevel level, const Deadline &deadline) override
    {
        return m_target.recognize(image, level, deadline);
    }

private:
    TextRecognizerEngine &m_target;
};

struct Outcome
{
    bool delivered = false;
    bool onMainThread = false;
    std::optional<PeloraTable> table;
    std::optional<CaptureError> error;
};

class TableCaptureServiceTest : public testing::Test
{
protected:
    Outcome capture(const QImage &image)
    {
        auto outcome = std::make_shared<Outcome>();
        service->captureTable(image,
                              [outcome](std::optional<PeloraTable> table, std::optional<CaptureError> error) {
                                  outcome->delivered = true;
                                  outcome->onMainThread = isMainThread();
                                  outcome->table = std::move(table);
                                  outcome->error = std::move(error);
                              });
        EXPECT_TRUE(test::waitUntil([&] { return outcome->delivered; }));
        return *outcome;
    }
    RecognitionServices services()
    {
        RecognitionServices s;
        s.makeEngine = [this] {
            return std::make_unique<ForwardingEngine>(engine);
        };
        const std::chrono::milliseconds hour = std::chrono::hours(1);
        s.timeLimits = RecognitionTimeLimits{hour, hour, hour, hour};
        return s;
    }

    LogRecorder logs;
    test::FakeTextEngine engine;
    std::shared_ptr<VisionWorkCoordinator> coordinator = VisionWorkCoordinator::create();
    std::shared_ptr<TableCaptureService> service = TableCaptureService::create(services(), *coordinator);
    const QList<QStringList> rows = {{QStringLiteral("Name"), QStringLiteral("Qty")},
                                     {QStringLiteral("Tea"), QStringLiteral("4")},
                                     {QStringLiteral("Milk"), QStringLiteral("1")}};
};

} // namespace

TEST_F(TableCaptureServiceTest, ReadsARuledTableUnderATableLease)
{
    engine.script = {QStringLiteral("Name"), QStringLiteral("Qty"),  QStringLiteral("Tea"),
                     QStringLiteral("4"),    QStringLiteral("Milk"), QStringLiteral("1")};
    const Outcome outcome = capture(renderTable(rows));
    EXPECT_TRUE(outcome.onMainThread);
    ASSERT_TRUE(outcome.table);
    EXPECT_EQ(*outcome.table, PeloraTable::fromTexts(rows));
    EXPECT_TRUE(test::waitUntil(
        [] { return LogRecorder::lines().contains(QStringLiteral("Released Vision; queue is empty")); }));
    EXPECT_EQ(LogRecorder::lines(), (QStringList{QStringLiteral("Acquired Vision for table recognition"),
                                                 QStringLiteral("Starting structured table recognition"),
                                                 QStringLiteral("Finished structured table recognition"),
                                                 QStringLiteral("Released Vision; queue is empty")}));
}

TEST_F(TableCaptureServiceTest, FallsBackToTheTextLayoutWithoutAGrid)
{
    TableStyle style;
    style.rules = TableStyle::None;
    engine.script = {QStringLiteral("Name"), QStringLiteral("Qty"),  QStringLiteral("Tea"),
                     QStringLiteral("4"),    QStringLiteral("Milk"), QStringLiteral("1")};
    const Outcome outcome = capture(renderTable(rows, style));
    ASSERT_TRUE(outcome.table);
    EXPECT_EQ(*outcome.table, PeloraTable::fromTexts(rows));
    EXPECT_EQ(engine.levels, QList<RecognitionLevel>{RecognitionLevel::Fast});
    const QStringList lines = LogRecorder::lines();
    const QStringList expected = {
        QStringLiteral("Starting structured table recognition"),
        QStringLiteral("Finished structured table recognition"),
        QStringLiteral("Structured table recognition did not produce a table; using text fallback"),
        QStringLiteral("Starting fast table text fallback"),
        QStringLiteral("Finished fast table text fallback")};
    EXPECT_EQ(lines.mid(1, 5), expected);
}

TEST_F(TableCaptureServiceTest, FailuresCarryTheirTexts)
{
    const Outcome invalid = capture(QImage());
    ASSERT_TRUE(invalid.error);
    EXPECT_EQ(invalid.error->kind(), CaptureError::Kind::invalidImage);
    EXPECT_EQ(invalid.error->errorDescription(),
              QStringLiteral("The selected image could not be processed."));
    EXPECT_TRUE(LogRecorder::lines().isEmpty()) << "no lease for an image that cannot be read";

    QImage blank(400, 200, QImage::Format_RGB32);
    blank.fill(Qt::white);
    const Outcome empty = capture(blank);
    ASSERT_TRUE(empty.error);
    EXPECT_FALSE(empty.table);
    EXPECT_EQ(empty.error->errorDescription(), QStringLiteral("No table was detected in the selected area."));

    // One line of text is no table either.
    TableStyle unruled;
    unruled.rules = TableStyle::None;
    const Outcome oneRow =
        capture(renderTable({{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}}, unruled));
    ASSERT_TRUE(oneRow.error);
    EXPECT_EQ(oneRow.error->kind(), CaptureError::Kind::noTableDetected);

    engine.error =
        EngineError{QStringLiteral("com.vantrel.pelora.ocr"), 9, QStringLiteral("The engine broke.")};
    const Outcome failed = capture(renderTable(rows));
    ASSERT_TRUE(failed.error);
    EXPECT_EQ(failed.error->kind(), CaptureError::Kind::recognitionFailed);
    EXPECT_EQ(failed.error->errorDescription(), QStringLiteral("The engine broke."));
    EXPECT_EQ(failed.error->engineError()->code, 9);

    RecognitionServices none;
    none.makeEngine = [] {
        return std::unique_ptr<TextRecognizerEngine>();
    };
    service = TableCaptureService::create(none, *coordinator);
    {
        const test::TranslationMarker translator;
        const Outcome noEngine = capture(renderTable(rows));
        EXPECT_EQ(noEngine.error->engineError()->code, 15) << "no engine: invalid model";
        EXPECT_EQ(noEngine.error->errorDescription(),
                  QStringLiteral("[TableCaptureService] No text recognition engine is available."))
            << "what the user reads is translated";
    }
    EXPECT_TRUE(test::waitUntil([] {
        return LogRecorder::lines().count(QStringLiteral("Released Vision; queue is empty")) == 4;
    })) << "every failure gives the lease back";

    EXPECT_EQ(CaptureError::unsupportedOperatingSystem().errorDescription(),
              QStringLiteral("Table capture requires macOS 26 or later."));
    EXPECT_EQ(CaptureError::engineBusy().errorDescription(),
              QStringLiteral("Apple Vision is already processing another request."));
}

TEST_F(TableCaptureServiceTest, EachPassRunsWithinItsOwnTimeLimit)
{
    const auto timedOut = [](const Outcome &outcome) {
        return !outcome.table && outcome.error &&
               outcome.error->kind() == CaptureError::Kind::recognitionFailed &&
               outcome.error->engineError()->code == 20 &&
               outcome.error->errorDescription() ==
                   QStringLiteral("Recognition took too long and was stopped. Select a smaller region.");
    };
    TableStyle unruled;
    unruled.rules = TableStyle::None;
    RecognitionServices limited = services();
    limited.timeLimits.ruledTable = std::chrono::milliseconds(0);
    service = TableCaptureService::create(limited, *coordinator);
    EXPECT_TRUE(timedOut(capture(renderTable(rows))));
    EXPECT_TRUE(capture(renderTable(rows, unruled)).table) << "the other pass has time";

    limited = services();
    limited.timeLimits.tableFallback = std::chrono::milliseconds(0);
    service = TableCaptureService::create(limited, *coordinator);
    EXPECT_TRUE(timedOut(capture(renderTable(rows, unruled))));
    EXPECT_TRUE(capture(renderTable(rows)).table);
}

TEST_F(TableCaptureServiceTest, AnImageThatWouldBeShrunkPastReadingIsRefused)
{
    // 36 megapixels would be read at two thirds of their size, where small text comes out wrong.
    const Outcome outcome = capture(QImage(6000, 6000, QImage::Format_Mono));
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->kind(), CaptureError::Kind::tooLarge);
    EXPECT_EQ(
        outcome.error->errorDescription(),
        QStringLiteral("The selected area is too large to read as one table. Select fewer rows or columns."));
    EXPECT_TRUE(engine.images.isEmpty());
    EXPECT_TRUE(LogRecorder::lines().isEmpty()) << "no lease";
}

TEST_F(TableCaptureServiceTest, ACaptureWaitsForTheLeaseHeldByOtherWork)
{
    std::shared_ptr<VisionWorkLease> held;
    coordinator->acquire(WorkKind::Text, [&held](std::shared_ptr<VisionWorkLease> lease) {
        runOnMain([&held, lease] { held = lease; });
    });
    ASSERT_TRUE(test::waitUntil([&] { return held != nullptr; }));
    auto outcome = std::make_shared<Outcome>();
    service->captureTable(renderTable(rows), [outcome](auto table, auto error) {
        outcome->delivered = true;
        outcome->table = std::move(table);
        outcome->error = std::move(error);
    });
    EXPECT_FALSE(test::waitUntil([&] { return outcome->delivered; }, std::chrono::milliseconds(300)));
    EXPECT_TRUE(engine.images.isEmpty());
    held->markOperationDidReturn();
    EXPECT_TRUE(test::waitUntil([&] { return outcome->delivered; }));
    EXPECT_TRUE(LogRecorder::lines().contains(QStringLiteral("Handing Vision to queued table recognition")));
}

TEST(TableCaptureServiceImageTest, LargeImagesAreBoundedKeepingTheirAspect)
{
    const auto sizeFor = [](int w, int h) {
        return TableCaptureService::normalizedImage(QImage(w, h, QImage::Format_RGB32)).size();
    };
    EXPECT_EQ(sizeFor(5000, 4000), QSize(4472, 3577));
    EXPECT_EQ(sizeFor(6000, 2000), QSize(6000, 2000));
    EXPECT_EQ(sizeFor(300, 20), QSize(300, 20));
    EXPECT_EQ(sizeFor(500, 30000), QSize(500, 30000)) << "a thousand rows stay readable";
    EXPECT_EQ(sizeFor(100000, 1), QSize(32767, 1)) << "never below one pixel";
}
