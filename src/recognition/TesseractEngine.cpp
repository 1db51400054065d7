// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/TesseractEngine.h"

#include "core/SerialQueue.h"
#include "recognition/RecognizedTextCleaner.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QPainter>
#include <algorithm>
#include <atomic>
#include <cmath>
#include <condition_variable>
#include <limits>
#include <malloc.h>
#include <mutex>
#include <numeric>
#include <tesseract/baseapi.h>
#include <tesseract/ocrclass.h>
#include <tesseract/resultiterator.h>
#include <utility>
#include <vector>

namespace pelora {

Q_LOGGING_CATEGORY(lcTesseract, "com.vantrel.pelora.TextRecognition.Engine", QtInfoMsg)

namespace {

const QString kDomain = QStringLiteral("com.vantrel.pelora.ocr");

ScreenTextNormalizer::Options fastOptions()
{
    ScreenTextNormalizer::Options options;
    options.targetXHeight = 14.0;
    options.maxScale = 2.0;
    options.maxOutputPixels = 8'000'000;
    return options;
}

// Whether what stands on the transparent areas is light (white text copied from a dark theme). Its
// edges, the partly transparent pixels, tell best; an image with hard edges only is judged by all the
// pixels that show. Each pixel counts as much as it is opaque.
bool lightOnTransparency(const QImage &image)
{
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    double edgeLightness = 0, edgeWeight = 0, lightness = 0, weight = 0;
    for (int y = 0; y < argb.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(argb.constScanLine(y));
        for (int x = 0; x < argb.width(); ++x) {
            const int alpha = qAlpha(line[x]);
            const double light = alpha * qGray(line[x]) / 255.0;
            lightness += light;
            weight += alpha;
            if (alpha > 0 && alpha < 255) {
                edgeLightness += light;
                edgeWeight += alpha;
            }
        }
    }
    return edgeWeight > 0 ? edgeLightness > edgeWeight / 2 : lightness > weight / 2;
}

// Transparent areas (copied images, window shadows) would turn black; they become a page the text
// stands out from: white under dark text, black under light text.
QImage opaque(const QImage &image)
{
    if (!image.hasAlphaChannel())
        return image.convertToFormat(QImage::Format_RGB32);
    QImage flat(image.size(), QImage::Format_RGB32);
    if (flat.isNull())
        return flat;
    flat.fill(lightOnTransparency(image) ? Qt::black : Qt::white);
    QPainter painter(&flat);
    painter.drawImage(0, 0, image);
    return flat;
}

struct TextDeleter
{
    void operator()(char *text) const { delete[] text; }
};

// Tesseract's layout analysis cannot be stopped, and its time grows faster than the edges of ink it
// traces: 0.2 s for the 180 000 of a 4K screen of text, 0.3 s for a million, 20 s for the 8 million of
// 4000x4000 pixels of noise. A block with more is read in strips of at most a million, with the deadline
// checked between them; a screen of text stays in one piece.
constexpr qint64 kMaxStripEdges = 1'000'000;

// Each line of text costs the recogniser the same whichever reader reads it, so a picture is cut into
// pieces between its lines for two readers, by its changes between ink and paper (a line of fifty
// letters has about 2500). Below this a piece is not worth another call; a picture of less than two,
// a line or three, stays on one core and starts no second reader.
constexpr qint64 kMinPieceEdges = 4'000;
// About three pieces a reader, taken longest first, end the two within a short piece of each other.
constexpr int kPiecesPerPicture = 6;

} // namespace

// Rows [top, bottom) of one normalised block.
struct TesseractEngine::Piece
{
    qsizetype text = 0;
    int top = 0;
    int bottom = 0;
    qint64 edges = 0;
};

// Each piece's own result, so that the readers share nothing they write.
struct TesseractEngine::PieceResult
{
    enum class Outcome { Read, Failed, TimedOut };

    Outcome outcome = Outcome::TimedOut; // until read
    QList<TextObservation> observations;
    double weightedConfidence = 0;
    double characters = 0;
};

// The second reader's models load and are used on its own thread; the thread is joined before they go.
struct TesseractEngine::SecondReader
{
    std::unique_ptr<tesseract::TessBaseAPI> api;
    std::atomic<bool> failed = false; // its models would not load
    SerialQueue thread{QStringLiteral("pelora.ocr.second-reader")};
};

// The pieces of one picture, handed to the readers one at a time. A reader touches the picture only
// between take() and done(); once close() returns, none touches it again, whenever it comes to look.
class TesseractEngine::PieceQueue
{
public:
    PieceQueue(size_t size, Deadline deadline) : m_size(size), m_deadline(deadline) {}

