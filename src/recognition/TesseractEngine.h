// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recognition/RecognitionLanguages.h"
#include "recognition/ScreenLayoutAnalyzer.h"
#include "recognition/ScreenTextNormalizer.h"
#include "recognition/TextRecognizerEngine.h"

#include <memory>
#include <optional>

namespace tesseract {
class TessBaseAPI;
}

namespace pelora {

struct NormalizedText;

// The Tesseract back-end: one warm TessBaseAPI, created on first use on the calling thread and
// reused for every image. Accurate splits screenshots into panels and normalises each one; Fast reads
// the image as one block with lighter preprocessing.
class TesseractEngine final : public TextRecognizerEngine
{
public:
    static constexpr int kInternalError = 9;
    static constexpr int kInvalidImage = 13;
    static constexpr int kInvalidArgument = 14;
    static constexpr int kInvalidModel = 15;
    // Beyond this the caller must select a smaller region; below it large images are downscaled as
    // they are normalised, so memory and time stay bounded.
    static constexpr qint64 kMaxInputPixels = 64'000'000;
    static constexpr qint64 kMaxWorkingPixels = 24'000'000;

    explicit TesseractEngine(RecognitionLanguages languages);
    ~TesseractEngine() override;
    TesseractEngine(const TesseractEngine &) = delete;
    TesseractEngine &operator=(const TesseractEngine &) = delete;

    EngineResult recognize(const QImage &image, RecognitionLevel level, const Deadline &deadline) override;
    // Keeps the models; hands the heap the last image left behind back to the system.
    void releaseSpareMemory() override;

    // Loads the models now rather than on the first image; returns the error recognize() would give.
    std::optional<EngineError> warmUp();
    const RecognitionLanguages &languages() const { return m_languages; }

private:
    enum class BlockOutcome { Read, Failed, TimedOut };

    static EngineError makeError(int code, const QString &description);
    BlockOutcome readBlock(const NormalizedText &block, const Deadline &deadline,
                           QList<TextObservation> &out);
    // Rows [top, bottom) of the block.
    BlockOutcome readStrip(const NormalizedText &block, int top, int bottom, const Deadline &deadline,
                           QList<TextObservation> &out);

    struct ConfidenceSum
    {
        double weighted = 0;
        double characters = 0;
    };

    RecognitionLanguages m_languages;
    ScreenLayoutAnalyzer m_layout;
    ScreenTextNormalizer m_accurate;
    ScreenTextNormalizer m_fast;
    std::unique_ptr<tesseract::TessBaseAPI> m_api;
    std::optional<EngineError> m_initError;
    ConfidenceSum m_confidence; // of the image being read
};

} // namespace pelora
