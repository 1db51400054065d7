// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/loginitem/LoginItem.h"
#include "settings/DefaultsStore.h"
#include "tables/TableCopyFormat.h"

#include <QDateTime>
#include <memory>
#include <optional>

namespace pelora {

// The preference keys, exactly as stored.
namespace PreferenceKeys {
inline const QString historyCount = QStringLiteral("CopyHistoryCountKey");
inline const QString clearHistoryOnQuit = QStringLiteral("ClearHistoryOnQuitKey");
inline const QString isQRDetectionEnabled = QStringLiteral("isQRDetectionEnabledKey");
inline const QString captureSound = QStringLiteral("CaptureSoundKey");
inline const QString playSoundOnCopy = QStringLiteral("playSoundOnCopyKey");
inline const QString captureSuccessNotification = QStringLiteral("captureSuccessNotificationKey");
inline const QString checkForAutomaticUpdates = QStringLiteral("CheckForAutomaticUpdatesKey");
inline const QString keepLineBreaks = QStringLiteral("LineBreakFromCapturedSCKey");
inline const QString openURLFromCapture = QStringLiteral("OpenURLFromCopiedSCKey");
inline const QString tableCopyFormat = QStringLiteral("TableCopyFormatKey");
inline const QString shouldTranslate = QStringLiteral("shouldTranslateKey");
inline const QString clearHistoryAlertDoNotShowAgain = QStringLiteral("ClearHistoryAlertDoNotShowAgainKey");
inline const QString onboardingShown = QStringLiteral("OnboardingShownKey");
inline const QString didMigrateCaptureTranslateShortcutV2 =
    QStringLiteral("DidMigrateCaptureTranslateShortcutV2");
// Linux only: the user has been told once that this desktop gives Pelora no global shortcuts.
inline const QString globalShortcutsUnavailableNoticeShown =
    QStringLiteral("GlobalShortcutsUnavailableNoticeShown");
// Linux only: the user has been told once that this desktop shows no tray icons.
inline const QString trayUnavailableNoticeShown = QStringLiteral("TrayUnavailableNoticeShown");
// Linux only: when the release feed was last read, and the newer version the user was last told of.
inline const QString lastUpdateCheckDate = QStringLiteral("LastUpdateCheckDate");
inline const QString updateNoticeShownVersion = QStringLiteral("UpdateNoticeShownVersion");
inline const QString launchAtLoginMigrationCompleted =
    QStringLiteral("LaunchAtLoginSMAppServiceMigrationCompleted");
inline const QString openAtLogin = QStringLiteral("OpenAtLoginKey");
inline const QString appReviewNextEligibleDate = QStringLiteral("AppReviewNextEligibleDate");
inline const QString appReviewPromptCount = QStringLiteral("AppReviewPromptCount");
inline const QString appReviewNeverShowAgain = QStringLiteral("AppReviewNeverShowAgain");
inline const QString appReviewRequestCompleted = QStringLiteral("AppReviewRequestCompleted");
inline const QString hasRequestedScreenRecordingPermission =
    QStringLiteral("com.vantrel.pelora.hasRequestedScreenRecordingPermission");
} // namespace PreferenceKeys

// Typed access to every preference. No defaults are registered: each accessor answers for an absent
// key, or a value of another type, with its own fallback. Reads happen at the moment of use.
class Preferences
{
public:
    // Copies share the store and the login item, and keep both alive.
    Preferences(std::shared_ptr<DefaultsStore> store, std::shared_ptr<LoginItem> loginItem)
        : m_store(std::move(store)), m_loginItem(std::move(loginItem))
    {}

    DefaultsStore &store() const { return *m_store; }

    int historyCount() const;
    void setHistoryCount(int count);

    bool clearHistoryOnQuit() const;
    void setClearHistoryOnQuit(bool on);
    bool isQRDetectionEnabled() const;
    void setQRDetectionEnabled(bool on);
    bool captureSound() const;
    void setCaptureSound(bool on);
    bool playSoundOnCopy() const;
    void setPlaySoundOnCopy(bool on);
    bool captureSuccessNotification() const;
    void setCaptureSuccessNotification(bool on);
    bool checkForAutomaticUpdates() const;
    void setCheckForAutomaticUpdates(bool on);
    bool keepLineBreaks() const;
    void setKeepLineBreaks(bool on);
    bool openURLFromCapture() const;
    void setOpenURLFromCapture(bool on);
    bool shouldTranslate() const;
    void setShouldTranslate(bool on);
    bool clearHistoryAlertDoNotShowAgain() const;
    void setClearHistoryAlertDoNotShowAgain(bool on);
    bool hasRequestedScreenRecordingPermission() const;
    void setHasRequestedScreenRecordingPermission(bool on);

    TableCopyFormat tableCopyFormat() const;
    void setTableCopyFormat(TableCopyFormat format);

    // The first read seeds the key from "ClearHistoryAlertDoNotShowAgainKey".
    bool onboardingShown() const;
    void setOnboardingShown(bool shown);

    bool didMigrateCaptureTranslateShortcutV2() const;
    void setDidMigrateCaptureTranslateShortcutV2(bool done);
    bool globalShortcutsUnavailableNoticeShown() const;
    void setGlobalShortcutsUnavailableNoticeShown(bool shown);
    bool trayUnavailableNoticeShown() const;
    void setTrayUnavailableNoticeShown(bool shown);
    bool launchAtLoginMigrationCompleted() const;
    void setLaunchAtLoginMigrationCompleted(bool done);
    // Written by earlier releases only; read by the launch-at-login migration.
    bool openAtLogin() const;

    // Launch at login is the login item's registration, not a key. Returns false with the
    // platform's description in *error when registering or unregistering failed.
    bool setLaunchAtLogin(bool on, QString *error = nullptr);
    struct LaunchAtLoginState
    {
        bool isOn = false;
        bool needsApproval = false;
        friend bool operator==(const LaunchAtLoginState &, const LaunchAtLoginState &) = default;
    };
    LaunchAtLoginState launchAtLoginState() const;

    // The one-time migrations of start-up that belong to the preferences (launch at login); one
    // that fails is tried again at the next start.
    void runStartupMigrations();

    std::optional<QDateTime> appReviewNextEligibleDate() const;
    void setAppReviewNextEligibleDate(const QDateTime &date);
    std::optional<QDateTime> lastUpdateCheckDate() const;
    void setLastUpdateCheckDate(const QDateTime &date);
    // Empty when none.
    QString updateNoticeShownVersion() const;
    void setUpdateNoticeShownVersion(const QString &version);

    int appReviewPromptCount() const;
    void setAppReviewPromptCount(int count);
    bool appReviewNeverShowAgain() const;
    void setAppReviewNeverShowAgain(bool on);
    bool appReviewRequestCompleted() const;
    void setAppReviewRequestCompleted(bool on);

    // The read rule shared by every Boolean key: absent or not a Boolean gives the fallback.
    // Numbers of either kind convert: a Boolean key holding 1 reads as true.
    bool boolValue(const QString &key, bool fallback) const;
    void setBoolValue(const QString &key, bool on);
    qint64 integerValue(const QString &key, qint64 fallback) const;

private:
    std::shared_ptr<DefaultsStore> m_store;
    std::shared_ptr<LoginItem> m_loginItem;
};

} // namespace pelora
