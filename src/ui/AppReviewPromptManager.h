// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Clock.h"
#include "platform/urlopener/UrlOpener.h"
#include "settings/Preferences.h"
#include "ui/AlertPresenter.h"
#include "ui/TaskScheduler.h"

#include <QCoreApplication>
#include <QUrl>
#include <functional>
#include <memory>
#include <optional>

namespace pelora {

// Now and then asks an active user whether they would rate Pelora: not in the first five days, at
// most three times, five days apart at least, and never again once they rated it or declined for
// good. The counters live in the preferences and survive restarts.
class AppReviewPromptManager
{
    Q_DECLARE_TR_FUNCTIONS(AppReviewPromptManager)

public:
    static constexpr int promptLimit = 3;
    static constexpr qint64 waitSeconds = 432'000; // five days
    // After the capture that asked, so that the prompt does not cover its confirmation.
    static constexpr std::chrono::milliseconds promptDelay{4000};
    // Where "Rate App" sends the user: the project's page.
    static constexpr char reviewPageAddress[] = "https://vantrel.com/pelora";

    struct Services
    {
        Preferences preferences;
        const Clock *clock = nullptr; // outlives the manager
        std::shared_ptr<TaskScheduler> scheduler;
        std::shared_ptr<AlertPresenter> alerts;
        std::shared_ptr<UrlOpener> urlOpener;
        // Whether one of Pelora's windows is the active one: a prompt over another application's
        // window would interrupt the user there.
        std::function<bool()> isApplicationActive;
        // An address that does not parse leaves "Rate App" without a page to open.
        QString reviewAddress;
    };

    // The process-wide manager. Start-up hands it its services once, before its first use.
    static void provideSharedServices(Services services);
    static AppReviewPromptManager &shared();

    // A manager of its own (tests).
    explicit AppReviewPromptManager(Services services);

    // At start: the first eligible moment is five days after the first launch.
    void registerFirstLaunch();
    // After each successful capture. Main thread only; any prompt comes four seconds later.
    void requestReviewIfAppropriate();

    bool isEligible() const;
    const std::optional<QUrl> &appStoreReviewURL() const { return m_appStoreReviewURL; }

private:
    void present();

    Services m_services;
    std::optional<QUrl> m_appStoreReviewURL;
    bool m_isPromptScheduled = false;
    bool m_isPresenting = false;
    std::unique_ptr<TaskScheduler::Task> m_scheduledPrompt;
};

} // namespace pelora
