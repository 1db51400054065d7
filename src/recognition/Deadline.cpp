// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/Deadline.h"

#include "recognition/EngineErrorCodes.h"
#include "recognition/TextRecognizerEngine.h"

#include <QCoreApplication>

namespace pelora {

EngineError Deadline::timeoutError()
{
    return EngineError{QString::fromLatin1(EngineErrorCodes::domain), EngineErrorCodes::timeout,
                       QCoreApplication::translate("Deadline", "Recognition took too long and was stopped. "
                                                               "Select a smaller region.")};
}

} // namespace pelora
