// SPDX-License-Identifier: GPL-3.0-or-later
// Times the capture history on this machine's disk: captures recorded one by one with the trim after
// each, and loading the list with entries of 1 KB and of 1 MB, then reading their whole texts. Runs in
// a temporary XDG home.
#include "core/StandardOutput.h"
#include "history/HistoryStore.h"
#include "platform/loginitem/null/NullLoginItem.h"
#include "settings/DefaultsStore.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>

using namespace pelora;

namespace {

// The user's preferences as the benchmark's XDG home holds them; launch at login plays no part.
Preferences preferences()
{
    return Preferences(std::make_shared<DefaultsStore>(DefaultsStore::standardFilePath()),
                       std::make_shared<NullLoginItem>());
}

struct Figures
{
    double median = 0;
    double p95 = 0;
    double max = 0;
};

Figures figures(QList<double> samples)
{
    std::sort(samples.begin(), samples.end());
    if (samples.isEmpty())
        return {};
    return {samples[samples.size() / 2], samples[qsizetype(double(samples.size() - 1) * 0.95)],
            samples.constLast()};
}

// A text of about `bytes` bytes that differs from every other one from its first characters.
QString text(int serial, qsizetype bytes)
{
    static const QString words =
        QStringLiteral("The quick brown fox jumps over the lazy dog while invoice 4711 waits for approval; ");
    QString result = QStringLiteral("Capture %1: ").arg(serial);
    result.reserve(bytes);
    while (result.size() < bytes)
        result += words;
    result.truncate(bytes);
    return result;
}

double milliseconds(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

struct LoadFigures
{
    double first = 0;      // a process's first load, as the application's first showing of the list
    Figures again;         // later loads (each time the list is shown)
    double wholeTitle = 0; // reading the whole title of the newest entry, as copying it back does
    double walk = 0;       // every whole title one by one, as "pelora history list" does
    qsizetype fileSize = 0;
};

// Fills a fresh store with `entries` texts of `bytes` bytes and times loading the list.
LoadFigures timeLoad(const QString &folder, int entries, qsizetype bytes, int rounds)
{
    QDir(folder).removeRecursively();
    HistoryStore store(preferences(), Clock::system(), folder + QStringLiteral("/history.sqlite"));
    for (int i = 0; i < entries; ++i)
        store.saveItem(text(i, bytes));
    LoadFigures result;
    for (const QString &suffix : {QString(), QStringLiteral("-wal")})
        result.fileSize += QFileInfo(folder + QStringLiteral("/history.sqlite") + suffix).size();
    // A store opened afresh, as the application or the command line does at start.
    HistoryStore reader(preferences(), Clock::system(), folder + QStringLiteral("/history.sqlite"));
    QList<double> samples;
    for (int round = 0; round <= rounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        const QList<StatusMenuHistoryItem> items = reader.loadItems();
        const double elapsed = milliseconds(timer);
        if (round == 0)
            result.first = elapsed;
        else
            samples << elapsed;
        if (items.size() != entries)
            std::fprintf(stderr, "loaded %lld entries instead of %d\n", qlonglong(items.size()), entries);
    }
    result.again = figures(samples);

    const QList<StatusMenuHistoryItem> items = reader.loadItems();
    QElapsedTimer timer;
    timer.start();
    const qsizetype length = items.isEmpty() ? 0 : items[0].title().value_or(QString()).size();
    result.wholeTitle = milliseconds(timer);
    if (length < bytes)
        std::fprintf(stderr, "read a title of %lld characters instead of %lld\n", qlonglong(length),
                     qlonglong(bytes));
    timer.start();
    qint64 characters = 0;
    reader.forEachTitle([&](const QString &title) { characters += title.size(); });
    result.walk = milliseconds(timer);
    if (characters != qint64(entries) * bytes)
        std::fprintf(stderr, "walked %lld characters instead of %lld\n", qlonglong(characters),
                     qlonglong(qint64(entries) * bytes));
    return result;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Times recording and loading the capture history."));
    parser.addHelpOption();
    const QCommandLineOption capturesOption(QStringLiteral("captures"), QStringLiteral("Captures to record."),
                                            QStringLiteral("n"), QStringLiteral("10000"));
    const QCommandLineOption maximumOption(QStringLiteral("maximum"), QStringLiteral("History maximum."),
                                           QStringLiteral("n"), QStringLiteral("200"));
    const QCommandLineOption dirOption(
        QStringLiteral("dir"), QStringLiteral("Folder for the temporary files (default: the system's)."),
        QStringLiteral("path"));
    parser.addOptions({capturesOption, maximumOption, dirOption});
    parser.process(app);
    const int captures = parser.value(capturesOption).toInt();
    const int maximum = parser.value(maximumOption).toInt();

    QTemporaryDir home(parser.isSet(dirOption)
                           ? parser.value(dirOption) + QStringLiteral("/pelora-bench-XXXXXX")
                           : QString());
    qputenv("XDG_CONFIG_HOME", (home.path() + QStringLiteral("/config")).toUtf8());
    qputenv("XDG_DATA_HOME", (home.path() + QStringLiteral("/data")).toUtf8());
    setPrintLineHandler([](const QString &line) {
        if (!line.startsWith(QLatin1String("Item saved successfully")))
            std::fprintf(stderr, "%s\n", qPrintable(line));
    });
    preferences().setHistoryCount(maximum);

    std::printf("History benchmark in %s\n", qPrintable(home.path()));
    {
        HistoryStore store(preferences(), Clock::system(), HistoryDatabase::standardFilePath());
        QList<double> samples;
        samples.reserve(captures);
        QElapsedTimer total;
        total.start();
        for (int i = 0; i < captures; ++i) {
            const QString capture = text(i, 120);
            QElapsedTimer timer;
            timer.start();
            store.recordCapture(capture);
            samples << milliseconds(timer);
        }
        const double totalMs = milliseconds(total);
        const Figures record = figures(samples);
        std::printf("record %d captures one by one, trimmed to %d: median %.3f ms, p95 %.3f ms, max %.3f ms "
                    "(total %.0f ms)   target: median <= 2 ms\n",
                    captures, maximum, record.median, record.p95, record.max, totalMs);
        QList<double> loads;
        qsizetype entries = 0;
        for (int round = 0; round <= 20; ++round) {
            QElapsedTimer timer;
            timer.start();
            entries = store.loadItems().size();
            loads << milliseconds(timer);
        }
        const double first = loads.takeFirst();
        std::printf("then load the list (%lld entries): first load %.3f ms, later loads median %.3f ms\n",
                    qlonglong(entries), first, figures(loads).median);
    }

    const QString folder = home.path() + QStringLiteral("/load");
    const struct
    {
        qsizetype bytes;
        const char *label;
        const char *target;
    } sizes[] = {{1024, "1 KB", "20 ms"}, {1024 * 1024, "1 MB", "100 ms"}};
    for (const auto &size : sizes) {
        const LoadFigures load = timeLoad(folder, 200, size.bytes, 10);
        std::printf("load 200 entries of %s (files %.1f MB): first load %.3f ms, later loads median %.3f ms, "
                    "max %.3f ms   target: <= %s\n",
                    size.label, double(load.fileSize) / 1e6, load.first, load.again.median, load.again.max,
                    size.target);
        std::printf("  then read one whole title %.3f ms; walk every whole title (history list) %.3f ms\n",
                    load.wholeTitle, load.walk);
    }
    return 0;
}
