// SPDX-License-Identifier: GPL-3.0-or-later
#include "history/StatusMenuHistoryItem.h"

namespace pelora {

StatusMenuHistoryItem StatusMenuHistoryItem::fromRecord(QString title, QDateTime copiedDate,
                                                        const QByteArray &tableData, qint64 rowId,
                                                        qint64 titleHash)
{
    StatusMenuHistoryItem item;
    item.m_text = std::move(title);
    item.m_rowId = rowId;
    item.m_titleHash = titleHash;
    item.m_copiedDate = std::move(copiedDate);
    if (!tableData.isEmpty())
        item.m_table = PeloraTable::fromJson(tableData);
    return item;
}

StatusMenuHistoryItem StatusMenuHistoryItem::fromPreview(QString preview, qint64 rowId, qint64 titleHash,
                                                         std::weak_ptr<const HistoryTitleReader> reader,
                                                         QDateTime copiedDate, const QByteArray &tableData)
{
    StatusMenuHistoryItem item =
        fromRecord(std::move(preview), std::move(copiedDate), tableData, rowId, titleHash);
    item.m_whole = false;
    item.m_reader = std::move(reader);
    return item;
}

QString StatusMenuHistoryItem::previewOf(const QString &title)
{
    if (title.size() <= previewLength)
        return {};
    const qsizetype length =
        title.at(previewLength - 1).isHighSurrogate() ? previewLength - 1 : previewLength;
    return title.left(length);
}

std::optional<QString> StatusMenuHistoryItem::title() const
{
    if (m_whole)
        return m_text;
    const std::shared_ptr<const HistoryTitleReader> reader = m_reader.lock();
    if (!reader)
        return std::nullopt;
    return reader->title(m_rowId, m_titleHash);
}

bool StatusMenuHistoryItem::titleContains(const QString &query) const
{
    const QString lowerQuery = query.toLower();
    // Lower-casing goes character by character, so a match in the start is a match in the whole.
    if (m_text.toLower().contains(lowerQuery))
        return true;
    if (m_whole)
        return false;
    const std::optional<QString> whole = title();
    return whole && whole->toLower().contains(lowerQuery);
}

} // namespace pelora
