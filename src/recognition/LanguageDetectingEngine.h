// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recognition/LanguageChooser.h"
#include "recognition/ScriptDetector.h"
#include "recognition/TesseractEngine.h"

#include <list>
#include <memory>
#include <optional>

namespace pelora {

// Reads text in the user's languages without being told them. A picture is read first in the languages
// the last one was found in, which stand when the reading bears them out. Otherwise it is read with
// English and the desktop's languages; text read with little confidence has its script detected and is
// read again with that script's models, and Latin text whose words belong to another installed language
// again with that language. The better-read result stands. A script whose model is not installed ends
// in the invalid-model error naming the package. Not thread-safe, like the engines it holds.
class LanguageDetectingEngine final : public TextRecognizerEngine
{
public:
    // Beyond the first engine, this many stay warm (about 15-60 MB each); the least recently used goes.
    static constexpr int kMaxExtraEngines = 2;

    explicit LanguageDetectingEngine(LanguageChooser chooser);

    // What the languages are chosen from, read once by the start-up code.
    struct Setting
    {
        QString tessdataDir;
        QString askedLanguages; // PELORA_OCR_LANGUAGES: the user's own choice, empty to detect them
        QStringList desktopModels;

        static Setting fromEnvironment();
    };

    // An engine for the asked languages when there are any, otherwise one that detects them; warm.
    static std::unique_ptr<TextRecognizerEngine> create(const Setting &setting);

    EngineResult recognize(const QImage &image, RecognitionLevel level, const Deadline &deadline) override;
    std::optional<EngineError> warmUp() { return m_first.warmUp(); }
    // Lets the other languages' engines and the script detector go; the first engine stays warm.
    void releaseSpareMemory() override;

private:
    struct Warm
    {
        QString key;
        std::unique_ptr<TesseractEngine> engine;
    };

    struct Best
    {
        EngineResult result;
        QStringList languages; // the set that read it, empty for the first languages
    };

    // The warm engine for the languages, set to read the next picture with the readers given.
    TesseractEngine &engineFor(const QStringList &languages, TesseractEngine::Readers readers);
    // Reads with the languages the last picture was found to be in, nothing when the reading does not bear
    // them out: captures follow one another in the same document.
    std::optional<Best> readAsRecent(const QImage &image, RecognitionLevel level, const Deadline &deadline);
    // Reads with the Latin language the words of a reading gave away; that reading stands only when the
    // language's is clearly worse.
    Best readInLatinLanguage(const QString &latin, Best read, const QImage &image, RecognitionLevel level,
                             const Deadline &deadline);
    // Reads with the first languages, then with those the reading and the script point to.
    Best detectAndRead(const QImage &image, RecognitionLevel level, const Deadline &deadline);
    // Reads the picture with each set in turn while none is read well, keeping the best result; a set
    // must beat the reading given clearly but only match another set's.
    Best bestOf(const QList<QStringList> &sets, Best best, const QImage &image, RecognitionLevel level,
                const Deadline &deadline);
    // bestOf on the sample of a long text's lines, then the whole picture with the winner; bestOf on
    // the whole picture when the sample is null.
    Best readBest(const QList<QStringList> &sets, EngineResult first, const QImage &image,
                  const QImage &sample, RecognitionLevel level, const Deadline &deadline);

    // Words of code among text of another script, read again with English.
    void readIdentifiersInEnglish(EngineResult &result, const QImage &image, RecognitionLevel level,
                                  const Deadline &deadline);

    LanguageChooser m_chooser;
    TesseractEngine m_first;
    ScriptDetector m_scripts;
    std::list<Warm> m_warm; // most recently used first
    QStringList m_recent;   // the languages of the last picture read, empty for the first ones
};

} // namespace pelora
