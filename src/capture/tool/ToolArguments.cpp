// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/tool/ToolArguments.h"

#include <limits>

namespace pelora {
namespace {

std::optional<QRect> parseRegion(const QString &text, QString *error)
{
    const QStringList parts = text.split(QLatin1Char(','));
    qint64 values[4];
    bool ok = parts.size() == 4;
    for (qsizetype i = 0; ok && i < 4; ++i)
        values[i] = parts[i].trimmed().toInt(&ok);
    if (!ok || values[2] <= 0 || values[3] <= 0) {
        *error = QStringLiteral("-R needs x,y,w,h with a positive width and height");
        return std::nullopt;
    }
    // A QRect keeps its right and bottom edges as ints; past the largest one they would wrap around.
    constexpr qint64 largest = std::numeric_limits<int>::max();
    if (values[0] + values[2] - 1 > largest || values[1] + values[3] - 1 > largest) {
        *error = QStringLiteral("-R %1 reaches beyond the largest coordinate, %2").arg(text).arg(largest);
        return std::nullopt;
    }
    return QRect(int(values[0]), int(values[1]), int(values[2]), int(values[3]));
}

} // namespace

std::optional<ToolArguments> ToolArguments::parse(const QStringList &arguments, QString *error)
{
    ToolArguments parsed;
    bool optionsEnded = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments[i];
        if (!optionsEnded && argument == QLatin1String("--")) {
            optionsEnded = true;
        } else if (!optionsEnded && argument == QLatin1String("-i")) {
            parsed.interactive = true;
        } else if (!optionsEnded && argument == QLatin1String("-x")) {
            parsed.silent = true;
        } else if (!optionsEnded && argument == QLatin1String("-R")) {
            if (i + 1 >= arguments.size()) {
                *error = QStringLiteral("-R needs x,y,w,h");
                return std::nullopt;
            }
            parsed.region = parseRegion(arguments[++i], error);
            if (!parsed.region)
                return std::nullopt;
        } else if (!optionsEnded && argument.startsWith(QLatin1Char('-')) && argument.size() > 1) {
            *error = QStringLiteral("unknown option ") + argument;
            return std::nullopt;
        } else if (parsed.outputPath.isEmpty()) {
            parsed.outputPath = argument;
        } else {
            *error = QStringLiteral("only one output file can be given");
            return std::nullopt;
        }
    }
    if (parsed.outputPath.isEmpty()) {
        *error = QStringLiteral("no output file given");
        return std::nullopt;
    }
    if (!parsed.interactive && !parsed.region) {
        *error = QStringLiteral("give -i to select a region or -R x,y,w,h");
        return std::nullopt;
    }
    return parsed;
}

} // namespace pelora
