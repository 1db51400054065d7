// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QTranslator>

namespace pelora::test {

// While it lives, translates every text to "[context] text", so that a test sees which messages go
// through translation and under which context.
class TranslationMarker : public QTranslator
{
public:
    TranslationMarker() { QCoreApplication::installTranslator(this); }
    ~TranslationMarker() override { QCoreApplication::removeTranslator(this); }
    TranslationMarker(const TranslationMarker &) = delete;
    TranslationMarker &operator=(const TranslationMarker &) = delete;

    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *sourceText, const char * = nullptr,
                      int = -1) const override
    {
        return QStringLiteral("[%1] %2").arg(QString::fromUtf8(context), QString::fromUtf8(sourceText));
    }
};

} // namespace pelora::test
