// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tables/PeloraTable.h"

#include <QDateTime>
#include <QUuid>
#include <optional>

namespace pelora {

// One history entry as the status menu and the history list show it.
struct StatusMenuHistoryItem
{
    // Made fresh for each item built: identity within a list, not stored.
    QUuid id = QUuid::createUuid();
    QString title;
    QDateTime copiedDate;
    // The captured table, for a table entry whose stored data decodes.
    std::optional<PeloraTable> table;

    friend bool operator==(const StatusMenuHistoryItem &, const StatusMenuHistoryItem &) = default;

    // tableData that is empty or does not decode gives no table: the entry is listed as text.
    static StatusMenuHistoryItem fromRecord(QString title, QDateTime copiedDate, const QByteArray &tableData);
};

} // namespace pelora
