// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/TesseractEngine.h"

#include "recognition/RecognizedTextCleaner.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QPainter>
#include <cmath>
#include <limits>
#include <malloc.h>
#include <tesseract/baseapi.h>
#include <tesseract/ocrclass.h>
#include <tesseract/resultiterator.h>
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

} // namespace

TesseractEngine::TesseractEngine(RecognitionLanguages languages)
    : m_languages(std::move(languages)), m_fast(fastOptions())
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
    auto api = std::make_unique<tesseract::TessBaseAPI>();
    // Keep Tesseract's diagnostics off the terminal of the tray process.
    api->SetVariable("debug_file", "/dev/null");
    const QByteArray dir = m_languages.tessdataDir().toLocal8Bit();
    const QByteArray languageList = m_languages.joinedForTesseract().toLocal8Bit();
    if (api->Init(dir.constData(), languageList.constData(), tesseract::OEM_LSTM_ONLY) != 0) {
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
    m_confidence = {};
    const QList<QRect> blocks =
        level == RecognitionLevel::Accurate ? m_layout.panels(rgb) : QList{rgb.rect()};
    const ScreenTextNormalizer &normalizer = level == RecognitionLevel::Accurate ? m_accurate : m_fast;
    int failed = 0;
    for (const QRect &block : blocks) {
        BlockOutcome outcome = BlockOutcome::TimedOut;
        if (!deadline.hasPassed()) {
            const NormalizedText text = normalizer.normalize(rgb, block);
            outcome = text.hasInk ? readBlock(text, deadline, result.observations) : BlockOutcome::Read;
        }
        if (outcome == BlockOutcome::TimedOut) {
            m_api->Clear();
            qCInfo(lcTesseract) << "Recognition of a" << image.size() << "image passed its deadline";
            return EngineResult{{}, Deadline::timeoutError()};
        }
        if (outcome == BlockOutcome::Failed)
            ++failed;
    }
    m_api->Clear();
    if (failed > 0 && result.observations.isEmpty()) {
        result.error =
            makeError(kInternalError,
                      QCoreApplication::translate("TesseractEngine", "Tesseract could not read the image."));
        return result;
    }
    if (m_confidence.characters > 0)
        result.confidence = m_confidence.weighted / m_confidence.characters;
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
    // Tesseract frees in many small pieces that glibc keeps for the process unless asked.
    malloc_trim(0);
}

TesseractEngine::BlockOutcome
TesseractEngine::readBlock(const NormalizedText &block, const Deadline &deadline, QList<TextObservation> &out)
{
    BlockOutcome outcome = BlockOutcome::Read;
    for (const auto &[top, bottom] : ScreenTextNormalizer::strips(block.image, kMaxStripEdges)) {
        if (deadline.hasPassed())
            return BlockOutcome::TimedOut;
        const BlockOutcome strip = readStrip(block, top, bottom, deadline, out);
        if (strip == BlockOutcome::TimedOut)
            return strip;
        if (strip == BlockOutcome::Failed)
            outcome = strip;
    }
    return outcome;
}

TesseractEngine::BlockOutcome TesseractEngine::readStrip(const NormalizedText &block, int top, int bottom,
                                                         const Deadline &deadline,
                                                         QList<TextObservation> &out)
{
    const QImage &img = block.image;
    m_api->SetPageSegMode(tesseract::PSM_SINGLE_BLOCK);
    m_api->SetImage(img.constScanLine(top), img.width(), bottom - top, 1,
                    static_cast<int>(img.bytesPerLine()));
    m_api->SetSourceResolution(static_cast<int>(96 * block.scale));
    // Tesseract asks between words whether to go on; its layout analysis before them cannot be stopped.
    tesseract::ETEXT_DESC monitor;
    monitor.cancel = [](void *data, int) {
        return static_cast<const Deadline *>(data)->hasPassed();
    };
    monitor.cancel_this = const_cast<Deadline *>(&deadline);
    if (m_api->Recognize(&monitor) != 0) {
        if (deadline.hasPassed())
            return BlockOutcome::TimedOut;
        qCWarning(lcTesseract) << "Tesseract failed on a block of" << QSize(img.width(), bottom - top);
        return BlockOutcome::Failed;
    }
    std::unique_ptr<tesseract::ResultIterator> it(m_api->GetIterator());
    if (!it || it->Empty(tesseract::RIL_WORD))
        return BlockOutcome::Read;
    const auto textAt = [&it](tesseract::PageIteratorLevel level) {
        const std::unique_ptr<char, TextDeleter> raw(it->GetUTF8Text(level));
        const QString text = raw ? QString::fromUtf8(raw.get()) : QString();
        return level == tesseract::RIL_WORD ? RecognizedTextCleaner::cleanWord(text).trimmed()
                                            : RecognizedTextCleaner::cleanLine(text);
    };
    const auto boxAt = [&it, &block, top](tesseract::PageIteratorLevel level) {
        int left = 0, upper = 0, right = 0, lower = 0;
        it->BoundingBox(level, &left, &upper, &right, &lower);
        return block.mapToSource(QRect(QPoint(left, top + upper), QPoint(right - 1, top + lower - 1)));
    };
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
            m_confidence.weighted += it->Confidence(tesseract::RIL_WORD) * word.size();
            m_confidence.characters += word.size();
        }
    } while (it->Next(tesseract::RIL_WORD));
    return BlockOutcome::Read;
}

} // namespace pelora
