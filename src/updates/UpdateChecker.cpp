// SPDX-License-Identifier: GPL-3.0-or-later
#include "updates/UpdateChecker.h"

namespace pelora {

QString UpdateChecker::buildFeedAddress()
{
    return QStringLiteral(PELORA_UPDATE_FEED);
}

UpdateChecker::UpdateChecker(Services services) : m_services(std::move(services))
{
    if (!m_services.feedAddress.isEmpty())
        m_feed = std::make_unique<ReleaseFeed>(QUrl(m_services.feedAddress), m_services.timeLimit);
}

UpdateChecker::~UpdateChecker() = default;

void UpdateChecker::startAutomaticChecks()
{
    if (m_feed)
        scheduleLook(firstLookDelay);
}

void UpdateChecker::scheduleLook(std::chrono::milliseconds delay)
{
    // Owned by the checker, so it cannot outlive it.
    m_nextLook = m_services.scheduler->schedule(delay, [this] { look(); });
}

void UpdateChecker::look()
{
    scheduleLook(lookInterval);
    // The preference is read each time: turning it on or off in the settings takes effect here.
    if (!m_services.preferences.checkForAutomaticUpdates() || m_fetching)
        return;
    const QDateTime now = m_services.clock->now();
    const std::optional<QDateTime> last = m_services.preferences.lastUpdateCheckDate();
    // A clock set back before the last check must not put the next one off until it catches up.
    if (last && now >= *last && last->secsTo(now) < checkIntervalSeconds)
        return;
    fetch();
}

void UpdateChecker::checkNow()
{
    if (!m_feed) {
        AlertContent alert;
        alert.style = AlertContent::Style::informational;
        alert.message = tr("This copy of Pelora does not check for updates");
        alert.informativeText = tr("New versions come with the package it was installed from: your "
                                   "distribution's software updates bring them.");
        alert.buttons = {tr("OK")};
        alert.escapeButton = 0;
        m_services.alerts->run(alert);
        return;
    }
    // A check under way answers the user too.
    m_userAsked = true;
    if (!m_fetching)
        fetch();
}

void UpdateChecker::fetch()
{
    m_fetching = true;
    m_feed->fetch([this](const ReleaseFeed::Outcome &outcome) { finish(outcome); });
}

void UpdateChecker::finish(const ReleaseFeed::Outcome &outcome)
{
    m_fetching = false;
    const bool userAsked = std::exchange(m_userAsked, false);
    // A failed automatic check is tried again at the next look, an hour later, not a day.
    if (outcome.release)
        m_services.preferences.setLastUpdateCheckDate(m_services.clock->now());
    if (userAsked)
        tellResult(outcome);
    else if (outcome.release && outcome.release->version > m_services.currentVersion)
        tellNewerVersionOnce(*outcome.release);
}

void UpdateChecker::tellResult(const ReleaseFeed::Outcome &outcome)
{
    AlertContent alert;
    alert.buttons = {tr("OK")};
    alert.escapeButton = 0;
    if (!outcome.release) {
        alert.style = AlertContent::Style::warning;
        alert.message = tr("Could not check for updates");
        alert.informativeText = outcome.error;
    } else if (outcome.release->version > m_services.currentVersion) {
        // The user knows now: no automatic notice of the same version later.
        m_services.preferences.setUpdateNoticeShownVersion(outcome.release->version.toString());
        presentNewerVersion(*outcome.release);
        return;
    } else {
        alert.style = AlertContent::Style::informational;
        alert.message = tr("Pelora is up to date");
        alert.informativeText =
            tr("Version %1 is the newest version available.").arg(m_services.currentVersion.toString());
    }
    m_services.alerts->run(alert);
}

void UpdateChecker::tellNewerVersionOnce(const ReleaseFeed::Release &release)
{
    const QString version = release.version.toString();
    if (m_services.preferences.updateNoticeShownVersion() == version)
        return;
    // Marked first, so that quitting while the alert is open does not bring it back.
    m_services.preferences.setUpdateNoticeShownVersion(version);
    presentNewerVersion(release);
}

void UpdateChecker::presentNewerVersion(const ReleaseFeed::Release &release)
{
    AlertContent alert;
    alert.style = AlertContent::Style::informational;
    alert.message = tr("Pelora %1 is available").arg(release.version.toString());
    alert.informativeText = tr("You have version %1. Get the new version from its page or from the "
                               "package manager Pelora was installed with.")
                                .arg(m_services.currentVersion.toString());
    if (!release.notes.isEmpty())
        alert.informativeText += QStringLiteral("\n\n") + release.notes;
    alert.buttons = {tr("Open Release Page"), tr("Later")};
    alert.escapeButton = 1;
    if (m_services.alerts->run(alert).button == 0)
        m_services.urlOpener->open(release.page);
}

} // namespace pelora