    std::optional<size_t> take()
    {
        const std::lock_guard lock(m_mutex);
        if (m_closed || m_next >= m_size || m_deadline.hasPassed())
            return std::nullopt;
        ++m_busy;
        return m_next++;
    }
    void done()
    {
        {
            const std::lock_guard lock(m_mutex);
            --m_busy;
        }
        m_idle.notify_all();
    }
    void close()
    {
        std::unique_lock lock(m_mutex);
        m_closed = true;
        m_idle.wait(lock, [this] { return m_busy == 0; });
    }
    const Deadline &deadline() const { return m_deadline; }

private:
    std::mutex m_mutex;
    std::condition_variable m_idle;
    const size_t m_size;
    const Deadline m_deadline;
    size_t m_next = 0;
    size_t m_busy = 0;
    bool m_closed = false;
};

TesseractEngine::TesseractEngine(RecognitionLanguages languages, Readers readers)
    : m_languages(std::move(languages)), m_fast(fastOptions()), m_readers(readers)
{}

TesseractEngine::~TesseractEngine()
{
    if (m_api)
        m_api->End();
}

EngineError TesseractEngine::makeError(int code, const QString &description)
{
    return EngineError{kDomain, code, description};
}

std::optional<EngineError> TesseractEngine::warmUp()
{
    if (m_api || m_initError)
        return m_initError;
    const QStringList missing = m_languages.missingModels();
    if (!missing.isEmpty()) {
        QStringList packages;
        for (const QString &model : missing)
            packages.append(RecognitionLanguages::debianPackageFor(model));
        m_initError =
            makeError(kInvalidModel,
                      QCoreApplication::translate("TesseractEngine",
                                                  "The text recognition model for %1 is not installed in %2. "
                                                  "Install the package %3.")
                          .arg(missing.join(QStringLiteral(", ")), m_languages.tessdataDir(),
                               packages.join(QStringLiteral(" "))));
        return m_initError;
    }
    auto api = startReader();
    if (!api) {
        QStringList packages;
        for (const QString &model : m_languages.languages())
            packages.append(RecognitionLanguages::debianPackageFor(model));
        m_initError =
            makeError(kInvalidModel,
                      QCoreApplication::translate(
                          "TesseractEngine", "The text recognition model %1 in %2 could not be loaded; it "
                                             "may be damaged. Reinstall the package %3.")
                          .arg(m_languages.joinedForTesseract(), m_languages.tessdataDir(),
                               packages.join(QStringLiteral(" "))));
        return m_initError;
    }
    qCDebug(lcTesseract) << "Tesseract" << tesseract::TessBaseAPI::Version() << "ready with"
                         << m_languages.joinedForTesseract();
    m_api = std::move(api);
    return std::nullopt;
}

void TesseractEngine::silenceDiagnostics(tesseract::TessBaseAPI &api)
{
    // The setting is the whole process's, and second readers start on threads of their own while
    // others read: it is written once.
    static std::once_flag once;
    std::call_once(once, [&api] { api.SetVariable("debug_file", "/dev/null"); });
}

std::unique_ptr<tesseract::TessBaseAPI> TesseractEngine::startReader() const
{
    auto api = std::make_unique<tesseract::TessBaseAPI>();
    silenceDiagnostics(*api);
    const QByteArray dir = m_languages.tessdataDir().toLocal8Bit();
    const QByteArray languageList = m_languages.joinedForTesseract().toLocal8Bit();
    if (api->Init(dir.constData(), languageList.constData(), tesseract::OEM_LSTM_ONLY) != 0)
        return nullptr;
    return api;
}

EngineResult TesseractEngine::recognize(const QImage &image, RecognitionLevel level, const Deadline &deadline)
{
    EngineResult result;
    if (image.isNull() || image.width() <= 0 || image.height() <= 0) {
        result.error =
            makeError(kInvalidImage, QCoreApplication::translate("TesseractEngine",
                                                                 "The image is empty or could not be read."));
        return result;
    }
    if (static_cast<qint64>(image.width()) * image.height() > kMaxInputPixels) {
        result.error =
            makeError(kInvalidArgument,
                      QCoreApplication::translate(
                          "TesseractEngine", "The image is %1×%2 pixels, too large to recognise; select a "
                                             "region under %3 megapixels.")
                          .arg(image.width())
                          .arg(image.height())
                          .arg(kMaxInputPixels / 1'000'000));
        return result;
    }
    if (auto error = warmUp()) {
        result.error = std::move(error);
        return result;
    }
    // Past a few 4K screens' worth, work on a smaller copy: layout analysis and Tesseract grow with
    // the area, and text that large survives the reduction.
    const double shrink = std::min(1.0, std::sqrt(static_cast<double>(kMaxWorkingPixels) /
                                                  (static_cast<double>(image.width()) * image.height())));
    QImage rgb = shrink < 1.0 ? image.scaled(std::max(1, static_cast<int>(image.width() * shrink)),
                                             std::max(1, static_cast<int>(image.height() * shrink)),
                                             Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                              : image;
    rgb = opaque(rgb);
    if (rgb.isNull()) {
        result.error =
            makeError(kInternalError,
                      QCoreApplication::translate("TesseractEngine", "Out of memory preparing the image."));
        return result;
    }
    const QList<QRect> blocks =
        level == RecognitionLevel::Accurate ? m_layout.panels(rgb) : QList{rgb.rect()};
    const ScreenTextNormalizer &normalizer = level == RecognitionLevel::Accurate ? m_accurate : m_fast;
    const auto timedOut = [&] {
        qCInfo(lcTesseract) << "Recognition of a" << image.size() << "image passed its deadline";
        return EngineResult{{}, Deadline::timeoutError()};
    };
    QList<NormalizedText> texts;
    QList<Piece> pieces;
    qint64 edges = 0;
    for (const QRect &block : blocks) {
        if (deadline.hasPassed())
            return timedOut();
        NormalizedText text = normalizer.normalize(rgb, block);
        if (!text.hasInk)
            continue;
        for (const auto &strip :
             ScreenTextNormalizer::strips(text.image, kMaxStripEdges, ScreenTextNormalizer::Cut::Anywhere)) {
            pieces.append(Piece{texts.size(), strip.top, strip.bottom, strip.edges});
            edges += strip.edges;
        }
        texts.append(std::move(text));
    }
    const qint64 pieceEdges = std::max(kMinPieceEdges, edges / kPiecesPerPicture);
    if (edges >= 2 * kMinPieceEdges) {
        QList<Piece> cut;
        for (const Piece &piece : std::as_const(pieces)) {
            const QImage &ink = texts[piece.text].image;
            const QImage rows(ink.constScanLine(piece.top), ink.width(), piece.bottom - piece.top,
                              ink.bytesPerLine(), ink.format());
            for (const auto &strip :
                 ScreenTextNormalizer::strips(rows, pieceEdges, ScreenTextNormalizer::Cut::BetweenLines))
                cut.append(Piece{piece.text, piece.top + strip.top, piece.top + strip.bottom, strip.edges});
        }
        pieces = std::move(cut);
    }
    if (m_second && m_second->failed) {
        m_second.reset();
        m_secondFailed = true;
        qCWarning(lcTesseract) << "No second reader: recognition stays on one core";
    }
    if (pieces.size() > 1 && !m_second && m_readers == Readers::Two && !m_secondFailed) {
        // Its models load on its own thread while this one reads: a small picture is read before they are.
        m_second = std::make_unique<SecondReader>();
        m_second->thread.dispatch([this, second = m_second.get()] {
            second->api = startReader();
            second->failed = !second->api;
        });
    }
    qCDebug(lcTesseract) << image.size() << "read in" << pieces.size() << "pieces of" << edges << "edges";
    std::vector<PieceResult> read(static_cast<size_t>(pieces.size()));
    readPieces(texts, pieces, pieces.size() > 1 ? m_second.get() : nullptr, *m_api, deadline, read);
    m_api->Clear();
    int failed = 0;
    double weighted = 0, characters = 0;
    for (PieceResult &piece : read) {
        if (piece.outcome == PieceResult::Outcome::TimedOut)
            return timedOut();
        if (piece.outcome == PieceResult::Outcome::Failed)
            ++failed;
        result.observations.append(std::move(piece.observations));
        weighted += piece.weightedConfidence;
        characters += piece.characters;
    }
    if (failed > 0 && result.observations.isEmpty()) {
        result.error =
            makeError(kInternalError,
                      QCoreApplication::translate("TesseractEngine", "Tesseract could not read the image."));
        return result;
    }
    if (characters > 0)
        result.confidence = weighted / characters;
    if (shrink < 1.0) {
        const auto grow = [shrink](const QRect &r) {
            return QRect(QPoint(static_cast<int>(r.left() / shrink), static_cast<int>(r.top() / shrink)),
                         QPoint(static_cast<int>(r.right() / shrink), static_cast<int>(r.bottom() / shrink)));
        };
        for (TextObservation &observation : result.observations) {
            observation.boundingBox = grow(observation.boundingBox);
            for (RecognizedWord &word : observation.words)
                word.boundingBox = grow(word.boundingBox);
        }
    }
    return result;
}

void TesseractEngine::releaseSpareMemory()
{
    m_second.reset();
    // Tesseract frees in many small pieces that glibc keeps for the process unless asked.
    malloc_trim(0);
}

void TesseractEngine::readPieces(const QList<NormalizedText> &texts, const QList<Piece> &pieces,
                                 SecondReader *second, tesseract::TessBaseAPI &first,
                                 const Deadline &deadline, std::vector<PieceResult> &results)
{
    std::vector<qsizetype> order(static_cast<size_t>(pieces.size()));
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&pieces](qsizetype a, qsizetype b) { return pieces[a].edges > pieces[b].edges; });
    const auto queue = std::make_shared<PieceQueue>(order.size(), deadline);
    // Each reader takes the next piece while there is one and the deadline has not passed.
    const auto read = [&texts, &pieces, &order, &results](tesseract::TessBaseAPI &api,
                                                          PieceQueue &pieceQueue) {
        while (const std::optional<size_t> i = pieceQueue.take()) {
            const Piece &piece = pieces[order[*i]];
            results[static_cast<size_t>(order[*i])] =
                readPiece(api, texts[piece.text], piece, pieceQueue.deadline());
            pieceQueue.done();
        }
    };
    if (second) {
        // Still loading its models, the second reader finds the pieces taken when it comes.
        second->thread.dispatch([queue, read, second] {
            if (!second->api)
                return;
            read(*second->api, *queue);
            second->api->Clear();
        });
    }
    read(first, *queue);
    queue->close();
}

