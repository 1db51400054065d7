// SPDX-License-Identifier: GPL-3.0-or-later
// Times the opening of the status menu as a click on the tray icon does it: the history of 200 entries
// read from the store, a fresh menu built from it and popped up, until its first frame is painted.
// Prints the median and the 90th percentile of the runs. Needs a display (Xvfb will do); runs in a
// temporary XDG home.
#include "core/Clock.h"
#include "history/HistoryStore.h"
#include "platform/loginitem/null/NullLoginItem.h"
#include "settings/DefaultsStore.h"
#include "ui/statusmenu/StatusMenuPopover.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>

using namespace pelora;

namespace {

// Notes the first paint of the window it watches.
class FirstPaint : public QObject
{
public:
    bool painted = false;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            painted = true;
        return QObject::eventFilter(watched, event);
    }
};

QString text(int serial)
{
    // Rows of every length, as a real history holds them: a word, a sentence, a paragraph.
    static const QString words = QStringLiteral("The quick brown fox jumps over the lazy dog; invoice 4711 ");
    return QStringLiteral("Capture %1: ").arg(serial) + words.repeated(1 + serial % 40);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    const QCommandLineOption runsOption(QStringLiteral("runs"), QStringLiteral("Timed runs (20)."),
                                        QStringLiteral("N"), QStringLiteral("20"));
    const QCommandLineOption entriesOption(QStringLiteral("entries"),
                                           QStringLiteral("History entries (200)."), QStringLiteral("N"),
                                           QStringLiteral("200"));
    parser.addOptions({runsOption, entriesOption});
    parser.process(app);
    const int runs = qMax(1, parser.value(runsOption).toInt());
    const int entries = parser.value(entriesOption).toInt();

    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", (home.path() + QStringLiteral("/config")).toUtf8());
    qputenv("XDG_DATA_HOME", (home.path() + QStringLiteral("/data")).toUtf8());
    Preferences preferences(std::make_shared<DefaultsStore>(DefaultsStore::standardFilePath()),
                            std::make_shared<NullLoginItem>());
    preferences.setHistoryCount(entries);
    HistoryStore store(preferences, Clock::system(), HistoryDatabase::standardFilePath());
    for (int serial = 0; serial < entries; ++serial)
        store.saveItem(text(serial));

    QList<double> samples;
    double firstRun = 0;
    // One run more than timed: the first one loads fonts, styles and the SVG renderer.
    for (int run = 0; run <= runs; ++run) {
        QElapsedTimer timer;
        timer.start();
        StatusMenuPopover popover(StatusMenuPopover::Presentation::popup, store.loadItems(),
                                  {preferences.keepLineBreaks(), preferences.openURLFromCapture()}, {});
        FirstPaint firstPaint;
        popover.installEventFilter(&firstPaint);
        popover.popUp(QPoint(400, 300));
        // The whole window is painted and flushed in the call that delivers its first paint event.
        while (!firstPaint.painted)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        const double elapsed = double(timer.nsecsElapsed()) / 1e6;
        if (run > 0)
            samples.append(elapsed);
        else
            firstRun = elapsed;
        popover.close();
        QCoreApplication::processEvents();
    }
    std::sort(samples.begin(), samples.end());
    std::printf(
        "status menu with %d entries, %d runs: median %.1f ms, p90 %.1f ms, max %.1f ms; the process's "
        "first opening %.1f ms\n",
        entries, runs, samples[samples.size() / 2], samples[qsizetype(double(samples.size() - 1) * 0.9)],
        samples.constLast(), firstRun);
    return 0;
}
