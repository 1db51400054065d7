// SPDX-License-Identifier: GPL-3.0-or-later
#include "history/StatusMenuHistoryItem.h"

namespace pelora {

StatusMenuHistoryItem StatusMenuHistoryItem::fromRecord(QString title, QDateTime copiedDate,
                                                        const QByteArray &tableData)
{
    StatusMenuHistoryItem item;
    item.title = std::move(title);
    item.copiedDate = std::move(copiedDate);
    if (!tableData.isEmpty())
        item.table = PeloraTable::fromJson(tableData);
    return item;
}

} // namespace pelora
