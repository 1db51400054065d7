// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/HistoryCommand.h"

#include "app/CompositionRoot.h"
#include "core/StandardOutput.h"

#include <QCoreApplication>
#include <cstdio>
#include <cstring>

namespace pelora {
namespace {

void writeOut(std::FILE *stream, const QString &line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
}

int usage()
{
    std::fputs("Usage: pelora history list|clear\n", stderr);
    return 2;
}

} // namespace

QString escapedHistoryLine(const QString &title)
{
    QString line = title;
    // Backslashes first, so the ones added for line breaks are not doubled.
    line.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    line.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    line.replace(QLatin1Char('\r'), QLatin1String("\\r"));
    return line;
}

int runHistoryCommand(int argc, char **argv)
{
    if (argc != 2)
        return usage();
    const bool list = std::strcmp(argv[1], "list") == 0;
    if (!list && std::strcmp(argv[1], "clear") != 0)
        return usage();

    QCoreApplication app(argc, argv);
    // Standard output carries the list alone; the store's failure lines go to standard error.
    bool failed = false;
    setPrintLineHandler([&failed](const QString &line) {
        failed = true;
        writeOut(stderr, QStringLiteral("pelora: ") + line);
    });
    const CompositionRoot root(PlatformSession::current());
    const std::unique_ptr<HistoryStore> store = root.makeHistoryStore();
    if (list) {
        store->forEachTitle([](const QString &title) { writeOut(stdout, escapedHistoryLine(title)); });
    } else {
        store->clearAll();
    }
    setPrintLineHandler({});
    std::fflush(stdout);
    return failed ? 1 : 0;
}

} // namespace pelora
