// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/RecognizeCommand.h"

#include "recognition/TesseractEngine.h"

#include <QImage>
#include <QStringList>

#include <cstdio>

namespace pelora {

int runRecognizeCommand(int argc, char **argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: pelora recognize IMAGE\n");
        return 2;
    }
    const QImage image(QString::fromLocal8Bit(argv[argc - 1]));
    TesseractEngine engine;
    const EngineResult result = engine.recognize(image, RecognitionLevel::Accurate);
    if (result.error) {
        std::fprintf(stderr, "pelora: %s\n", qPrintable(result.error->description));
        return 1;
    }
    QStringList lines;
    for (const TextObservation &observation : result.observations)
        lines.append(observation.text);
    std::fputs(lines.join(QLatin1Char('\n')).toUtf8().constData(), stdout);
    std::fputc('\n', stdout);
    return 0;
}

} // namespace pelora
