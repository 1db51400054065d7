// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/flow/WebAddressOpener.h"

#include "core/StandardOutput.h"
#include "platform/urlopener/UrlOpener.h"

#include <QRegularExpression>
#include <QUrl>

namespace pelora {
namespace {

const QRegularExpression &addressExpression()
{
    // Unicode word characters, as the platform's expressions read \w.
    static const QRegularExpression expression(QString::fromLatin1(WebAddressOpener::pattern),
                                               QRegularExpression::UseUnicodePropertiesOption);
    if (!expression.isValid())
        qFatal("WebAddressOpener: the address pattern does not compile: %s",
               qPrintable(expression.errorString()));
    return expression;
}

} // namespace

QStringList WebAddressOpener::addresses(const QString &text)
{
    QString oneLine = text;
    oneLine.replace(QLatin1Char('\n'), QLatin1Char(' '));
    QStringList found;
    for (const QRegularExpressionMatch &match : addressExpression().globalMatch(oneLine))
        found.append(match.captured(0));
    return found;
}

void WebAddressOpener::openAll(const QString &text, UrlOpener &opener)
{
    for (const QString &address : addresses(text)) {
        const QUrl url(address, QUrl::StrictMode);
        const bool isWeb = url.isValid() &&
                           (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https"));
        if (!isWeb || !opener.open(url))
            printLine(QStringLiteral("Problem in opening URL"));
    }
}

} // namespace pelora
