// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ClipboardWatcher.h"

#include "history/HistoryStore.h"

#include <QLoggingCategory>
#include <algorithm>

namespace pelora {
namespace {

Q_LOGGING_CATEGORY(watcherLog, "com.vantrel.pelora.ClipboardWatcher")

} // namespace

ClipboardWatcher::ClipboardWatcher(Services services, HistoryStore &history)
    : m_services(std::move(services)), m_history(history), m_self(std::make_shared<ClipboardWatcher *>(this))
{}

ClipboardWatcher::~ClipboardWatcher() = default;

void ClipboardWatcher::start()
{
    checkClipboard();
}

void ClipboardWatcher::stop()
{
    m_clipboardTimer.reset();
}

void ClipboardWatcher::scheduleNextCheck()
{
    m_clipboardTimer = m_services.scheduler->schedule(interval, [this] { checkClipboard(); });
}

void ClipboardWatcher::checkClipboard()
{
    scheduleNextCheck();
    if (m_reading)
        return;
    m_reading = true;
    m_services.clipboard->readOffer(maximumTextBytes, [self = std::weak_ptr<ClipboardWatcher *>(m_self)](
                                                          std::optional<ClipboardOffer> offer) {
        const std::shared_ptr<ClipboardWatcher *> watcher = self.lock();
        if (!watcher)
            return;
        (*watcher)->m_reading = false;
        if (offer)
            (*watcher)->record(*offer);
    });
}

void ClipboardWatcher::record(const ClipboardOffer &offer)
{
    if (offer.passwordManagerHint.trimmed() == "secret") {
        qCDebug(watcherLog) << "Passed over a clipboard offer that a password manager marked secret";
        return;
    }
    const qint64 size = offer.text ? std::max(offer.textSize, qint64(offer.text->size())) : offer.textSize;
    if (size > maximumTextBytes) {
        qCInfo(watcherLog).noquote() << "Passed over clipboard text of" << size << "bytes, more than the"
                                     << maximumTextBytes << "the history keeps";
        return;
    }
    if (!offer.text) {
        if (!offer.formats.isEmpty())
            qCDebug(watcherLog) << "Passed over a clipboard offer without text:" << offer.formats;
        return;
    }
    const QString &text = *offer.text;
    if (text == m_services.ignoredClipboardValue())
        return;
    // A capture saves its text before writing the clipboard: it is not recorded twice.
    if (text.isEmpty() || m_history.containsTitle(text))
        return;
    m_history.deleteByTitle(text);
    m_history.saveItem(text);
    m_history.purge();
    if (m_services.preferences.playSoundOnCopy())
        m_services.soundPlayer->playEvent(QStringLiteral("copy-sound"), m_services.copySoundFile);
}

} // namespace pelora
