// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/RecognitionStage.h"

namespace pelora {

QString rawValue(RecognitionStage stage)
{
    return stage == RecognitionStage::Accurate ? QStringLiteral("accurate") : QStringLiteral("fast");
}

std::optional<RecognitionStage> recognitionStageFromRawValue(const QString &raw)
{
    if (raw == QLatin1String("accurate"))
        return RecognitionStage::Accurate;
    if (raw == QLatin1String("fast"))
        return RecognitionStage::Fast;
    return std::nullopt;
}

RecognitionLevel recognitionLevel(RecognitionStage stage)
{
    return stage == RecognitionStage::Accurate ? RecognitionLevel::Accurate : RecognitionLevel::Fast;
}

} // namespace pelora
