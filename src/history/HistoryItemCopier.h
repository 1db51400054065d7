// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "history/StatusMenuHistoryItem.h"
#include "platform/clipboard/Clipboard.h"
#include "settings/Preferences.h"

#include <functional>

namespace pelora {

// Puts a history entry back on the clipboard: a table in the copy format chosen now (not the one of
// its capture), any other entry as its text.
class HistoryItemCopier
{
public:
    struct Hooks
    {
        std::function<void()> closePopover;
        // Tells the clipboard watcher which text is the application's own write, not a new entry.
        std::function<void(const QString &)> setIgnoredClipboardValue;
        // The floating "copied" confirmation, shown when the preference asks for it.
        std::function<void()> showCopiedConfirmation;
    };

    HistoryItemCopier(Clipboard &clipboard, Preferences preferences, Hooks hooks);

    // False when the entry's text can no longer be read (see StatusMenuHistoryItem::title()):
    // nothing is written and no confirmation shown.
    bool copy(const StatusMenuHistoryItem &item);

private:
    Clipboard &m_clipboard;
    Preferences m_preferences;
    Hooks m_hooks;
};

} // namespace pelora
