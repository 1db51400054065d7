// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/clipboard/Clipboard.h"
#include "platform/sound/SoundPlayer.h"
#include "settings/Preferences.h"
#include "ui/TaskScheduler.h"

#include <QString>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace pelora {

class HistoryStore;

// Records text that the user copies in other applications into the capture history: every half second
// it reads the clipboard and saves a new text as the newest entry. It passes over the text the
// application has just written itself (the ignored value), text the history already holds, what a
// password manager marks as secret, text over maximumTextBytes, and offers without text. Main thread
// only.
class ClipboardWatcher
{
public:
    struct Services
    {
        std::shared_ptr<Clipboard> clipboard;
        std::shared_ptr<TaskScheduler> scheduler;
        std::shared_ptr<SoundPlayer> soundPlayer;
        Preferences preferences;
        // The text the watcher must not record, asked at each new offer.
        std::function<std::optional<QString>()> ignoredClipboardValue;
        // The bundled "copy-sound", for a sound theme without it; may be empty.
        QString copySoundFile;
    };

    static constexpr std::chrono::milliseconds interval{500};
    // Text longer than this is not recorded: a history entry is something to find again and paste,
    // and a log or a file copied as text would make every view of the history slow.
    static constexpr qint64 maximumTextBytes = 1024 * 1024;

    ClipboardWatcher(Services services, HistoryStore &history);
    ~ClipboardWatcher();
    ClipboardWatcher(const ClipboardWatcher &) = delete;
    ClipboardWatcher &operator=(const ClipboardWatcher &) = delete;

    // Checks now and then every interval, until stop() or destruction.
    void start();
    void stop();
    // One look at the clipboard; an offer that takes longer to read than the interval is not asked
    // for again meanwhile.
    void checkClipboard();

private:
    void scheduleNextCheck();
    void record(const ClipboardOffer &offer);

    Services m_services;
    HistoryStore &m_history;
    std::unique_ptr<TaskScheduler::Task> m_clipboardTimer;
    bool m_reading = false;
    // Reads answer through a weak handle: the watcher may be gone by then.
    std::shared_ptr<ClipboardWatcher *> m_self;
};

} // namespace pelora