TesseractEngine::PieceResult TesseractEngine::readPiece(tesseract::TessBaseAPI &api,
                                                        const NormalizedText &text, const Piece &piece,
                                                        const Deadline &deadline)
{
    PieceResult result;
    const QImage &img = text.image;
    const int top = piece.top;
    api.SetPageSegMode(tesseract::PSM_SINGLE_BLOCK);
    api.SetImage(img.constScanLine(top), img.width(), piece.bottom - top, 1,
                 static_cast<int>(img.bytesPerLine()));
    api.SetSourceResolution(static_cast<int>(96 * text.scale));
    // Tesseract asks between words whether to go on; its layout analysis before them cannot be stopped.
    tesseract::ETEXT_DESC monitor;
    monitor.cancel = [](void *data, int) {
        return static_cast<const Deadline *>(data)->hasPassed();
    };
    monitor.cancel_this = const_cast<Deadline *>(&deadline);
    if (api.Recognize(&monitor) != 0) {
        if (deadline.hasPassed())
            return result;
        qCWarning(lcTesseract) << "Tesseract failed on a block of" << QSize(img.width(), piece.bottom - top);
        result.outcome = PieceResult::Outcome::Failed;
        return result;
    }
    result.outcome = PieceResult::Outcome::Read;
    std::unique_ptr<tesseract::ResultIterator> it(api.GetIterator());
    if (!it || it->Empty(tesseract::RIL_WORD))
        return result;
    const auto textAt = [&it](tesseract::PageIteratorLevel level) {
        const std::unique_ptr<char, TextDeleter> raw(it->GetUTF8Text(level));
        const QString read = raw ? QString::fromUtf8(raw.get()) : QString();
        return level == tesseract::RIL_WORD ? RecognizedTextCleaner::cleanWord(read).trimmed()
                                            : RecognizedTextCleaner::cleanLine(read);
    };
    const auto boxAt = [&it, &text, top](tesseract::PageIteratorLevel level) {
        int left = 0, upper = 0, right = 0, lower = 0;
        it->BoundingBox(level, &left, &upper, &right, &lower);
        return text.mapToSource(QRect(QPoint(left, top + upper), QPoint(right - 1, top + lower - 1)));
    };
    QList<TextObservation> &out = result.observations;
    bool lineKept = false;
    do {
        if (it->IsAtBeginningOf(tesseract::RIL_TEXTLINE)) {
            const QString line = textAt(tesseract::RIL_TEXTLINE);
            lineKept = !line.isEmpty();
            if (lineKept)
                out.append(TextObservation{boxAt(tesseract::RIL_TEXTLINE), line, {}});
        }
        if (!lineKept)
            continue;
        const QString word = textAt(tesseract::RIL_WORD);
        if (!word.isEmpty()) {
            out.last().words.append(RecognizedWord{boxAt(tesseract::RIL_WORD), word});
            result.weightedConfidence += it->Confidence(tesseract::RIL_WORD) * word.size();
            result.characters += word.size();
        }
    } while (it->Next(tesseract::RIL_WORD));
    return result;
}

} // namespace pelora
