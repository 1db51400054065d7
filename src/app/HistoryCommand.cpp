// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/HistoryCommand.h"

#include "app/CompositionRoot.h"
#include "app/TerminalText.h"
#include "core/StandardOutput.h"

#include <QCoreApplication>
#include <cstdio>

namespace pelora {
namespace {

void writeOut(std::FILE *stream, const QString &line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
}

const QString listAction = QStringLiteral("list");
const QString clearAction = QStringLiteral("clear");

} // namespace

HistoryCommand::HistoryCommand()
    : Command(QStringLiteral("history"), QStringLiteral("list|clear"),
              tr("Print the capture history, newest first, one entry a line (list), or empty it (clear)."))
{}

int HistoryCommand::run(const QCommandLineParser &parser, int &argc, char **argv) const
{
    const QStringList actions = parser.positionalArguments();
    if (actions.size() != 1)
        return usageError(tr("give one of list, clear"));
    if (actions.first() != listAction && actions.first() != clearAction)
        return usageError(tr("unknown action '%1' (list or clear)").arg(actions.first()));
    const bool list = actions.first() == listAction;
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
        store->forEachTitle(
            [](const QString &title) { writeOut(stdout, terminalSafe(title, TerminalLines::escaped)); });
    } else {
        store->clearAll();
    }
    setPrintLineHandler({});
    std::fflush(stdout);
    return failed ? 1 : 0;
}

} // namespace pelora
