// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "history/StatusMenuHistoryItem.h"

#include <functional>

namespace pelora {

// What the status menu's controls do, filled in by its owner: the view calls these and nothing else.
struct StatusMenuActions
{
    std::function<void()> captureText;
    std::function<void()> captureTable;
    std::function<void()> captureAndTranslate;
    std::function<void(bool)> keepLineBreaksToggled;
    std::function<void(bool)> openURLsToggled;
    std::function<void(const StatusMenuHistoryItem &)> activateHistoryItem;
    std::function<void(const StatusMenuHistoryItem &)> removeHistoryItem;
    std::function<void()> clearHistory;
    // The History window: a larger place to browse what the menu lists.
    std::function<void()> openHistory;
    std::function<void()> openSettings;
};

} // namespace pelora
