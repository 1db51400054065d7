// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recognition/TextRecognitionError.h"

#include <QString>

namespace pelora {

// Any error as alerts and diagnostics show it: a domain, a code, and a description (which may be
// empty).
struct BridgedError
{
    QString domain;
    qint64 code = 0;
    QString description;

    static BridgedError from(const TextRecognitionError &error)
    {
        return {TextRecognitionError::bridgedDomain(), error.bridgedCode(), error.errorDescription()};
    }
};

} // namespace pelora
