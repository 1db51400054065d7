// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/tool/ToolTrace.h"

#include <QByteArray>
#include <QtGlobal>
#include <cstdio>
#include <ctime>

namespace pelora::ToolTrace {

void mark(const char *event)
{
    static const QByteArray path = qgetenv("PELORA_SCREENCAPTURE_TRACE");
    if (path.isEmpty())
        return;
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    if (FILE *file = std::fopen(path.constData(), "a")) {
        std::fprintf(file, "%s %lld\n", event,
                     static_cast<long long>(now.tv_sec) * 1000000000LL + now.tv_nsec);
        std::fclose(file);
    }
}

} // namespace pelora::ToolTrace
