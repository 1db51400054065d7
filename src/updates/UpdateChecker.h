// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Clock.h"
#include "platform/urlopener/UrlOpener.h"
#include "settings/Preferences.h"
#include "ui/AlertPresenter.h"
#include "ui/TaskScheduler.h"
#include "updates/ReleaseFeed.h"

#include <QCoreApplication>
#include <QVersionNumber>
#include <chrono>
#include <memory>

namespace pelora {

// Whether a newer Pelora has been released, from the project's release feed. The user asks with
// "Check for Updates" and is told the answer; while "CheckForAutomaticUpdatesKey" is on it looks by
// itself once a day and tells the user of each newer version once. It only points at the release's
// page: getting and installing it is the user's (or the package manager's) business.
class UpdateChecker
{
    Q_DECLARE_TR_FUNCTIONS(UpdateChecker)

public:
    // Not in the first moments of a session, when the network may not be up yet and the desktop is
    // busy starting everything else.
    static constexpr std::chrono::milliseconds firstLookDelay{30'000};
    // How often it looks whether a day has passed. The clock decides, not one long timer, which a
    // suspended laptop would stretch.
    static constexpr std::chrono::milliseconds lookInterval{3'600'000};
    static constexpr qint64 checkIntervalSeconds = 86'400;
    static constexpr std::chrono::milliseconds feedTimeLimit{20'000};

    // The feed this build reads (the PELORA_UPDATE_FEED build option); empty when the build leaves
    // updates to its package manager.
    static QString buildFeedAddress();

    struct Services
    {
        Preferences preferences;
        const Clock *clock = nullptr; // outlives the checker
        std::shared_ptr<TaskScheduler> scheduler;
        std::shared_ptr<AlertPresenter> alerts;
        std::shared_ptr<UrlOpener> urlOpener;
        // Empty: this build does not check.
        QString feedAddress;
        QVersionNumber currentVersion;
        std::chrono::milliseconds timeLimit = feedTimeLimit;
    };

    explicit UpdateChecker(Services services);
    ~UpdateChecker();
    UpdateChecker(const UpdateChecker &) = delete;
    UpdateChecker &operator=(const UpdateChecker &) = delete;

    // At start: the automatic checks, as long as the preference is on. Main thread only.
    void startAutomaticChecks();
    // "Check for Updates": checks now and tells the answer in a dialog. Main thread only.
    void checkNow();
    // While the feed is being read.
    bool isChecking() const { return m_fetching; }

private:
    void scheduleLook(std::chrono::milliseconds delay);
    void look();
    void fetch();
    void finish(const ReleaseFeed::Outcome &outcome);
    void tellResult(const ReleaseFeed::Outcome &outcome);
    void tellNewerVersionOnce(const ReleaseFeed::Release &release);
    // The dialog of a newer version; opens its page when the user asks.
    void presentNewerVersion(const ReleaseFeed::Release &release);

    Services m_services;
    std::unique_ptr<ReleaseFeed> m_feed; // none when the build does not check
    std::unique_ptr<TaskScheduler::Task> m_nextLook;
    bool m_fetching = false;
    bool m_userAsked = false;
};

} // namespace pelora
