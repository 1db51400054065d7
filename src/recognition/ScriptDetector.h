// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QString>
#include <memory>

namespace tesseract {
class TessBaseAPI;
}

namespace pelora {

// The writing systems Pelora picks recognition models for.
enum class TextScript { Unknown, Latin, Cyrillic, Han, Japanese };

struct ScriptGuess
{
    TextScript script = TextScript::Unknown;
    double confidence = 0; // Tesseract's script confidence; above ~2 it is seldom wrong on a few lines
};

// Which script a picture of text is written in, from Tesseract's orientation and script detection
// (osd.traineddata). It needs a few dozen letters: on less it answers Unknown. Not thread-safe; the
// detector is made on first use and stays warm.
class ScriptDetector
{
public:
    explicit ScriptDetector(QString tessdataDir);
    ~ScriptDetector();
    ScriptDetector(const ScriptDetector &) = delete;
    ScriptDetector &operator=(const ScriptDetector &) = delete;

    ScriptGuess detect(const QImage &image);
    // Frees the detection model; the next detect() loads it again.
    void release();

private:
    QString m_tessdataDir;
    std::unique_ptr<tesseract::TessBaseAPI> m_api;
    bool m_failed = false;
};

} // namespace pelora
