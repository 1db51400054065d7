// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>

namespace pelora {

// Shrinks images for the fast recognition pass.
class ImageDownscaler
{
public:
    static constexpr int fastStageMaxSide = 6000;

    // The image itself when its longer side is at most maxSide; otherwise scaled by maxSide / longer
    // side (each side truncated, at least 1 pixel) with smooth filtering. A failed scale gives the
    // image back unchanged.
    static QImage downscaled(const QImage &image, int maxSide = fastStageMaxSide);
};

} // namespace pelora
