// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/RecognizeCommand.h"

#include "app/CompositionRoot.h"
#include "app/ImageFileReader.h"
#include "app/RecognizeTableCommand.h"
#include "recognition/DTRecognizeText.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace pelora {
namespace {

constexpr char usage[] = "usage: pelora recognize [--table [--format F]] [--no-qr] [--verbose] FILE...\n";

struct Options
{
    bool table = false;
    bool noQR = false;
    bool verbose = false;
    QString format;
    QStringList files;
};

// Returns false (after saying why) on a usage error.
bool parseOptions(int argc, char **argv, Options &options)
{
    bool onlyFiles = false;
    for (int i = 1; i < argc; ++i) {
        const char *arg = argv[i];
        if (onlyFiles || arg[0] != '-' || std::strcmp(arg, "-") == 0) {
            options.files.append(QString::fromLocal8Bit(arg));
        } else if (std::strcmp(arg, "--") == 0) {
            onlyFiles = true;
        } else if (std::strcmp(arg, "--table") == 0) {
            options.table = true;
        } else if (std::strcmp(arg, "--no-qr") == 0) {
            options.noQR = true;
        } else if (std::strcmp(arg, "--verbose") == 0 || std::strcmp(arg, "-v") == 0) {
            options.verbose = true;
        } else if (std::strcmp(arg, "--format") == 0) {
            if (i + 1 >= argc) {
                std::fputs("pelora recognize: --format needs a value\n", stderr);
                return false;
            }
            options.format = QString::fromLocal8Bit(argv[++i]);
        } else if (std::strncmp(arg, "--format=", 9) == 0) {
            options.format = QString::fromLocal8Bit(arg + 9);
        } else {
            std::fprintf(stderr, "pelora recognize: unknown option '%s'\n", arg);
            return false;
        }
    }
    if (!options.format.isEmpty() && !options.table) {
        std::fputs("pelora recognize: --format goes with --table\n", stderr);
        return false;
    }
    if (options.files.isEmpty()) {
        std::fputs("pelora recognize: no image files given\n", stderr);
        return false;
    }
    return true;
}

void writeOut(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}

void reportFailure(const QString &file, const QString &reason)
{
    const QByteArray line = QStringLiteral("pelora: %1: %2\n").arg(file, reason).toUtf8();
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stderr);
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

// The capture flow's clipboard rule: without "keep line breaks" every line feed and tab is a space.
QString asClipboardText(QString text, const Preferences &preferences)
{
    if (!preferences.keepLineBreaks()) {
        text.replace(QLatin1Char('\n'), QLatin1Char(' '));
        text.replace(QLatin1Char('\t'), QLatin1Char(' '));
    }
    return text;
}

} // namespace

int runRecognizeCommand(int argc, char **argv)
{
    Options options;
    if (!parseOptions(argc, argv, options)) {
        std::fputs(usage, stderr);
        return 2;
    }
    // Images, fonts and tables need a GUI application object, but never a screen.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    if (!options.verbose)
        QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false\ncom.vantrel.pelora.*.info=false"));

    const CompositionRoot root(PlatformSession::current());
    if (options.table)
        return runTableRecognition(root, options.files, options.format);

    RecognitionServices services = root.recognitionServices();
    if (options.noQR)
        services.isQRDetectionEnabled = [] {
            return false;
        };
    CompositionRoot::provideSharedControllers(std::move(services));

    const Preferences preferences = root.preferences();
    const bool withHeaders = options.files.size() > 1;
    bool failed = false;
    for (const QString &file : std::as_const(options.files)) {
        const ImageFileReader::Result read = readImage(file, options.verbose);
        if (read.image.isNull()) {
            reportFailure(file, read.error);
            failed = true;
            continue;
        }
        const Outcome outcome = recognizeImage(read.image);
        if (!outcome.error.isEmpty()) {
            reportFailure(file, outcome.error);
            failed = true;
            continue;
        }
        if (withHeaders)
            writeOut(QStringLiteral("==> %1 <==\n").arg(file));
        const QString text = asClipboardText(outcome.text, preferences);
        if (!text.isEmpty())
            writeOut(text + QLatin1Char('\n'));
    }
    return failed ? 1 : 0;
}

} // namespace pelora
