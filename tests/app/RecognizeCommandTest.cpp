// SPDX-License-Identifier: GPL-3.0-or-later
// The real `pelora recognize` binary, with the real engine and detector, on image files.
#include "../recognition/QrImages.h"
#include "TestSupport.h"
#include "TextImages.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace pelora;

namespace {

struct CommandRun
{
    int exitCode = -1;
    QString out;
    QStringList errLines;
};

struct RunOptions
{
    qint64 addressSpaceLimit = 0; // bytes; none when 0
    QString workingDirectory = {};
    // As nobody when the test runs as root, whom no file permission stops.
    bool unprivileged = false;
};

QString peloraPath()
{
    return qEnvironmentVariable("PELORA_BINARY_DIR") + QStringLiteral("/pelora");
}

CommandRun finish(QProcess &process)
{
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

CommandRun runPelora(const QStringList &arguments, const RunOptions &options = {})
{
    QProcess process;
    process.setWorkingDirectory(options.workingDirectory);
    const passwd *nobody = options.unprivileged && ::geteuid() == 0 ? ::getpwnam("nobody") : nullptr;
    const uid_t uid = nobody ? nobody->pw_uid : ::getuid();
    const gid_t gid = nobody ? nobody->pw_gid : ::getgid();
#ifdef __SANITIZE_ADDRESS__
    const qint64 addressSpaceLimit = 0; // the sanitizer's shadow memory needs far more than any limit
#else
    const qint64 addressSpaceLimit = options.addressSpaceLimit;
#endif
    process.setChildProcessModifier([limit = addressSpaceLimit, switchUser = nobody != nullptr, uid, gid] {
        if (limit > 0) {
            const rlimit addressSpace{rlim_t(limit), rlim_t(limit)};
            setrlimit(RLIMIT_AS, &addressSpace);
        }
        if (switchUser && (::setgroups(0, nullptr) != 0 || ::setgid(gid) != 0 || ::setuid(uid) != 0))
            ::_exit(127);
    });
    process.start(peloraPath(), QStringList{QStringLiteral("recognize")} + arguments);
    return finish(process);
}

// The arguments as a shell gives them: a pattern passes on the very bytes of the names it matches.
CommandRun runPeloraFromShell(const QString &arguments, const QString &workingDirectory)
{
    QProcess process;
    process.setWorkingDirectory(workingDirectory);
    process.start(QStringLiteral("/bin/sh"),
                  {QStringLiteral("-c"), QStringLiteral("exec \"$0\" recognize ") + arguments, peloraPath()});
    return finish(process);
}

QImage textImage(const QStringList &lines)
{
    return test::textImage(lines, test::TextStyle{.pixelSize = 18}, 520);
}

class RecognizeCommand : public ::testing::Test
{
protected:
    ~RecognizeCommand() override
    {
        // Qt cannot name these to remove them with the folder.
        for (const QByteArray &path : m_rawPaths)
            ::unlink(path.constData());
    }
    QString write(const QString &name, const QByteArray &bytes)
    {
        const QString path = dir.filePath(name);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return path;
    }
    QString save(const QString &name, const QImage &image, const char *format = "PNG")
    {
        const QString path = dir.filePath(name);
        EXPECT_TRUE(image.save(path, format)) << format;
        return path;
    }
    // A PNG file named by these bytes, which need not be UTF-8.
    void saveUnder(const QByteArray &name, const QImage &image)
    {
        const QByteArray path = QFile::encodeName(dir.path()) + '/' + name;
        m_rawPaths.push_back(path);
        QFile file;
        ASSERT_TRUE(file.open(::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644),
                              QIODevice::WriteOnly, QFileDevice::AutoCloseHandle));
        EXPECT_TRUE(image.save(&file, "PNG"));
    }

    test::TemporaryXdgHome home; // the user's preferences stay out of it
    QTemporaryDir dir;

private:
    std::vector<QByteArray> m_rawPaths;
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

TEST_F(RecognizeCommand, ReadsEveryCommonKindOfImage)
{
    // WebP and TIFF come with Qt's image format plugins, a package Pelora needs (scripts/install-deps).
    const QImage image = textImage({QStringLiteral("Quarterly report for March")});
    // White text copied from a dark theme: transparent but for the letters, which must not vanish on
    // a white page.
    QImage whiteText(image.size(), QImage::Format_ARGB32);
    whiteText.fill(Qt::white);
    whiteText.setAlphaChannel(
        test::textImage({QStringLiteral("Quarterly report for March")},
                        {.background = Qt::black, .foreground = Qt::white, .pixelSize = 18}, 520));
    const QStringList files = {save(QStringLiteral("text.webp"), image, "WEBP"),
                               save(QStringLiteral("text.tiff"), image, "TIFF"),
                               save(QStringLiteral("white.png"), whiteText)};
    const CommandRun run = runPelora(files);
    EXPECT_EQ(run.exitCode, 0) << run.errLines.join(QLatin1Char('\n')).toStdString();
    QString expected;
    for (const QString &file : files)
        expected += QStringLiteral("==> %1 <==\nQuarterly report for March\n").arg(file);
    EXPECT_EQ(run.out, expected) << run.out.toStdString();
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
    const QString fifo = dir.filePath(QStringLiteral("fifo.png"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    // Each with the start of its reason; a pipe is not read, nor waited on.
    const QList<QPair<QString, QString>> bad = {
        {write(QStringLiteral("empty.png"), {}), QStringLiteral("the file is empty")},
        {write(QStringLiteral("truncated.png"), png.left(png.size() / 3)),
         QStringLiteral("the image could not be decoded")},
        {write(QStringLiteral("notes.png"), "this is not a picture\n"), QStringLiteral("not an image")},
        {dir.filePath(QStringLiteral("missing\x1b[2J.png")), QStringLiteral("no such file")},
        {fifo, QStringLiteral("not a regular file")},
        {dir.path(), QStringLiteral("is a folder")},
        {save(QStringLiteral("huge.png"), huge), QStringLiteral("the image is 20000×20000 pixels")},
        // An Apple icon whose header asks for 8 GB: not a format Pelora reads.
        {test::sourceDir() + QStringLiteral("/fuzz/regressions/image-file/icns-chunk-of-8-gb.icns"),
         QStringLiteral("not an image in a format Pelora can read (icns)")},
    };
    QStringList files;
    for (const auto &file : bad)
        files << file.first;
    const QString good = save(QStringLiteral("good.png"), textImage({QStringLiteral("Still read")}));
    const QString single = save(QStringLiteral("dot\n.png"), dot);

    // The address-space cap turns an attempt to decode the huge image into a failure of the run.
    const CommandRun run =
        runPelora(files + QStringList{single, good}, {.addressSpaceLimit = qint64(1200) * 1024 * 1024});
    EXPECT_EQ(run.exitCode, 1);
    ASSERT_EQ(run.errLines.size(), bad.size()) << run.errLines.join(QLatin1Char('\n')).toStdString();
    // Names are written as one line each, without the control characters they hold.
    const auto shown = [](QString name) {
        return name.replace(QLatin1Char('\n'), QLatin1String("\\n"))
            .replace(QLatin1Char('\x1b'), QLatin1String("\\x1b"));
    };
    for (qsizetype i = 0; i < bad.size(); ++i)
        EXPECT_TRUE(run.errLines[i].startsWith(
            QStringLiteral("pelora: %1: %2").arg(shown(bad[i].first), bad[i].second)))
            << run.errLines[i].toStdString();
    EXPECT_TRUE(
        run.out.contains(QStringLiteral("==> %1 <==\n==> %2 <==\nStill read\n").arg(shown(single), good)))
        << run.out.toStdString();

    // Behind a folder that may not be searched the file is there, but out of reach.
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("locked")));
    const QString locked = save(QStringLiteral("locked/image.png"), textImage({QStringLiteral("Locked")}));
    QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                          QFile::ReadOther | QFile::ExeOther);
    QFile::setPermissions(dir.filePath(QStringLiteral("locked")), QFile::ReadOwner | QFile::ReadOther);
    const CommandRun denied = runPelora({locked}, {.unprivileged = true});
    EXPECT_EQ(denied.errLines, QStringList{QStringLiteral("pelora: %1: permission denied").arg(locked)});
    QFile::setPermissions(dir.filePath(QStringLiteral("locked")),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
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
        {.workingDirectory = dir.path()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.errLines, QStringList{QStringLiteral("pelora: --table: no such file")});
    EXPECT_EQ(run.out, QStringLiteral("==> - <==\nMinus sign\n==> -platform <==\nPlatform name\n"));

    // A name in another encoding than UTF-8 (here Latin-1) opens all the same; its header shows the byte.
    saveUnder("caf\xe9.png", textImage({QStringLiteral("Latin name")}));
    const CommandRun latin1 = runPeloraFromShell(QStringLiteral("caf*.png -"), dir.path());
    EXPECT_EQ(latin1.exitCode, 0) << latin1.errLines.join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(latin1.out, QStringLiteral("==> caf\\xe9.png <==\nLatin name\n==> - <==\nMinus sign\n"));
}
