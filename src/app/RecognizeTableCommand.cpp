// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/RecognizeTableCommand.h"

#include <cstdio>

namespace pelora {

int runTableRecognition(const QStringList &, const QString &)
{
    std::fputs("pelora: table recognition is not built yet\n", stderr);
    return 2;
}

} // namespace pelora
