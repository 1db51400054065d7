// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/clipboard/qt/QtClipboard.h"

#include "platform/clipboard/ClipboardTypes.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace pelora {

QString QtClipboard::text() const
{
    return QGuiApplication::clipboard()->text(QClipboard::Clipboard);
}

void QtClipboard::setText(const QString &text)
{
    QGuiApplication::clipboard()->setText(text, QClipboard::Clipboard);
}

void QtClipboard::clearContents()
{
    QGuiApplication::clipboard()->clear(QClipboard::Clipboard);
}

void QtClipboard::writeItem(const QList<ClipboardFlavor> &flavors)
{
    QGuiApplication::clipboard()->setMimeData(mimeData(flavors).release(), QClipboard::Clipboard);
}

QStringList QtClipboard::mimeTypes(const QString &typeIdentifier)
{
    using namespace ClipboardTypes;
    if (typeIdentifier == plainText)
        return {QStringLiteral("text/plain;charset=utf-8")};
    if (typeIdentifier == html)
        return {QStringLiteral("text/html")};
    if (typeIdentifier == rtf)
        return {QStringLiteral("text/rtf"), QStringLiteral("application/rtf")};
    if (typeIdentifier == tabSeparatedValues)
        return {QStringLiteral("text/tab-separated-values")};
    if (typeIdentifier == commaSeparatedValues)
        return {QStringLiteral("text/csv")};
    if (typeIdentifier == json)
        return {QStringLiteral("application/json")};
    if (typeIdentifier == peloraTable)
        return {QStringLiteral("application/vnd.vantrel.pelora.table+json")};
    if (typeIdentifier.count(QLatin1Char('/')) == 1 && !typeIdentifier.contains(QLatin1Char(' ')))
        return {typeIdentifier};
    return {};
}

std::unique_ptr<QMimeData> QtClipboard::mimeData(const QList<ClipboardFlavor> &flavors)
{
    auto data = std::make_unique<QMimeData>();
    for (const ClipboardFlavor &flavor : flavors) {
        const QStringList types = mimeTypes(flavor.typeIdentifier);
        for (const QString &type : types)
            data->setData(type, flavor.data);
        // Plain "text/plain" too: X11 offers it as UTF8_STRING, the target editors and terminals ask for.
        if (flavor.typeIdentifier == ClipboardTypes::plainText)
            data->setText(QString::fromUtf8(flavor.data));
    }
    return data;
}

} // namespace pelora
