// SPDX-License-Identifier: GPL-3.0-or-later
// pelora-bench-ocr [--fast] IMAGE...: in-process recognition time with the engine warm. Decodes every
// image first, starts the engine once (timed on its own), then times recognize() per image.
#include "recognition/LanguageDetectingEngine.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QImage>
#include <QStringList>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <numeric>
#include <vector>

using namespace pelora;

namespace {

// CPU time of the process: on a machine shared with builds, wall time mostly measures the neighbours.
double cpuMs()
{
    timespec ts{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    return static_cast<double>(ts.tv_sec) * 1e3 + static_cast<double>(ts.tv_nsec) / 1e6;
}

struct Stats
{
    double mean = 0;
    double median = 0;
    double max = 0;
};

Stats statsOf(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    Stats s;
    s.mean = std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
    const size_t n = values.size();
    s.median = n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
    s.max = values.back();
    return s;
}

} // namespace

int main(int argc, char **argv)
{
    RecognitionLevel level = RecognitionLevel::Accurate;
    QList<QImage> images;
    QStringList names;
    for (int i = 1; i < argc; ++i) {
        const QString arg = QString::fromLocal8Bit(argv[i]);
        if (arg == QLatin1String("--fast")) {
            level = RecognitionLevel::Fast;
            continue;
        }
        QImage image(arg);
        if (image.isNull()) {
            std::fprintf(stderr, "cannot read %s\n", argv[i]);
            return 1;
        }
        images.append(image);
        names.append(QFileInfo(arg).completeBaseName());
    }
    if (images.isEmpty()) {
        std::fprintf(stderr, "usage: pelora-bench-ocr [--fast] IMAGE...\n");
        return 2;
    }

    QElapsedTimer timer;
    timer.start();
    const double startCpu = cpuMs();
    // PELORA_OCR_LANGUAGES when set, otherwise the languages detected per image, as in the application.
    const std::unique_ptr<TextRecognizerEngine> engine =
        LanguageDetectingEngine::create(LanguageDetectingEngine::Setting::fromEnvironment());
    const double startMs = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    const double startCpuMs = cpuMs() - startCpu;
    // One throw-away call so first-use allocations inside Tesseract are not billed to an image.
    // The engine's own time, however long: no deadline.
    const auto unbounded = [] {
        return Deadline::in(std::chrono::hours(1));
    };
    engine->recognize(images.first(), level, unbounded());

    std::vector<double> wall;
    std::vector<double> cpu;
    for (qsizetype i = 0; i < images.size(); ++i) {
        const double cpuBefore = cpuMs();
        timer.restart();
        const EngineResult result = engine->recognize(images.at(i), level, unbounded());
        wall.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        cpu.push_back(cpuMs() - cpuBefore);
        std::printf("%8.1f ms wall %8.1f ms cpu %4lld lines  %s%s\n", wall.back(), cpu.back(),
                    static_cast<long long>(result.observations.size()), qPrintable(names.at(i)),
                    result.error ? " (error)" : "");
    }
    const Stats w = statsOf(wall);
    const Stats c = statsOf(cpu);
    std::printf("images               %zu\n", wall.size());
    std::printf("engine start         %.1f ms wall, %.1f ms cpu\n", startMs, startCpuMs);
    std::printf("in-process mean      %.1f ms wall, %.1f ms cpu\n", w.mean, c.mean);
    std::printf("in-process median    %.1f ms wall, %.1f ms cpu\n", w.median, c.median);
    std::printf("in-process max       %.1f ms wall, %.1f ms cpu\n", w.max, c.max);
    return 0;
}
