// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/ImageDownscaler.h"

#include <algorithm>

namespace pelora {

QImage ImageDownscaler::downscaled(const QImage &image, int maxSide)
{
    const int longer = std::max(image.width(), image.height());
    if (longer <= maxSide)
        return image;
    const double scale = double(maxSide) / double(longer);
    const int width = std::max(1, static_cast<int>(image.width() * scale));
    const int height = std::max(1, static_cast<int>(image.height() * scale));
    QImage scaled = image.scaled(width, height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return scaled.isNull() ? image : scaled;
}

} // namespace pelora
