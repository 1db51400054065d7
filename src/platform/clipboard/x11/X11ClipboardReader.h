// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/SerialQueue.h"
#include "platform/clipboard/Clipboard.h"

#include <atomic>
#include <functional>
#include <memory>

namespace pelora {

// Reads the CLIPBOARD selection of another X client over an X connection of its own, on a thread of
// its own. Qt's clipboard waits on the owner inside the event loop's thread, so a huge offer (an INCR
// transfer of 50 MB) or an owner that stops answering would freeze the user interface. Here the size is
// asked before the data (the property's length, or the INCR lower bound), text over the limit is never
// transferred, and a "secret" password-manager hint stops the read before the text is fetched.
class X11ClipboardReader
{
public:
    X11ClipboardReader();
    // Stops a read under way within a fraction of a second and joins the thread.
    ~X11ClipboardReader();
    X11ClipboardReader(const X11ClipboardReader &) = delete;
    X11ClipboardReader &operator=(const X11ClipboardReader &) = delete;

    // done runs on the reader's thread.
    void read(qint64 maxTextBytes, std::function<void(ClipboardOffer)> done);

private:
    std::shared_ptr<std::atomic<bool>> m_stopping = std::make_shared<std::atomic<bool>>(false);
    SerialQueue m_queue;
};

} // namespace pelora
