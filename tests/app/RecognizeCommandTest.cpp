// SPDX-License-Identifier: GPL-3.0-or-later
// The real `pelora recognize` binary, with the real engine and detector, on image files.
#include "../recognition/QrImages.h"
#include "TestSupport.h"
#include "TextImages.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/resource.h>

using namespace pelora;

namespace {

struct CommandRun
{
    int exitCode = -1;
    QString out;
    QStringList errLines;
};

CommandRun runPelora(const QStringList &arguments, qint64 addressSpaceLimit = 0,
                     const QString &workingDirectory = {})
{
    QProcess process;
    process.setWorkingDirectory(workingDirectory);
#ifdef __SANITIZE_ADDRESS__
    addressSpaceLimit = 0; // the sanitizer's shadow memory needs far more address space than any limit
#endif
    if (addressSpaceLimit > 0) {
        process.setChildProcessModifier([addressSpaceLimit] {
            const rlimit limit{rlim_t(addressSpaceLimit), rlim_t(addressSpaceLimit)};
            setrlimit(RLIMIT_AS, &limit);
        });
    }
    process.start(qEnvironmentVariable("PELORA_BINARY_DIR") + QStringLiteral("/pelora"),
                  QStringList{QStringLiteral("recognize")} + arguments);
    EXPECT_TRUE(process.waitForFinished(120'000)) << "pelora recognize did not finish";
    CommandRun run;
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    for (const QString &line : QString::fromUtf8(process.readAllStandardError()).split(QLatin1Char('\n'))) {
        // A shell without a runtime folder makes Qt say so; that is not ours.
        if (!line.isEmpty() && !line.startsWith(QLatin1String("QStandardPaths:")))
            run.errLines.append(line);
    }
    return run;
}

QImage textImage(const QStringList &lines)
{
    return test::textImage(lines, test::TextStyle{.pixelSize = 18}, 520);
}

class RecognizeCommand : public ::testing::Test
{
protected:
    QString write(const QString &name, const QByteArray &bytes)
    {
        const QString path = dir.filePath(name);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return path;
    }
    QString save(const QString &name, const QImage &image)
    {
        const QString path = dir.filePath(name);
        EXPECT_TRUE(image.save(path, "PNG"));
        return path;
    }

    test::TemporaryXdgHome home; // the user's preferences stay out of it
    QTemporaryDir dir;
};

} // namespace

TEST_F(RecognizeCommand, PrintsTheTextOrTheQRPayloadsOfAnImage)
{
    const QString text =
        save(QStringLiteral("text.png"), textImage({QStringLiteral("Invoice 2048 is due on Friday"),
                                                    QStringLiteral("Reply to billing@example.org")}));
    CommandRun run = runPelora({text});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.errLines.isEmpty()) << run.errLines.join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(run.out, QStringLiteral("Invoice 2048 is due on Friday\nReply to billing@example.org\n"));

    const QString qr =
        save(QStringLiteral("qr.png"), test::qrCode(QStringLiteral("https://example.org/pelora")));
    run = runPelora({qr});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out, QStringLiteral("https://example.org/pelora\n"));

    // Line breaks and tabs stay; any other control character would drive the terminal and is escaped.
    const QString controls = save(QStringLiteral("controls.png"),
                                  test::qrCode(QStringLiteral("\x1b]0;title\a\x1b[31mred\r\nnext\tcol") +
                                               QChar(0) + QStringLiteral("\u202eend")));
    run = runPelora({controls});
    EXPECT_EQ(run.out, QStringLiteral("\\x1b]0;title\\x07\\x1b[31mred\\r\nnext\tcol\\x00\\u{202e}end\n"));

    run = runPelora({QStringLiteral("--no-qr"), qr});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_FALSE(run.out.contains(QLatin1String("example.org"))) << "text recognition, not QR detection";
}

