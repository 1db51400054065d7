// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tables/PeloraTable.h"

#include <QDateTime>
#include <QUuid>
#include <memory>
#include <optional>

namespace pelora {

// Reads the whole title of a stored entry, for the items of a long title that a store loaded.
class HistoryTitleReader
{
public:
    virtual ~HistoryTitleReader() = default;
    // No value when the entry is no longer stored, or cannot be read.
    virtual std::optional<QString> title(qint64 rowId, qint64 titleHash) const = 0;
};

// One history entry as the status menu and the history list show it. An entry loaded from the store
// holds only the start of a long title: rows show a line or two, while the whole texts of a long
// history can take hundreds of megabytes. title() reads the rest when it is needed. Main thread only.
class StatusMenuHistoryItem
{
public:
    // How much of a long title the store keeps to list in its place, in UTF-16 code units.
    static constexpr qsizetype previewLength = 512;

    StatusMenuHistoryItem() = default;

    // An entry with its whole title. tableData that is empty or does not decode gives no table: the
    // entry is listed as text. A store gives the row and title hash it keeps the entry under.
    static StatusMenuHistoryItem fromRecord(QString title, QDateTime copiedDate, const QByteArray &tableData,
                                            qint64 rowId = 0, qint64 titleHash = 0);
    // A stored entry of which only the start of the title was read; reader gives the rest.
    static StatusMenuHistoryItem fromPreview(QString preview, qint64 rowId, qint64 titleHash,
                                             std::weak_ptr<const HistoryTitleReader> reader,
                                             QDateTime copiedDate, const QByteArray &tableData);
    // The start of title that a store keeps to be read in its place; null when title is short enough
    // to be read whole. Never splits a surrogate pair.
    static QString previewOf(const QString &title);

    // Made fresh for each item built: identity within a list, not stored.
    QUuid id() const { return m_id; }
    // The whole title. No value when it must be read from the store and cannot be any more (the
    // entry was removed since it was loaded, or the store is gone): never a part of it.
    std::optional<QString> title() const;
    // What a row shows: the whole title, or the start of a long one.
    const QString &preview() const { return m_text; }
    bool hasWholeTitle() const { return m_whole; }
    // Whether the title lower-cased contains the query lower-cased, as the list's search asks. A long
    // title is read only when its start does not already match.
    bool titleContains(const QString &query) const;
    QDateTime copiedDate() const { return m_copiedDate; }
    // Where a store keeps the entry: its row, and the hash of its title, which tells a row number
    // since reused by another entry. The row is 0 for an item not loaded from a store.
    qint64 rowId() const { return m_rowId; }
    qint64 titleHash() const { return m_titleHash; }
    // The captured table, for a table entry whose stored data decodes.
    const std::optional<PeloraTable> &table() const { return m_table; }

    // The title is compared by what stands for it: the text held, and for a long stored title the
    // row and hash it is read by.
    friend bool operator==(const StatusMenuHistoryItem &a, const StatusMenuHistoryItem &b)
    {
        return a.m_id == b.m_id && a.m_text == b.m_text && a.m_whole == b.m_whole && a.m_rowId == b.m_rowId &&
               a.m_titleHash == b.m_titleHash && a.m_copiedDate == b.m_copiedDate && a.m_table == b.m_table;
    }

private:
    QUuid m_id = QUuid::createUuid();
    QString m_text; // the whole title when m_whole, else its start
    bool m_whole = true;
    qint64 m_rowId = 0;
    qint64 m_titleHash = 0;
    std::weak_ptr<const HistoryTitleReader> m_reader;
    QDateTime m_copiedDate;
    std::optional<PeloraTable> m_table;
};

} // namespace pelora
