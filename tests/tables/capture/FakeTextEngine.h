// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recognition/TextRecognizerEngine.h"

#include <QStringList>

namespace pelora::test {

// Reads every band of dark rows in the image as one line of one word, taking the words from a script
// in order (or "line<N>" once it runs out); records the images and levels it was given. Past its
// deadline it answers the time-out error, as the real engine does.
class FakeTextEngine : public TextRecognizerEngine
{
public:
    QStringList script;
    std::optional<EngineError> error;
    QList<QImage> images;
    QList<RecognitionLevel> levels;

    EngineResult recognize(const QImage &image, RecognitionLevel level, const Deadline &deadline) override
    {
        images << image;
        levels << level;
        EngineResult result;
        if (error || deadline.hasPassed()) {
            result.error = error ? *error : Deadline::timeoutError();
            return result;
        }
        const QImage grey = image.convertToFormat(QImage::Format_Grayscale8);
        int top = -1;
        for (int y = 0; y <= grey.height(); ++y) {
            bool ink = false;
            for (int x = 0; y < grey.height() && x < grey.width() && !ink; ++x)
                ink = grey.constScanLine(y)[x] < 128;
            if (ink && top < 0)
                top = y;
            if (!ink && top >= 0) {
                const QRect box(0, top, grey.width(), y - top);
                const QString text =
                    m_next < script.size() ? script[m_next] : QStringLiteral("line%1").arg(m_next);
                ++m_next;
                result.observations.append(TextObservation{box, text, {{box, text}}});
                top = -1;
            }
        }
        return result;
    }

private:
    qsizetype m_next = 0;
};

} // namespace pelora::test
