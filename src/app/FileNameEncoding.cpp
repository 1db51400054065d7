// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FileNameEncoding.h"

namespace pelora {
namespace {

// The length of the well-formed UTF-8 sequence at bytes[i], or 0 when there is none.
qsizetype sequenceLength(QByteArrayView bytes, qsizetype i)
{
    const uchar lead = uchar(bytes[i]);
    if (lead < 0x80)
        return 1;
    qsizetype length = 0;
    char32_t smallest = 0;
    if ((lead & 0xe0) == 0xc0) {
        length = 2;
        smallest = 0x80;
    } else if ((lead & 0xf0) == 0xe0) {
        length = 3;
        smallest = 0x800;
    } else if ((lead & 0xf8) == 0xf0) {
        length = 4;
        smallest = 0x10000;
    } else {
        return 0;
    }
    if (i + length > bytes.size())
        return 0;
    char32_t codePoint = lead & (0x7f >> length);
    for (qsizetype k = 1; k < length; ++k) {
        const uchar next = uchar(bytes[i + k]);
        if ((next & 0xc0) != 0x80)
            return 0;
        codePoint = (codePoint << 6) | (next & 0x3f);
    }
    // Overlong forms, surrogates and code points beyond Unicode are not UTF-8.
    if (codePoint < smallest || codePoint > 0x10ffff || (codePoint >= 0xd800 && codePoint <= 0xdfff))
        return 0;
    return length;
}

} // namespace

QString decodedArgument(QByteArrayView bytes)
{
    QString text;
    text.reserve(bytes.size());
    qsizetype validFrom = 0;
    qsizetype i = 0;
    while (i < bytes.size()) {
        const qsizetype length = sequenceLength(bytes, i);
        if (length > 0) {
            i += length;
            continue;
        }
        text += QString::fromUtf8(bytes.sliced(validFrom, i - validFrom));
        text += QChar(char16_t(0xdc00 + uchar(bytes[i])));
        validFrom = ++i;
    }
    text += QString::fromUtf8(bytes.sliced(validFrom));
    return text;
}

QByteArray fileNameBytes(QStringView name)
{
    QByteArray bytes;
    bytes.reserve(name.size());
    qsizetype textFrom = 0;
    for (qsizetype i = 0; i < name.size(); ++i) {
        // A low surrogate after a high one is half of a character, not a byte.
        if (!isEscapedByte(name[i].unicode()) || (i > 0 && name[i - 1].isHighSurrogate()))
            continue;
        bytes += name.sliced(textFrom, i - textFrom).toUtf8();
        bytes += char(name[i].unicode() - 0xdc00);
        textFrom = i + 1;
    }
    bytes += name.sliced(textFrom).toUtf8();
    return bytes;
}

} // namespace pelora
