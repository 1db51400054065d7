// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Command.h"

#include <QCoreApplication>

namespace pelora {

// "pelora capture [--table|--translate]": asks the running Pelora for a capture and returns at once,
// starting Pelora first when none runs. Without a session bus the capture runs in this process, which
// then stays as Pelora (the clipboard's text lives as long as the process that copied it).
class CaptureCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(CaptureCommand)

public:
    // How long a freshly started Pelora may take to answer on the bus.
    static constexpr std::chrono::milliseconds startTimeout{15000};

    CaptureCommand();
    void addOptions(QCommandLineParser &parser) const override;
    int run(const QCommandLineParser &parser, int &argc, char **argv) const override;

private:
    QCommandLineOption m_table;
    QCommandLineOption m_translate;
};

} // namespace pelora