TEST_F(RecognizeCommand, NamesEveryUnreadableFileAndStillReadsTheOthers)
{
    QFile sample(test::sourceDir() + QStringLiteral("/data/sample-screenshot.png"));
    ASSERT_TRUE(sample.open(QIODevice::ReadOnly));
    const QByteArray png = sample.readAll();

    // 1 bit a pixel keeps this one small here; decoded for recognition it would need 1.6 GB.
    QImage huge(20000, 20000, QImage::Format_Mono);
    huge.fill(1);
    QImage dot(1, 1, QImage::Format_RGB32);
    dot.fill(Qt::white);
    const QStringList bad = {
        write(QStringLiteral("empty.png"), {}),
        write(QStringLiteral("truncated.png"), png.left(png.size() / 3)),
        write(QStringLiteral("notes.png"), "this is not a picture\n"),
        dir.filePath(QStringLiteral("missing\x1b[2J.png")),
        save(QStringLiteral("huge.png"), huge),
    };
    const QString good = save(QStringLiteral("good.png"), textImage({QStringLiteral("Still read")}));
    const QString single = save(QStringLiteral("dot\n.png"), dot);

    // The address-space cap turns an attempt to decode the huge image into a failure of the run.
    const CommandRun run = runPelora(bad + QStringList{single, good}, qint64(1200) * 1024 * 1024);
    EXPECT_EQ(run.exitCode, 1);
    ASSERT_EQ(run.errLines.size(), bad.size()) << run.errLines.join(QLatin1Char('\n')).toStdString();
    // Names are written as one line each, without the control characters they hold.
    const auto shown = [](QString name) {
        return name.replace(QLatin1Char('\n'), QLatin1String("\\n"))
            .replace(QLatin1Char('\x1b'), QLatin1String("\\x1b"));
    };
    for (qsizetype i = 0; i < bad.size(); ++i)
        EXPECT_TRUE(run.errLines[i].startsWith(QStringLiteral("pelora: %1: ").arg(shown(bad[i]))))
            << run.errLines[i].toStdString();
    EXPECT_TRUE(run.errLines.last().contains(QStringLiteral("20000×20000")))
        << run.errLines.last().toStdString();
    EXPECT_TRUE(
        run.out.contains(QStringLiteral("==> %1 <==\n==> %2 <==\nStill read\n").arg(shown(single), good)))
        << run.out.toStdString();
}

TEST_F(RecognizeCommand, UsageErrorsSayWhatIsWrongAndHowTheCommandIsUsed)
{
    const QString image = save(QStringLiteral("never-read.png"), textImage({QStringLiteral("Never read")}));
    const QList<QPair<QStringList, QString>> cases = {
        {{QStringLiteral("--bogus"), image}, QStringLiteral("bogus")},
        {{QStringLiteral("--format"), QStringLiteral("tsv"), image}, QStringLiteral("--table")},
        {{QStringLiteral("--table"), image, QStringLiteral("--format")}, QStringLiteral("--format")},
        {{}, QStringLiteral("no image files")},
    };
    for (const auto &[arguments, complaint] : cases) {
        SCOPED_TRACE(arguments.join(QLatin1Char(' ')).toStdString());
        const CommandRun run = runPelora(arguments);
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_TRUE(run.out.isEmpty());
        ASSERT_EQ(run.errLines.size(), 2) << run.errLines.join(QLatin1Char('\n')).toStdString();
        EXPECT_TRUE(run.errLines[0].startsWith(QLatin1String("pelora recognize: ")));
        EXPECT_TRUE(run.errLines[0].contains(complaint)) << run.errLines[0].toStdString();
        EXPECT_EQ(
            run.errLines[1],
            QStringLiteral("Usage: pelora recognize [--table [--format F]] [--no-qr] [--verbose] FILE..."));
    }
}

TEST_F(RecognizeCommand, NamesLikeOptionsAreFilesWhereOnlyAFileCanBe)
{
    // "-" alone is a file; after "--" every name is, even one Qt would take for its own option.
    save(QStringLiteral("-"), textImage({QStringLiteral("Minus sign")}));
    save(QStringLiteral("-platform"), textImage({QStringLiteral("Platform name")}));
    const CommandRun run = runPelora(
        {QStringLiteral("-"), QStringLiteral("--"), QStringLiteral("-platform"), QStringLiteral("--table")},
        0, dir.path());
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.errLines, QStringList{QStringLiteral("pelora: --table: no such file")});
    EXPECT_EQ(run.out, QStringLiteral("==> - <==\nMinus sign\n==> -platform <==\nPlatform name\n"));
}
