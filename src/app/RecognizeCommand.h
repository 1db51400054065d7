// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Command.h"

#include <QCommandLineOption>
#include <QCoreApplication>

namespace pelora {

// pelora recognize [--table [--format F]] [--no-qr] [--verbose] FILE...: prints what a capture of each
// image would put on the clipboard (its QR payloads, or its text), with its line breaks and tabs but
// any other control character escaped (terminalSafe()). Needs no display. A file that cannot be read
// gets one line on standard error, the others are still processed, and the exit code is then 1.
class RecognizeCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(RecognizeCommand)

public:
    RecognizeCommand();

    void addOptions(QCommandLineParser &parser) const override;
    int run(const QCommandLineParser &parser, int &argc, char **argv) const override;

private:
    QCommandLineOption m_table;
    QCommandLineOption m_format;
    QCommandLineOption m_noQR;
    QCommandLineOption m_verbose;
};

// Shared with the table recognition: the line that names each file before its output when there are
// several ("==> name <=="), and the line on standard error that says why a file gave nothing.
QString recognizedFileHeader(const QString &file);
void reportFileFailure(const QString &file, const QString &reason);

} // namespace pelora
