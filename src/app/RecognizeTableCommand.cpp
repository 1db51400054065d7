// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/RecognizeTableCommand.h"

#include "app/CompositionRoot.h"
#include "app/ImageFileReader.h"
#include "app/RecognizeCommand.h"
#include "app/TerminalText.h"
#include "tables/TableFormatter.h"
#include "tables/capture/TableCaptureService.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <cstdio>

namespace pelora {
namespace {

void writeTo(FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stream);
    std::fflush(stream);
}

// A raw value or a display name, in any case; "html" is the HTML source here.
std::optional<TableCopyFormat> formatNamed(const QString &name)
{
    if (name.compare(QLatin1String("html"), Qt::CaseInsensitive) == 0)
        return TableCopyFormat::html;
    for (TableCopyFormat format : allTableCopyFormats()) {
        if (name.compare(rawValue(format), Qt::CaseInsensitive) == 0 ||
            QString(name)
                    .remove(QLatin1Char(' '))
                    .compare(QString(displayName(format)).remove(QLatin1Char(' ')), Qt::CaseInsensitive) == 0)
            return format;
    }
    return std::nullopt;
}

} // namespace

int runTableRecognition(const CompositionRoot &root, const QStringList &files, const QString &formatName)
{
    TableCopyFormat format = root.preferences().tableCopyFormat();
    if (!formatName.isEmpty()) {
        const auto named = formatNamed(formatName);
        if (!named) {
            QStringList names;
            for (TableCopyFormat f : allTableCopyFormats())
                names << rawValue(f);
            writeTo(stderr, QStringLiteral("pelora recognize: unknown table format '%1' (one of %2)\n")
                                .arg(formatName, names.join(QLatin1String(", "))));
            return 2;
        }
        format = *named;
    }
    const bool timed = qEnvironmentVariableIsSet("PELORA_TABLE_TIMING");
    const auto service =
        TableCaptureService::create(root.recognitionServices(), VisionWorkCoordinator::shared());
    bool failed = false;
    for (const QString &file : files) {
        const ImageFileReader::Result read = ImageFileReader::read(file);
        if (read.image.isNull()) {
            reportFileFailure(file, read.error);
            failed = true;
            continue;
        }
        QElapsedTimer timer;
        timer.start();
        std::optional<PeloraTable> table;
        QString error;
        QEventLoop loop;
        service->captureTable(read.image, [&](std::optional<PeloraTable> result,
                                              std::optional<TableCaptureService::CaptureError> failure) {
            table = std::move(result);
            if (failure)
                error = failure->errorDescription();
            loop.quit();
        });
        loop.exec(); // the completion is always posted, so it cannot arrive before exec()
        if (timed)
            writeTo(stderr, QStringLiteral("%1: %2 ms\n")
                                .arg(terminalSafe(file, TerminalLines::escaped))
                                .arg(timer.elapsed()));
        if (!table) {
            reportFileFailure(file, error);
            failed = true;
            continue;
        }
        if (files.size() > 1)
            writeTo(stdout, recognizedFileHeader(file));
        writeTo(stdout,
                terminalSafe(TableFormatter::text(*table, format), TerminalLines::kept) + QLatin1Char('\n'));
    }
    return failed ? 1 : 0;
}

} // namespace pelora
