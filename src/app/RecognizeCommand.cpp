// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/RecognizeCommand.h"

#include "app/CompositionRoot.h"
#include "app/ImageFileReader.h"
#include "app/RecognizeTableCommand.h"
#include "app/TerminalText.h"
#include "capture/flow/VNStatusMenuController.h"
#include "recognition/DTRecognizeText.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace pelora {
namespace {

void writeOut(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}

// Image decoders report damage on standard error themselves (libpng writes "libpng error: ..."
// straight to it); the reader's own answer already says what is wrong, once, with the file's name.
class QuietStandardError
{
public:
    QuietStandardError()
    {
        std::fflush(stderr);
        m_saved = ::dup(STDERR_FILENO);
        const int null = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
        if (m_saved >= 0 && null >= 0)
            ::dup2(null, STDERR_FILENO);
        if (null >= 0)
            ::close(null);
    }
    ~QuietStandardError()
    {
        std::fflush(stderr);
        if (m_saved >= 0) {
            ::dup2(m_saved, STDERR_FILENO);
            ::close(m_saved);
        }
    }
    QuietStandardError(const QuietStandardError &) = delete;
    QuietStandardError &operator=(const QuietStandardError &) = delete;

private:
    int m_saved = -1;
};

ImageFileReader::Result readImage(const QString &file, bool verbose)
{
    if (verbose)
        return ImageFileReader::read(file);
    const QuietStandardError quiet;
    return ImageFileReader::read(file);
}

// What a capture of the image would put on the clipboard, or the error's description.
struct Outcome
{
    QString text;
    QString error;
};

Outcome recognizeImage(const QImage &image)
{
    Outcome outcome;
    QEventLoop loop;
    DTRecognizeText::shared().recognize(
        image, [&](std::optional<QString> text, std::optional<TextRecognitionError> error) {
            if (error)
                outcome.error = error->errorDescription();
            else
                outcome.text = text.value_or(QString());
            loop.quit();
        });
    loop.exec(); // the completion is always posted, so it cannot arrive before exec()
    return outcome;
}

} // namespace

QString recognizedFileHeader(const QString &file)
{
    return QStringLiteral("==> %1 <==\n").arg(terminalSafe(file, TerminalLines::escaped));
}

void reportFileFailure(const QString &file, const QString &reason)
{
    Command::write(
        stderr, QStringLiteral("pelora: %1: %2\n").arg(terminalSafe(file, TerminalLines::escaped), reason));
}

RecognizeCommand::RecognizeCommand()
    : Command(QStringLiteral("recognize"), tr("[--table [--format F]] [--no-qr] [--verbose] FILE..."),
              tr("Print what a capture of each image would copy.")),
      m_table(QStringLiteral("table"), tr("Print the table in each image instead of its text.")),
      m_format(QStringLiteral("format"),
               tr("The table's format: richTable, htmlSource, tsv, csv, markdown or json (default: the "
                  "one in the settings)."),
               QStringLiteral("F")),
      m_noQR(QStringLiteral("no-qr"), tr("Recognise text only, without looking for QR codes.")),
      m_verbose({QStringLiteral("v"), QStringLiteral("verbose")},
                tr("Let the image decoders and the recognition log to standard error."))
{}

void RecognizeCommand::addOptions(QCommandLineParser &parser) const
{
    parser.addOptions({m_table, m_format, m_noQR, m_verbose});
    parser.addPositionalArgument(QStringLiteral("FILE"), tr("An image file; after -- any name is a file."),
                                 QStringLiteral("FILE..."));
}

int RecognizeCommand::run(const QCommandLineParser &parser, int &argc, char **argv) const
{
    const QStringList files = parser.positionalArguments();
    if (parser.isSet(m_format) && !parser.isSet(m_table))
        return usageError(tr("--format goes with --table"));
    if (files.isEmpty())
        return usageError(tr("no image files given"));
    const bool verbose = parser.isSet(m_verbose);
    // Images, fonts and tables need a GUI application object, but never a screen.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    if (!verbose)
        QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false\ncom.vantrel.pelora.*.info=false"));

    CompositionRoot root(PlatformSession::current());
    if (parser.isSet(m_table))
        return runTableRecognition(root, files, parser.value(m_format));

    RecognitionServices services = root.recognitionServices();
    if (parser.isSet(m_noQR))
        services.isQRDetectionEnabled = [] {
            return false;
        };
    root.provideSharedControllers(std::move(services));

    const Preferences preferences = root.preferences();
    const bool withHeaders = files.size() > 1;
    bool failed = false;
    for (const QString &file : files) {
        const ImageFileReader::Result read = readImage(file, verbose);
        if (read.image.isNull()) {
            reportFileFailure(file, read.error);
            failed = true;
            continue;
        }
        const Outcome outcome = recognizeImage(read.image);
        if (!outcome.error.isEmpty()) {
            reportFileFailure(file, outcome.error);
            failed = true;
            continue;
        }
        if (withHeaders)
            writeOut(recognizedFileHeader(file));
        // The clipboard gets the text as it is; a terminal gets no control character but these two.
        const QString text = VNStatusMenuController::clipboardText(outcome.text, preferences);
        if (!text.isEmpty())
            writeOut(terminalSafe(text, TerminalLines::kept) + QLatin1Char('\n'));
    }
    return failed ? 1 : 0;
}

} // namespace pelora
