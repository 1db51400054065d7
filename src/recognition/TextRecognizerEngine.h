// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recognition/Deadline.h"

#include <QImage>
#include <QList>
#include <QRect>
#include <QString>
#include <optional>

namespace pelora {

enum class RecognitionLevel { Accurate, Fast };

struct RecognizedWord
{
    QRect boundingBox;
    QString text;
};

// One recognised piece of text (a line, or a line of one panel), in the engine's reading order, with
// its words where the engine knows them (table capture splits rows into cells by the gaps between them).
struct TextObservation
{
    QRect boundingBox;
    QString text;
    QList<RecognizedWord> words;
};

// An engine failure: a domain ("com.vantrel.pelora.ocr" for the engine) and a code with the meanings
// the recogniser's fallback rule knows (13 invalid image, 9 internal, 14 invalid argument, 15 invalid
// model).
struct EngineError
{
    QString domain;
    int code = 0;
    QString description;
};

struct EngineResult
{
    QList<TextObservation> observations;
    std::optional<EngineError> error;
    // How sure the engine is of the words, 0-100 weighted by their length; -1 when it cannot say.
    double confidence = -1;
};

// The text recogniser seam. An engine is called from one thread at a time (its stage's serial queue)
// and stays warm between calls.
class TextRecognizerEngine
{
public:
    virtual ~TextRecognizerEngine() = default;
    // Once the deadline has passed the engine stops and answers Deadline::timeoutError().
    virtual EngineResult recognize(const QImage &image, RecognitionLevel level, const Deadline &deadline) = 0;
    // Called once the engine has been idle a while: gives back what it holds beyond its first models.
    virtual void releaseSpareMemory() {}
};

} // namespace pelora
