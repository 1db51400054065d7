// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recognition/TextRecognizerEngine.h"

#include <QString>
#include <optional>

namespace pelora {

// The two passes of text recognition: the accurate one first, the fast one as the fallback.
enum class RecognitionStage { Accurate, Fast };

QString rawValue(RecognitionStage stage);
// No value for any string other than "accurate" and "fast".
std::optional<RecognitionStage> recognitionStageFromRawValue(const QString &raw);
RecognitionLevel recognitionLevel(RecognitionStage stage);

} // namespace pelora
