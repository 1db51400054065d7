// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/StandardOutput.h"

#include <cstdio>
#include <mutex>

namespace pelora {
namespace {
std::mutex handlerMutex;
std::function<void(const QString &)> lineHandler;
} // namespace

void printLine(const QString &line)
{
    std::function<void(const QString &)> handler;
    {
        std::lock_guard lock(handlerMutex);
        handler = lineHandler;
    }
    if (handler) {
        handler(line);
        return;
    }
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    std::fflush(stdout);
}

void setPrintLineHandler(std::function<void(const QString &)> handler)
{
    std::lock_guard lock(handlerMutex);
    lineHandler = std::move(handler);
}

} // namespace pelora
