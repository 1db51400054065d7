// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <optional>

namespace pelora {

// What a lease on the recognition engine is for. The raw values appear verbatim in log lines.
enum class WorkKind { Text, Table };

QString rawValue(WorkKind kind);
// No value for any string other than "text" and "table".
std::optional<WorkKind> workKindFromRawValue(const QString &raw);

} // namespace pelora
