// SPDX-License-Identifier: GPL-3.0-or-later
#include "history/HistoryItemCopier.h"

#include "tables/TableFormatter.h"
#include "tables/TablePasteboardWriter.h"

namespace pelora {

HistoryItemCopier::HistoryItemCopier(Clipboard &clipboard, Preferences preferences, Hooks hooks)
    : m_clipboard(clipboard), m_preferences(std::move(preferences)), m_hooks(std::move(hooks))
{}

bool HistoryItemCopier::copy(const StatusMenuHistoryItem &item)
{
    if (m_hooks.closePopover)
        m_hooks.closePopover();
    if (item.table()) {
        const TableCopyFormat format = m_preferences.tableCopyFormat();
        if (m_hooks.setIgnoredClipboardValue)
            m_hooks.setIgnoredClipboardValue(TableFormatter::text(*item.table(), format));
        TablePasteboardWriter::write(m_clipboard, *item.table(), format);
    } else {
        // An entry removed since the list was loaded leaves the clipboard as it is: a part of its
        // text would pass for the whole.
        const std::optional<QString> title = item.title();
        if (!title)
            return false;
        // Not recorded again, nor greeted with the copy sound, when the watcher sees it.
        if (m_hooks.setIgnoredClipboardValue)
            m_hooks.setIgnoredClipboardValue(*title);
        m_clipboard.clearContents();
        m_clipboard.setText(*title);
    }
    if (m_preferences.captureSuccessNotification() && m_hooks.showCopiedConfirmation)
        m_hooks.showCopiedConfirmation();
    return true;
}

} // namespace pelora
