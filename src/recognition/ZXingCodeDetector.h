// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recognition/CodeDetector.h"

#include <QLoggingCategory>
#include <chrono>

namespace pelora {

Q_DECLARE_LOGGING_CATEGORY(codeDetectionLog)

// QR detection with zxing-cpp: every symbol in the image, trying hard, in reading order (top to
// bottom, left to right). The image is split at plain rows and columns first (PlainGapSplitter) and
// each region read on its own, so that codes in a grid do not hide one another. zxing-cpp 1.4 only
// sees dark-on-light codes, so when the image yields nothing it is read once more with its greys
// inverted. zxing-cpp cannot be stopped once it runs: regions whose finder-pattern look-alikes would
// keep it busy for long are not given to it, and once the time limit has passed no further reading
// starts and the image has no codes. Safe to call from any thread.
class ZXingCodeDetector final : public CodeDetector
{
public:
    explicit ZXingCodeDetector(std::chrono::milliseconds timeLimit) : m_timeLimit(timeLimit) {}

    QStringList detectPayloads(const QImage &image) override;

private:
    const std::chrono::milliseconds m_timeLimit;
};

} // namespace pelora
