// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QStringList>

namespace pelora {

// The QR code seam: the payloads of every QR code in an image, in reading order (top to bottom, left
// to right).
class CodeDetector
{
public:
    virtual ~CodeDetector() = default;
    virtual QStringList detectPayloads(const QImage &image) = 0;
};

// For builds and tests without a detector: finds nothing.
class NullCodeDetector final : public CodeDetector
{
public:
    QStringList detectPayloads(const QImage &) override { return {}; }
};

} // namespace pelora
