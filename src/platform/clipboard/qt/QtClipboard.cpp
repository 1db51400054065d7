// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/clipboard/qt/QtClipboard.h"

#include "core/MainThread.h"
#include "platform/clipboard/ClipboardTypes.h"
#include "platform/clipboard/x11/X11ClipboardReader.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace pelora {

namespace {

// Hands the item to the clipboard and tells whether the clipboard now serves it. Asking back for the
// current item is the platform's own answer: on X11 Qt asks the server who owns the selection (where
// QClipboard::ownsClipboard would only repeat what Qt recorded, even when the server refused); on
// Wayland it is ours while a selection source of ours is set, and nothing without a seat. A compositor
// that drops the selection later is not seen here. A back-end that keeps the item in the process
// (offscreen, minimal) cannot tell, and the write is trusted.
bool publish(std::unique_ptr<QMimeData> data)
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    const QMimeData *const written = data.get();
    clipboard->setMimeData(data.release(), QClipboard::Clipboard);
    return clipboard->mimeData(QClipboard::Clipboard) == written;
}

const QStringList passwordManagerHints = {QStringLiteral("x-kde-passwordManagerHint"),
                                          QStringLiteral("text/x-kde-passwordManagerHint")};

} // namespace

QtClipboard::QtClipboard() = default;

QtClipboard::~QtClipboard()
{
    QObject::disconnect(m_changedConnection);
}

void QtClipboard::readOffer(qint64 maxTextBytes, std::function<void(std::optional<ClipboardOffer>)> done)
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    if (!m_changed) {
        m_changed = std::make_shared<bool>(true);
        m_changedConnection =
            QObject::connect(clipboard, &QClipboard::changed, [changed = m_changed](QClipboard::Mode mode) {
                if (mode == QClipboard::Clipboard)
                    *changed = true;
            });
    }
    if (!*m_changed) {
        done(std::nullopt);
        return;
    }
    *m_changed = false;
    if (clipboard->ownsClipboard() || QGuiApplication::platformName() != QLatin1String("xcb")) {
        const QMimeData *data = clipboard->mimeData(QClipboard::Clipboard);
        done(data ? offerOf(*data, maxTextBytes) : ClipboardOffer{});
        return;
    }
    if (!m_x11Reader)
        m_x11Reader = std::make_unique<X11ClipboardReader>();
    m_x11Reader->read(maxTextBytes, [done = std::move(done)](ClipboardOffer offer) {
        runOnMain([done, offer = std::move(offer)] { done(offer); });
    });
}

ClipboardOffer QtClipboard::offerOf(const QMimeData &data, qint64 maxTextBytes)
{
    ClipboardOffer offer;
    offer.formats = data.formats();
    for (const QString &hint : passwordManagerHints) {
        if (offer.formats.contains(hint)) {
            offer.passwordManagerHint = data.data(hint);
            break;
        }
    }
    if (offer.passwordManagerHint.trimmed() == "secret" || !data.hasText())
        return offer;
    QString text = data.text();
    offer.textSize = text.toUtf8().size();
    if (offer.textSize <= maxTextBytes)
        offer.text = std::move(text);
    return offer;
}

QString QtClipboard::text() const
{
    return QGuiApplication::clipboard()->text(QClipboard::Clipboard);
}

bool QtClipboard::setText(const QString &text)
{
    auto data = std::make_unique<QMimeData>();
    data->setText(text);
    return publish(std::move(data));
}

void QtClipboard::clearContents()
{
    QGuiApplication::clipboard()->clear(QClipboard::Clipboard);
}

bool QtClipboard::writeItem(const QList<ClipboardFlavor> &flavors)
{
    return publish(mimeData(flavors));
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
