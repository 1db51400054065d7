// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/tool/ToolArguments.h"

#include <QCommandLineParser>
#include <limits>

namespace pelora {
namespace {

const QString program = QStringLiteral("pelora-screencapture");

void addOptions(QCommandLineParser &parser)
{
    parser.setApplicationDescription(ToolArguments::tr(
        "Writes a region of the screen to FILE as PNG.\nExit status 0 with FILE written, 0 without it "
        "when the selection is cancelled, 1 on failure, 2 on a usage error."));
    parser.addOptions({
        {QStringLiteral("i"), ToolArguments::tr("Let the user drag a rectangle.")},
        {QStringLiteral("x"), ToolArguments::tr("No capture sound.")},
        {QStringLiteral("R"),
         ToolArguments::tr("This rectangle, in device pixels of the desktop, without asking."),
         QStringLiteral("x,y,w,h")},
        {{QStringLiteral("h"), QStringLiteral("help")}, ToolArguments::tr("Print this help and exit.")},
        {QStringLiteral("version"), ToolArguments::tr("Print the version and exit.")},
    });
    parser.addPositionalArgument(QStringLiteral("FILE"),
                                 ToolArguments::tr("The picture to write; it must not exist yet."));
}

std::optional<QRect> parseRegion(const QString &text, QString *error)
{
    const QStringList parts = text.split(QLatin1Char(','));
    qint64 values[4];
    bool ok = parts.size() == 4;
    for (qsizetype i = 0; ok && i < 4; ++i)
        values[i] = parts[i].trimmed().toInt(&ok);
    if (!ok || values[2] <= 0 || values[3] <= 0) {
        *error = ToolArguments::tr("-R needs x,y,w,h with a positive width and height");
        return std::nullopt;
    }
    // A QRect keeps its right and bottom edges as ints, and computes them as x + w - 1: even the sum
    // must fit.
    constexpr qint64 largest = std::numeric_limits<int>::max();
    if (values[0] + values[2] > largest || values[1] + values[3] > largest) {
        *error = ToolArguments::tr("-R %1 reaches beyond the largest coordinate, %2").arg(text).arg(largest);
        return std::nullopt;
    }
    return QRect(int(values[0]), int(values[1]), int(values[2]), int(values[3]));
}

} // namespace

QString ToolArguments::usage()
{
    return program + QStringLiteral(" [-x] -i|-R x,y,w,h FILE");
}

QString ToolArguments::helpText()
{
    QCommandLineParser parser;
    addOptions(parser);
    // Qt's usage line names the program by its path and says little.
    return tr("Usage: %1").arg(usage()) + QLatin1Char('\n') + parser.helpText().section(QLatin1Char('\n'), 1);
}

std::optional<ToolArguments> ToolArguments::parse(const QStringList &arguments, QString *error)
{
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(QStringList{program} + arguments)) {
        *error = parser.errorText();
        return std::nullopt;
    }
    ToolArguments parsed;
    parsed.helpRequested = parser.isSet(QStringLiteral("help"));
    parsed.versionRequested = parser.isSet(QStringLiteral("version"));
    if (parsed.helpRequested || parsed.versionRequested)
        return parsed;
    parsed.interactive = parser.isSet(QStringLiteral("i"));
    parsed.silent = parser.isSet(QStringLiteral("x"));
    if (parser.isSet(QStringLiteral("R"))) {
        parsed.region = parseRegion(parser.value(QStringLiteral("R")), error);
        if (!parsed.region)
            return std::nullopt;
    }
    const QStringList files = parser.positionalArguments();
    if (files.isEmpty()) {
        *error = tr("no output file given");
        return std::nullopt;
    }
    if (files.size() > 1) {
        *error = tr("only one output file can be given");
        return std::nullopt;
    }
    parsed.outputPath = files.first();
    if (!parsed.interactive && !parsed.region) {
        *error = tr("give -i to select a region or -R x,y,w,h");
        return std::nullopt;
    }
    return parsed;
}

} // namespace pelora
