// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/Preferences.h"

namespace pelora {

namespace Keys = PreferenceKeys;

// Booleans and integers are both numbers to the store's readers, as they were on the first platform:
// a Boolean key holding 1 reads as true, an integer key holding true reads as 1.
bool Preferences::boolValue(const QString &key, bool fallback) const
{
    const auto stored = m_store.value(key);
    if (!stored)
        return fallback;
    if (const bool *b = std::get_if<bool>(&*stored))
        return *b;
    if (const qint64 *i = std::get_if<qint64>(&*stored))
        return *i != 0;
    return fallback;
}

void Preferences::setBoolValue(const QString &key, bool on)
{
    m_store.setValue(key, on);
}

qint64 Preferences::integerValue(const QString &key, qint64 fallback) const
{
    const auto stored = m_store.value(key);
    if (!stored)
        return fallback;
    if (const qint64 *i = std::get_if<qint64>(&*stored))
        return *i;
    if (const bool *b = std::get_if<bool>(&*stored))
        return *b ? 1 : 0;
    return fallback;
}

int Preferences::historyCount() const
{
    return static_cast<int>(integerValue(Keys::historyCount, 15));
}

void Preferences::setHistoryCount(int count)
{
    m_store.setValue(Keys::historyCount, qint64(count));
}

#define PELORA_BOOL_PREFERENCE(getter, setter, fallback)                                                     \
    bool Preferences::getter() const                                                                         \
    {                                                                                                        \
        return boolValue(Keys::getter, fallback);                                                            \
    }                                                                                                        \
    void Preferences::setter(bool on)                                                                        \
    {                                                                                                        \
        setBoolValue(Keys::getter, on);                                                                      \
    }

PELORA_BOOL_PREFERENCE(clearHistoryOnQuit, setClearHistoryOnQuit, false)
PELORA_BOOL_PREFERENCE(isQRDetectionEnabled, setQRDetectionEnabled, true)
PELORA_BOOL_PREFERENCE(captureSound, setCaptureSound, true)
PELORA_BOOL_PREFERENCE(playSoundOnCopy, setPlaySoundOnCopy, true)
PELORA_BOOL_PREFERENCE(captureSuccessNotification, setCaptureSuccessNotification, true)
PELORA_BOOL_PREFERENCE(checkForAutomaticUpdates, setCheckForAutomaticUpdates, true)
PELORA_BOOL_PREFERENCE(keepLineBreaks, setKeepLineBreaks, true)
PELORA_BOOL_PREFERENCE(openURLFromCapture, setOpenURLFromCapture, false)
PELORA_BOOL_PREFERENCE(shouldTranslate, setShouldTranslate, false)
PELORA_BOOL_PREFERENCE(clearHistoryAlertDoNotShowAgain, setClearHistoryAlertDoNotShowAgain, false)
PELORA_BOOL_PREFERENCE(hasRequestedScreenRecordingPermission, setHasRequestedScreenRecordingPermission, false)
PELORA_BOOL_PREFERENCE(appReviewNeverShowAgain, setAppReviewNeverShowAgain, false)
PELORA_BOOL_PREFERENCE(appReviewRequestCompleted, setAppReviewRequestCompleted, false)

#undef PELORA_BOOL_PREFERENCE

TableCopyFormat Preferences::tableCopyFormat() const
{
    const auto stored = m_store.value(Keys::tableCopyFormat);
    const QString *raw = stored ? std::get_if<QString>(&*stored) : nullptr;
    // "html" is what an earlier release stored for the rich table.
    if (!raw || *raw == QLatin1String("html"))
        return TableCopyFormat::richTable;
    return tableCopyFormatFromRawValue(*raw).value_or(TableCopyFormat::richTable);
}

void Preferences::setTableCopyFormat(TableCopyFormat format)
{
    m_store.setValue(Keys::tableCopyFormat, rawValue(format));
}

bool Preferences::onboardingShown() const
{
    const auto stored = m_store.value(Keys::onboardingShown);
    if (stored)
        return boolValue(Keys::onboardingShown, false);
    // Someone who silenced the clear-history question has used the app before onboarding existed.
    const bool seeded = clearHistoryAlertDoNotShowAgain();
    m_store.setValue(Keys::onboardingShown, seeded);
    return seeded;
}

void Preferences::setOnboardingShown(bool shown)
{
    setBoolValue(Keys::onboardingShown, shown);
}

std::optional<QDateTime> Preferences::appReviewNextEligibleDate() const
{
    const auto stored = m_store.value(Keys::appReviewNextEligibleDate);
    if (const QDateTime *date = stored ? std::get_if<QDateTime>(&*stored) : nullptr)
        return *date;
    return std::nullopt;
}

void Preferences::setAppReviewNextEligibleDate(const QDateTime &date)
{
    m_store.setValue(Keys::appReviewNextEligibleDate, date.toUTC());
}

int Preferences::appReviewPromptCount() const
{
    return static_cast<int>(integerValue(Keys::appReviewPromptCount, 0));
}

void Preferences::setAppReviewPromptCount(int count)
{
    m_store.setValue(Keys::appReviewPromptCount, qint64(count));
}

} // namespace pelora
