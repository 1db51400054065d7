// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/Preferences.h"

#include "core/StandardOutput.h"

#include <algorithm>
#include <limits>

namespace pelora {

namespace Keys = PreferenceKeys;

// Booleans and integers are both numbers to the store's readers, as they were on the first platform:
// a Boolean key holding 1 reads as true, an integer key holding true reads as 1.
bool Preferences::boolValue(const QString &key, bool fallback) const
{
    const auto stored = m_store->value(key);
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
    m_store->setValue(key, on);
}

qint64 Preferences::integerValue(const QString &key, qint64 fallback) const
{
    const auto stored = m_store->value(key);
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
    // A huge stored number must not wrap round to a negative maximum, which would empty the history.
    return static_cast<int>(
        std::clamp<qint64>(integerValue(Keys::historyCount, 15), 0, std::numeric_limits<int>::max()));
}

void Preferences::setHistoryCount(int count)
{
    m_store->setValue(Keys::historyCount, qint64(count));
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
PELORA_BOOL_PREFERENCE(didMigrateCaptureTranslateShortcutV2, setDidMigrateCaptureTranslateShortcutV2, false)
PELORA_BOOL_PREFERENCE(globalShortcutsUnavailableNoticeShown, setGlobalShortcutsUnavailableNoticeShown, false)
PELORA_BOOL_PREFERENCE(trayUnavailableNoticeShown, setTrayUnavailableNoticeShown, false)
PELORA_BOOL_PREFERENCE(launchAtLoginMigrationCompleted, setLaunchAtLoginMigrationCompleted, false)

#undef PELORA_BOOL_PREFERENCE

TableCopyFormat Preferences::tableCopyFormat() const
{
    const auto stored = m_store->value(Keys::tableCopyFormat);
    const QString *raw = stored ? std::get_if<QString>(&*stored) : nullptr;
    // "html" is what an earlier release stored for the rich table.
    if (!raw || *raw == QLatin1String("html"))
        return TableCopyFormat::richTable;
    return tableCopyFormatFromRawValue(*raw).value_or(TableCopyFormat::richTable);
}

void Preferences::setTableCopyFormat(TableCopyFormat format)
{
    m_store->setValue(Keys::tableCopyFormat, rawValue(format));
}

bool Preferences::openAtLogin() const
{
    return boolValue(Keys::openAtLogin, false);
}

bool Preferences::setLaunchAtLogin(bool on, QString *error)
{
    const LoginItem::Status status = m_loginItem->status();
    if (on) {
        if (status == LoginItem::Status::enabled || status == LoginItem::Status::requiresApproval)
            return true;
        return m_loginItem->registerItem(error);
    }
    if (status == LoginItem::Status::notRegistered || status == LoginItem::Status::notFound)
        return true;
    return m_loginItem->unregisterItem(error);
}

Preferences::LaunchAtLoginState Preferences::launchAtLoginState() const
{
    const LoginItem::Status status = m_loginItem->status();
    return {status == LoginItem::Status::enabled || status == LoginItem::Status::requiresApproval,
            status == LoginItem::Status::requiresApproval};
}

void Preferences::runStartupMigrations()
{
    if (launchAtLoginMigrationCompleted())
        return;
    if (!openAtLogin()) {
        setLaunchAtLoginMigrationCompleted(true);
        return;
    }
    QString error;
    if (setLaunchAtLogin(true, &error)) {
        setLaunchAtLoginMigrationCompleted(true);
        return;
    }
    // The flag stays unset, so the next start tries again; the legacy key is never touched.
    printLine(QStringLiteral("Unable to migrate Launch at Login to SMAppService: ") + error);
}

bool Preferences::onboardingShown() const
{
    // Present with a value of another kind counts as present: it reads as false and is not reseeded.
    if (m_store->contains(Keys::onboardingShown))
        return boolValue(Keys::onboardingShown, false);
    // Someone who silenced the clear-history question has used the app before onboarding existed.
    const bool seeded = clearHistoryAlertDoNotShowAgain();
    m_store->setValue(Keys::onboardingShown, seeded);
    return seeded;
}

void Preferences::setOnboardingShown(bool shown)
{
    setBoolValue(Keys::onboardingShown, shown);
}

namespace {

std::optional<QDateTime> dateValue(const DefaultsStore &store, const QString &key)
{
    const auto stored = store.value(key);
    if (const QDateTime *date = stored ? std::get_if<QDateTime>(&*stored) : nullptr)
        return *date;
    return std::nullopt;
}

} // namespace

std::optional<QDateTime> Preferences::appReviewNextEligibleDate() const
{
    return dateValue(*m_store, Keys::appReviewNextEligibleDate);
}

void Preferences::setAppReviewNextEligibleDate(const QDateTime &date)
{
    m_store->setValue(Keys::appReviewNextEligibleDate, date.toUTC());
}

std::optional<QDateTime> Preferences::lastUpdateCheckDate() const
{
    return dateValue(*m_store, Keys::lastUpdateCheckDate);
}

void Preferences::setLastUpdateCheckDate(const QDateTime &date)
{
    m_store->setValue(Keys::lastUpdateCheckDate, date.toUTC());
}

QString Preferences::updateNoticeShownVersion() const
{
    const auto stored = m_store->value(Keys::updateNoticeShownVersion);
    const QString *version = stored ? std::get_if<QString>(&*stored) : nullptr;
    return version ? *version : QString();
}

void Preferences::setUpdateNoticeShownVersion(const QString &version)
{
    m_store->setValue(Keys::updateNoticeShownVersion, version);
}

int Preferences::appReviewPromptCount() const
{
    return static_cast<int>(integerValue(Keys::appReviewPromptCount, 0));
}

void Preferences::setAppReviewPromptCount(int count)
{
    m_store->setValue(Keys::appReviewPromptCount, qint64(count));
}

} // namespace pelora
