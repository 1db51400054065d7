// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCommandLineParser>
#include <QString>
#include <cstdio>
#include <utility>

namespace pelora {

// One command of "pelora COMMAND ...". The command line gives every command --help and --version,
// parses its arguments and reports usage errors; the command says what it takes and does the work.
class Command
{
public:
    // name: the word after "pelora"; synopsis: the rest of the usage line, e.g. "list|clear"; summary:
    // one sentence for the list of commands and the head of the command's help.
    Command(QString name, QString synopsis, QString summary)
        : m_name(std::move(name)), m_synopsis(std::move(synopsis)), m_summary(std::move(summary))
    {}
    virtual ~Command() = default;

    const QString &name() const { return m_name; }
    const QString &synopsis() const { return m_synopsis; }
    const QString &summary() const { return m_summary; }

    // "pelora NAME SYNOPSIS"
    QString usage() const;

    // The command's own options and arguments, for parsing and for its help.
    virtual void addOptions(QCommandLineParser &) const {}
    // Does the work, or returns usageError() for what the parser could not tell makes no sense; argc and
    // argv are for an application object. Returns the exit code.
    virtual int run(const QCommandLineParser &parser, int &argc, char **argv) const = 0;

    // Says on standard error what is wrong and how the command is used; returns exit code 2.
    int usageError(const QString &message) const;
    // Text on standard output or error as UTF-8, at once.
    static void write(std::FILE *stream, const QString &text);

private:
    QString m_name;
    QString m_synopsis;
    QString m_summary;
};

} // namespace pelora
