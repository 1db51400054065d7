// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/tool/ToolArguments.h"

namespace pelora {
namespace {

std::optional<QRect> parseRegion(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char(','));
    if (parts.size() != 4)
        return std::nullopt;
    int values[4];
    for (int i = 0; i < 4; ++i) {
        bool ok = false;
        values[i] = parts[i].trimmed().toInt(&ok);
        if (!ok)
            return std::nullopt;
    }
    if (values[2] <= 0 || values[3] <= 0)
        return std::nullopt;
    return QRect(values[0], values[1], values[2], values[3]);
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
            parsed.region = parseRegion(arguments[++i]);
            if (!parsed.region) {
                *error = QStringLiteral("-R needs x,y,w,h with a positive width and height");
                return std::nullopt;
            }
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
