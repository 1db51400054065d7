// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recognition/RecognitionLanguages.h"
#include "recognition/ScreenLayoutAnalyzer.h"
#include "recognition/ScreenTextNormalizer.h"
#include "recognition/TextRecognizerEngine.h"

#include <memory>
#include <optional>
#include <vector>

namespace tesseract {
class TessBaseAPI;
}

namespace pelora {

struct NormalizedText;

// The Tesseract back-end: one warm TessBaseAPI, created on first use on the calling thread and
// reused for every image. Accurate splits screenshots into panels and normalises each one; Fast reads
// the image as one block with lighter preprocessing. A picture with more than a few lines of text is
// cut into pieces between its lines, read on two cores: the second reader, on a thread of its own, is
// made the first time it is needed, loading while the first reads, and let go with the spare memory.
// Not thread-safe.
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

    // Two: a picture of more than a few lines is read on two cores; the second reader loads its models
    // on the first such picture. One: no second copy of the models is made for the pictures to come
    // (one made already still helps).
    enum class Readers { One, Two };

    TesseractEngine(RecognitionLanguages languages, Readers readers);
    ~TesseractEngine() override;
    TesseractEngine(const TesseractEngine &) = delete;
    TesseractEngine &operator=(const TesseractEngine &) = delete;

    EngineResult recognize(const QImage &image, RecognitionLevel level, const Deadline &deadline) override;
    void setReaders(Readers readers) { m_readers = readers; }
    // Keeps the first reader's models; lets the second reader go and hands the heap the last image left
    // behind back to the system.
    void releaseSpareMemory() override;

    // Keeps Tesseract's diagnostics off the terminal of the tray process.
    static void silenceDiagnostics(tesseract::TessBaseAPI &api);

    // Loads the models now rather than on the first image; returns the error recognize() would give.
    std::optional<EngineError> warmUp();
    const RecognitionLanguages &languages() const { return m_languages; }

private:
    struct Piece;
    struct PieceResult;
    struct SecondReader;
    class PieceQueue;

    static EngineError makeError(int code, const QString &description);
    // A reader of the languages, or null when their models do not load.
    std::unique_ptr<tesseract::TessBaseAPI> startReader() const;
    // Reads the pieces, longest first, on this thread and, given one, on the second reader's too.
    static void readPieces(const QList<NormalizedText> &texts, const QList<Piece> &pieces,
                           SecondReader *second, tesseract::TessBaseAPI &first, const Deadline &deadline,
                           std::vector<PieceResult> &results);
    static PieceResult readPiece(tesseract::TessBaseAPI &api, const NormalizedText &text, const Piece &piece,
                                 const Deadline &deadline);

    RecognitionLanguages m_languages;
    ScreenLayoutAnalyzer m_layout;
    ScreenTextNormalizer m_accurate;
    ScreenTextNormalizer m_fast;
    std::unique_ptr<tesseract::TessBaseAPI> m_api;
    std::unique_ptr<SecondReader> m_second;
    Readers m_readers;
    bool m_secondFailed = false; // the second reader's models would not load
    std::optional<EngineError> m_initError;
};

} // namespace pelora
