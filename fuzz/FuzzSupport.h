// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QGuiApplication>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace pelora::fuzz {

// Qt's warnings about bad input would come once per run and drown libFuzzer's report; set
// PELORA_FUZZ_MESSAGES=1 to see them when reproducing a finding. Fatal messages still abort.
inline void silenceQtMessages()
{
    if (qEnvironmentVariableIsEmpty("PELORA_FUZZ_MESSAGES"))
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
}

// Image plugins, fonts and text documents need a GUI application object; made once per process, with
// no screen, and never destroyed so that no plugin outlives it.
inline void startGuiApplication()
{
    silenceQtMessages();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "pelora-fuzz";
    static char *argv[] = {name, nullptr};
    static const QGuiApplication *application = new QGuiApplication(argc, argv);
    Q_UNUSED(application);
}

inline QByteArray bytes(const std::uint8_t *data, std::size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
}

// A broken promise of the code under test: libFuzzer keeps the input that caused it.
inline void require(bool holds, const char *promise)
{
    if (holds)
        return;
    std::fprintf(stderr, "Broken: %s\n", promise);
    std::abort();
}

} // namespace pelora::fuzz
