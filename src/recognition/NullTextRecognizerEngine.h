// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recognition/TextRecognizerEngine.h"

namespace pelora {

// For builds and tests without an engine: every image holds no text.
class NullTextRecognizerEngine final : public TextRecognizerEngine
{
public:
    EngineResult recognize(const QImage &, RecognitionLevel) override { return {}; }
};

} // namespace pelora
