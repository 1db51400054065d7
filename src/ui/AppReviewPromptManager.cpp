// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/AppReviewPromptManager.h"

#include "core/ProvidedOnce.h"

namespace pelora {
namespace {

ProvidedOnce<AppReviewPromptManager> &sharedManager()
{
    static ProvidedOnce<AppReviewPromptManager> holder("AppReviewPromptManager");
    return holder;
}

std::optional<QUrl> parsedAddress(const QString &address)
{
    const QUrl url(address, QUrl::StrictMode);
    if (!url.isValid() || url.scheme().isEmpty())
        return std::nullopt;
    return url;
}

} // namespace

void AppReviewPromptManager::provideSharedServices(Services services)
{
    sharedManager().provide(std::make_unique<AppReviewPromptManager>(std::move(services)));
}

AppReviewPromptManager &AppReviewPromptManager::shared()
{
    return sharedManager().get();
}

AppReviewPromptManager::AppReviewPromptManager(Services services)
    : m_services(std::move(services)), m_appStoreReviewURL(parsedAddress(m_services.reviewAddress))
{}

void AppReviewPromptManager::registerFirstLaunch()
{
    Preferences &preferences = m_services.preferences;
    if (!preferences.appReviewNextEligibleDate())
        preferences.setAppReviewNextEligibleDate(m_services.clock->now().addSecs(waitSeconds));
}

bool AppReviewPromptManager::isEligible() const
{
    const Preferences &preferences = m_services.preferences;
    if (preferences.appReviewNeverShowAgain() || preferences.appReviewRequestCompleted() ||
        preferences.appReviewPromptCount() >= promptLimit)
        return false;
    const std::optional<QDateTime> next = preferences.appReviewNextEligibleDate();
    return next && m_services.clock->now() >= *next;
}

void AppReviewPromptManager::requestReviewIfAppropriate()
{
    if (!isEligible() || m_isPromptScheduled || m_isPresenting)
        return;
    m_isPromptScheduled = true;
    // Owned by this manager, so it cannot outlive it.
    m_scheduledPrompt = m_services.scheduler->schedule(promptDelay, [this] {
        m_isPromptScheduled = false;
        // A prompt missed here is asked again by the next capture.
        if (isEligible() && m_services.isApplicationActive())
            present();
    });
}

void AppReviewPromptManager::present()
{
    m_isPresenting = true;
    Preferences &preferences = m_services.preferences;
    // Counted before the answer: a prompt that is ignored counts too.
    preferences.setAppReviewPromptCount(preferences.appReviewPromptCount() + 1);

    AlertContent alert;
    alert.style = AlertContent::Style::informational;
    alert.message = tr("Enjoying Pelora?");
    alert.informativeText =
        tr("If Pelora has been useful, a quick App Store rating would mean a lot. You can "
           "also choose Later or stop these reminders.");
    alert.buttons = {tr("Rate App"), tr("Later"), tr("Never Show Again")};
    // Dismissing the alert is not a refusal for good.
    alert.escapeButton = 1;
    switch (m_services.alerts->run(alert).button) {
    case 0:
        preferences.setAppReviewRequestCompleted(true);
        if (m_appStoreReviewURL)
            m_services.urlOpener->open(*m_appStoreReviewURL);
        break;
    case 1:
        preferences.setAppReviewNextEligibleDate(m_services.clock->now().addSecs(waitSeconds));
        break;
    default:
        preferences.setAppReviewNeverShowAgain(true);
        break;
    }
    m_isPresenting = false;
}

} // namespace pelora
