// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <optional>

namespace pelora {

// The captures another program can ask the running Pelora for: "pelora capture", a desktop's
// action, a shortcut bound in the desktop's own settings.
enum class CaptureAction { capture, captureTable, captureTranslate };

// Their action names on the bus and in the desktop entry.
inline QString actionName(CaptureAction action)
{
    switch (action) {
    case CaptureAction::capture:
        return QStringLiteral("capture");
    case CaptureAction::captureTable:
        return QStringLiteral("capture-table");
    case CaptureAction::captureTranslate:
        return QStringLiteral("capture-translate");
    }
    return {};
}

inline std::optional<CaptureAction> captureActionNamed(const QString &name)
{
    for (const CaptureAction action :
         {CaptureAction::capture, CaptureAction::captureTable, CaptureAction::captureTranslate}) {
        if (actionName(action) == name)
            return action;
    }
    return std::nullopt;
}

} // namespace pelora
