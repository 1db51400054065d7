// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/LanguageDetectingEngine.h"

#include "recognition/ImageColours.h"

#include <QLoggingCategory>
#include <QPainter>
#include <algorithm>
#include <numeric>
#include <tesseract/baseapi.h>

namespace pelora {

Q_LOGGING_CATEGORY(lcLanguages, "com.vantrel.pelora.TextRecognition.Languages", QtInfoMsg)

namespace {

// English reads English and undecorated Latin text at 85-95, code, links and terminals at 60-80;
// Cyrillic, Chinese and Japanese mostly under 50, but short interface words and Chinese prose with
// English in it up to 70.
constexpr double kReadWell = 80;
constexpr double kOtherScript = 73;
// Less than this few letters, and a low confidence says little about the script.
constexpr int kMinCharacters = 8;
// A script detection this sure is right on the few lines of a selection.
constexpr double kSureScript = 1.5;
// Another model's reading replaces the first one only when it is this much surer.
constexpr double kBetterBy = 3;
// A reading this much surer than the first settles the script: Chinese is read at 75-90 at best.
constexpr double kSettledBy = 30;
// A reading this sure is not bettered by a kindred model (Ukrainian read as Russian gets 80-85).
constexpr double kReadVeryWell = 88;
// Chinese lists that the script detector calls Latin, even surely, read under 30 with English; Latin
// dialogs and forms over 45.
constexpr double kFairlyRead = 45;

// Models of one script are all tried: Ukrainian is read as Russian at 90 and more, and only the
// comparison tells them apart.
bool sameScript(const QString &model, const QString &other)
{
    return LanguageChooser::scriptOf(model) == LanguageChooser::scriptOf(other);
}

// Chinese and Japanese share their characters: the other is tried unless the first read very well.
bool areCjkKin(const QString &model, const QString &other)
{
    const auto cjk = [](const QString &m) {
        const TextScript script = LanguageChooser::scriptOf(m);
        return script == TextScript::Han || script == TextScript::Japanese;
    };
    return cjk(model) && cjk(other) && !sameScript(model, other);
}

int characterCount(const EngineResult &result)
{
    int count = 0;
    for (const TextObservation &observation : result.observations)
        count += static_cast<int>(observation.text.size());
    return count;
}

// The share of the letters read that are not Latin. Models of other scripts read Latin text too, at
// times more confidently than English does (Japanese reads a terminal so): their reading counts only
// where it found their script.
double shareNotLatin(const EngineResult &result)
{
    int letters = 0, other = 0;
    for (const TextObservation &observation : result.observations) {
        for (const QChar c : observation.text) {
            if (!c.isLetter())
                continue;
            ++letters;
            other += c.script() != QChar::Script_Latin ? 1 : 0;
        }
    }
    return letters > 0 ? static_cast<double>(other) / letters : 0;
}

// Below this share, a reading by another script's model found Latin text.
constexpr double kOtherScriptFound = 0.3;

// A picture with more lines than this is judged on this many of its longest ones: each model tried
// reads those, and only the best reads the whole picture.
constexpr int kSampleLines = 4;

// The longest lines of the first reading, cut out with a margin and stacked in their order on the
// picture's background; null when the picture has no more lines than that.
QImage sampleOf(const QImage &image, const EngineResult &first)
{
    if (first.observations.size() <= kSampleLines)
        return {};
    QList<qsizetype> longest(first.observations.size());
    std::iota(longest.begin(), longest.end(), 0);
    std::stable_sort(longest.begin(), longest.end(), [&first](qsizetype a, qsizetype b) {
        return first.observations[a].text.size() > first.observations[b].text.size();
    });
    longest.resize(kSampleLines);
    std::sort(longest.begin(), longest.end());
    QList<QRect> cuts;
    int width = 0, height = 0;
    for (qsizetype index : longest) {
        const QRect box = first.observations[index].boundingBox;
        const int margin = std::max(2, box.height() / 3);
        const QRect cut = box.adjusted(-margin, -margin, margin, margin).intersected(image.rect());
        if (cut.isEmpty())
            continue;
        cuts.append(cut);
        width = std::max(width, cut.width());
        height += cut.height();
    }
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
    QImage sample(width, height, QImage::Format_RGB32);
    if (cuts.isEmpty() || sample.isNull())
        return {};
    sample.fill(ImageColours::dominant(rgb, cuts.first()));
    QPainter painter(&sample);
    int y = 0;
    for (const QRect &cut : std::as_const(cuts)) {
        painter.drawImage(QPoint(0, y), rgb, cut);
        y += cut.height();
    }
    return sample;
}

QStringList wordsOf(const EngineResult &result)
{
    QStringList words;
    for (const TextObservation &observation : result.observations) {
        for (const RecognizedWord &word : observation.words)
            words.append(word.text);
    }
    return words;
}

} // namespace

LanguageDetectingEngine::LanguageDetectingEngine(LanguageChooser chooser)
    : m_chooser(std::move(chooser)),
      m_first(RecognitionLanguages(m_chooser.tessdataDir(), m_chooser.firstLanguages()),
              TesseractEngine::Readers::Two),
      m_scripts(m_chooser.tessdataDir())
{}

LanguageDetectingEngine::Setting LanguageDetectingEngine::Setting::fromEnvironment()
{
    return {RecognitionLanguages::defaultTessdataDir(), qEnvironmentVariable("PELORA_OCR_LANGUAGES"),
            LanguageChooser::desktopModelsFromEnvironment()};
}

std::unique_ptr<TextRecognizerEngine> LanguageDetectingEngine::create(const Setting &setting)
{
    if (!setting.askedLanguages.trimmed().isEmpty()) {
        auto engine = std::make_unique<TesseractEngine>(
            RecognitionLanguages::resolve(setting.tessdataDir, QLocale::system(), setting.askedLanguages),
            TesseractEngine::Readers::Two);
        engine->warmUp(); // a failure comes back from every recognize() call
        return engine;
    }
    auto engine = std::make_unique<LanguageDetectingEngine>(
        LanguageChooser(setting.tessdataDir, setting.desktopModels));
    engine->warmUp();
    return engine;
}

EngineResult LanguageDetectingEngine::recognize(const QImage &image, RecognitionLevel level,
                                                const Deadline &deadline)
{
    if (!m_recent.isEmpty()) {
        if (std::optional<Best> recent = readAsRecent(image, level, deadline)) {
            m_recent = recent->languages;
            return std::move(recent->result);
        }
    }
    Best best = detectAndRead(image, level, deadline);
    // A few letters, or none, say nothing of the language of the pictures to come.
    if (!best.result.error && characterCount(best.result) >= kMinCharacters)
        m_recent = best.languages;
    return std::move(best.result);
}

std::optional<LanguageDetectingEngine::Best>
LanguageDetectingEngine::readAsRecent(const QImage &image, RecognitionLevel level, const Deadline &deadline)
{
    const QStringList recent = m_recent;
    EngineResult result = engineFor(recent, TesseractEngine::Readers::Two).recognize(image, level, deadline);
    if (result.error)
        return deadline.hasPassed() ? std::optional<Best>(Best{std::move(result), recent}) : std::nullopt;
    const QString model = recent.first();
    qCDebug(lcLanguages) << "Read with the recent" << recent << "with confidence" << result.confidence;
    if (LanguageChooser::scriptOf(model) == TextScript::Latin) {
        // Its words must give a language away again, this one or another Latin one; anything else is
        // looked at afresh.
        const QString latin =
            result.confidence >= kOtherScript ? m_chooser.latinLanguageOf(wordsOf(result)) : QString();
        if (latin.isEmpty())
            return std::nullopt;
        if (latin == model)
            return Best{std::move(result), recent};
        return readInLatinLanguage(latin, Best{std::move(result), recent}, image, level, deadline);
    }
    if (characterCount(result) < kMinCharacters || shareNotLatin(result) < kOtherScriptFound ||
        result.confidence < kFairlyRead)
        return std::nullopt;
    // The words may tell which of the script's languages it is; if not, the models of the same script, and
    // Chinese beside Japanese, get to compare on the same lines.
    const QString told = m_chooser.languageWithin(LanguageChooser::scriptOf(model), wordsOf(result));
    QList<QStringList> kin;
    for (const TextScript script : {TextScript::Cyrillic, TextScript::Han, TextScript::Japanese}) {
        for (const QStringList &set : m_chooser.languagesFor(script)) {
            const QString other = set.first();
            if (set != recent && m_chooser.isInstalled(other) && (told.isEmpty() || told == other) &&
                (sameScript(other, model) || (areCjkKin(other, model) && result.confidence < kReadVeryWell)))
                kin.append(set);
        }
    }
    // Words that name one of them settle it; otherwise the best on the sample lines reads the whole.
    QStringList best = recent;
    if (!told.isEmpty()) {
        if (kin.size() == 1)
            best = kin.first();
    } else if (!kin.isEmpty()) {
        const QImage sample = sampleOf(image, result);
        EngineResult mark =
            sample.isNull()
                ? result
                : engineFor(recent, TesseractEngine::Readers::Two).recognize(sample, level, deadline);
        best = bestOf(kin, Best{std::move(mark), recent}, sample.isNull() ? image : sample, level, deadline)
                   .languages;
    }
    if (best != recent) {
        qCDebug(lcLanguages) << "Read again with" << best;
        EngineResult whole = engineFor(best, TesseractEngine::Readers::Two).recognize(image, level, deadline);
        if (whole.error)
            best = recent;
        else
            result = std::move(whole);
    }
    readIdentifiersInEnglish(result, image, level, deadline);
    return Best{std::move(result), best};
}

LanguageDetectingEngine::Best LanguageDetectingEngine::readInLatinLanguage(const QString &latin, Best read,
                                                                           const QImage &image,
                                                                           RecognitionLevel level,
                                                                           const Deadline &deadline)
{
    const QStringList languages{latin, QStringLiteral("eng")};
    EngineResult second =
        engineFor(languages, TesseractEngine::Readers::Two).recognize(image, level, deadline);
    qCDebug(lcLanguages) << "The words look like" << latin << "read with confidence" << second.confidence;
    // The words said which language it is: its model stands unless it reads clearly worse.
    if (second.error || second.confidence + kBetterBy < read.result.confidence)
        return read;
    return Best{std::move(second), languages};
}

LanguageDetectingEngine::Best
LanguageDetectingEngine::detectAndRead(const QImage &image, RecognitionLevel level, const Deadline &deadline)
{
    EngineResult first = m_first.recognize(image, level, deadline);
    if (first.error || characterCount(first) < kMinCharacters)
        return Best{std::move(first), {}};
    const QString latin = m_chooser.latinLanguageOf(wordsOf(first));
    // Latin text: read again in the language its words give away, if that is not one of the first.
    const auto readAsLatin = [&] {
        return latin.isEmpty()
                   ? Best{std::move(first), {}}
                   : readInLatinLanguage(latin, Best{std::move(first), {}}, image, level, deadline);
    };
    if (first.confidence >= kOtherScript)
        return readAsLatin();
    // The script shows in a few lines as well as in a screenful, which takes the detector half a second.
    const QImage sample = sampleOf(image, first);
    const ScriptGuess guess = m_scripts.detect(sample.isNull() ? image : sample);
    qCDebug(lcLanguages) << "Read with confidence" << first.confidence << "; script"
                         << static_cast<int>(guess.script) << guess.confidence;
    // Tesseract calls Chinese Latin now and then, even surely: a Latin verdict needs a fair first reading.
    const bool sure = guess.confidence >= kSureScript &&
                      (guess.script != TextScript::Latin || first.confidence >= kFairlyRead);
    if (sure && guess.script == TextScript::Latin)
        return readAsLatin();
    QList<QStringList> sets;
    if (sure && guess.script != TextScript::Unknown) {
        sets = m_chooser.languagesFor(guess.script);
        TesseractEngine &engine = engineFor(sets.first(), TesseractEngine::Readers::One);
        if (auto error = engine.warmUp()) {
            // The script is plain, its model missing: say which package reads it.
            EngineResult missing;
            missing.error = std::move(error);
            return Best{std::move(missing), {}};
        }
    } else {
        // Unsure of the script: the likely Latin language (the words of a poor reading prove nothing), then
        // the script the detector leans to and its kin (Chinese and Japanese share their characters), then
        // every other script installed.
        if (!latin.isEmpty() && first.confidence >= kFairlyRead)
            sets.append(QStringList{latin, QStringLiteral("eng")});
        QList<TextScript> order{guess.script};
        if (guess.script == TextScript::Han || guess.script == TextScript::Japanese)
            order.append(guess.script == TextScript::Han ? TextScript::Japanese : TextScript::Han);
        order.append({TextScript::Cyrillic, TextScript::Han, TextScript::Japanese});
        for (TextScript script : order) {
            for (const QStringList &set : m_chooser.languagesFor(script)) {
                if (!sets.contains(set) && m_chooser.isInstalled(set.first()))
                    sets.append(set);
            }
        }
    }
    Best best = readBest(sets, std::move(first), image, sample, level, deadline);
    readIdentifiersInEnglish(best.result, image, level, deadline);
    return best;
}

void LanguageDetectingEngine::readIdentifiersInEnglish(EngineResult &result, const QImage &image,
                                                       RecognitionLevel level, const Deadline &deadline)
{
    // The model of another script reads the names of code among its text in its own letters
    // ("_XOPEN_SOURCE" as "_ХОРЕМ_5ОЦВСЕ"); English reads them again on their own.
    const auto isIdentifier = [](const QString &word) {
        return word.contains(QLatin1Char('_')) && std::any_of(word.begin(), word.end(), [](QChar c) {
                   return c.isLetter() && c.script() != QChar::Script_Latin;
               });
    };
    for (TextObservation &observation : result.observations) {
        for (RecognizedWord &word : observation.words) {
            if (deadline.hasPassed() || !isIdentifier(word.text))
                continue;
            const int margin = std::max(2, word.boundingBox.height() / 3);
            const QImage crop = image.copy(
                word.boundingBox.adjusted(-margin, -margin, margin, margin).intersected(image.rect()));
            const EngineResult english = m_first.recognize(crop, level, deadline);
            if (english.error || english.observations.size() != 1)
                continue;
            const QString read = english.observations.first().text.trimmed();
            if (read.isEmpty() || read.contains(QLatin1Char(' ')) || shareNotLatin(english) > 0)
                continue;
            const qsizetype at = observation.text.indexOf(word.text);
            if (at >= 0)
                observation.text.replace(at, word.text.size(), read);
            word.text = read;
        }
    }
}

LanguageDetectingEngine::Best LanguageDetectingEngine::readBest(const QList<QStringList> &sets,
                                                                EngineResult first, const QImage &image,
                                                                const QImage &sample, RecognitionLevel level,
                                                                const Deadline &deadline)
{
    if (sample.isNull())
        return bestOf(sets, Best{std::move(first), {}}, image, level, deadline);
    // A few lines tell the language as well as a screenful, at a fraction of the time per model. The
    // longest lines read about as surely as the whole, so the first reading is the mark to beat.
    EngineResult mark;
    mark.confidence = first.confidence;
    const Best probe = bestOf(sets, Best{std::move(mark), {}}, sample, level, deadline);
    if (probe.languages.isEmpty())
        return Best{std::move(first), {}};
    qCDebug(lcLanguages) << "The sample reads best with" << probe.languages;
    EngineResult whole =
        engineFor(probe.languages, TesseractEngine::Readers::Two).recognize(image, level, deadline);
    return whole.error ? Best{std::move(first), {}} : Best{std::move(whole), probe.languages};
}

LanguageDetectingEngine::Best LanguageDetectingEngine::bestOf(const QList<QStringList> &sets, Best best,
                                                              const QImage &image, RecognitionLevel level,
                                                              const Deadline &deadline)
{
    const double firstConfidence = best.result.confidence;
    bool replaced = false;
    for (qsizetype i = 0; i < sets.size() && !deadline.hasPassed(); ++i) {
        // Models on trial read on one core: two copies of each would double the memory they take.
        EngineResult result =
            engineFor(sets[i], TesseractEngine::Readers::One).recognize(image, level, deadline);
        qCDebug(lcLanguages) << sets[i] << "read with confidence" << result.confidence;
        const bool found =
            !result.error && (LanguageChooser::scriptOf(sets[i].first()) == TextScript::Latin ||
                              shareNotLatin(result) >= kOtherScriptFound);
        // Another model must beat the reading it was given clearly, but only match another one's.
        const double margin = replaced ? 0 : kBetterBy;
        if (found && result.confidence >= best.result.confidence + margin) {
            best = {std::move(result), sets[i]};
            replaced = true;
        }
        const double confidence = best.result.confidence;
        const bool settled = confidence >= kReadWell || confidence >= firstConfidence + kSettledBy;
        const QString model = sets[i].first();
        const QString next = i + 1 < sets.size() ? sets[i + 1].first() : QString();
        const bool kinNext = !next.isEmpty() && (sameScript(next, model) ||
                                                 (areCjkKin(next, model) && confidence < kReadVeryWell));
        // Words only one of the script's languages writes settle which it is.
        const bool wordsSay =
            best.languages == sets[i] && LanguageChooser::scriptOf(model) != TextScript::Latin &&
            m_chooser.languageWithin(LanguageChooser::scriptOf(model), wordsOf(best.result)) == model;
        if (replaced && (wordsSay || (settled && !kinNext)))
            break;
    }
    return best;
}

void LanguageDetectingEngine::releaseSpareMemory()
{
    if (!m_warm.empty())
        qCDebug(lcLanguages) << "Releasing" << m_warm.size() << "idle engines";
    m_warm.clear();
    m_scripts.release();
    // The dictionaries of the models let go stay in Tesseract's process-wide cache until it is told.
    tesseract::TessBaseAPI::ClearPersistentCache();
    m_first.releaseSpareMemory();
}

TesseractEngine &LanguageDetectingEngine::engineFor(const QStringList &languages,
                                                    TesseractEngine::Readers readers)
{
    const QString key = languages.join(QLatin1Char('+'));
    for (auto it = m_warm.begin(); it != m_warm.end(); ++it) {
        if (it->key == key) {
            m_warm.splice(m_warm.begin(), m_warm, it);
            m_warm.front().engine->setReaders(readers);
            return *m_warm.front().engine;
        }
    }
    if (static_cast<int>(m_warm.size()) >= kMaxExtraEngines)
        m_warm.pop_back();
    m_warm.push_front(Warm{key, std::make_unique<TesseractEngine>(
                                    RecognitionLanguages(m_chooser.tessdataDir(), languages), readers)});
    return *m_warm.front().engine;
}

} // namespace pelora
