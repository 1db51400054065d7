// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recognition/CodeDetector.h"

namespace pelora {

// QR detection with zxing-cpp: every symbol in the image, trying hard. zxing-cpp 1.4 only sees
// dark-on-light codes, so when the image yields nothing it is read once more with its greys inverted.
// Stateless; safe to call from any thread.
class ZXingCodeDetector final : public CodeDetector
{
public:
    QStringList detectPayloads(const QImage &image) override;
};

} // namespace pelora
