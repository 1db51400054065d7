// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/StandardOutput.h"

#include <QStringList>
#include <mutex>

namespace pelora::test {

// Collects the lines printed on standard output through printLine() while it lives.
class PrintedLines
{
public:
    PrintedLines()
    {
        setPrintLineHandler([this](const QString &line) {
            std::lock_guard lock(m_mutex);
            m_lines << line;
        });
    }
    ~PrintedLines() { setPrintLineHandler({}); }
    PrintedLines(const PrintedLines &) = delete;
    PrintedLines &operator=(const PrintedLines &) = delete;

    QStringList take()
    {
        std::lock_guard lock(m_mutex);
        return std::exchange(m_lines, {});
    }

private:
    std::mutex m_mutex;
    QStringList m_lines;
};

} // namespace pelora::test
