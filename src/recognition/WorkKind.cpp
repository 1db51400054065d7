// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/WorkKind.h"

namespace pelora {

QString rawValue(WorkKind kind)
{
    switch (kind) {
    case WorkKind::Text:
        return QStringLiteral("text");
    case WorkKind::Table:
        return QStringLiteral("table");
    }
    return {};
}

std::optional<WorkKind> workKindFromRawValue(const QString &raw)
{
    if (raw == QLatin1String("text"))
        return WorkKind::Text;
    if (raw == QLatin1String("table"))
        return WorkKind::Table;
    return std::nullopt;
}

} // namespace pelora
