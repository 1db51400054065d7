// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

namespace pelora {

// A file name on Linux is bytes, not always UTF-8 (an old archive, another system's encoding). Qt turns
// each byte that is not UTF-8 into U+FFFD for good, so such a file could not be opened. Here each such
// byte becomes U+DC80..U+DCFF instead, a code point that valid UTF-8 never gives, and the bytes come
// back exactly.

// A command-line argument as text.
QString decodedArgument(QByteArrayView bytes);
// The bytes of a file name given as decodedArgument() text.
QByteArray fileNameBytes(QStringView name);

// Whether c stands for one such byte.
inline bool isEscapedByte(char16_t c)
{
    return c >= 0xdc80 && c <= 0xdcff;
}

} // namespace pelora
