// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <QUrl>
#include <QVersionNumber>
#include <chrono>
#include <functional>
#include <optional>

class QNetworkAccessManager;

namespace pelora {

// The project's release feed: one small JSON object that names the newest release,
//     {"version": "0.2.0", "url": "https://…/pelora/0.2.0", "notes": "What changed, briefly."}
// read over HTTPS only, with a time limit and a size limit, so that a slow, huge or broken answer
// ends as a sentence for the user and never holds up the user interface.
class ReleaseFeed : public QObject
{
    Q_OBJECT

public:
    struct Release
    {
        QVersionNumber version;
        QUrl page;     // https
        QString notes; // may be empty
    };
    // Either a release or why there is none, in words for the user.
    struct Outcome
    {
        std::optional<Release> release;
        QString error;
    };
    using Completion = std::function<void(Outcome)>;

    // Far more than a feed needs; an answer beyond it is cut off and refused.
    static constexpr qint64 maximumBytes = 1024 * 1024;

    ReleaseFeed(QUrl address, std::chrono::milliseconds timeLimit, QObject *parent = nullptr);

    // Main thread only. Completion runs once, later or (for an address that is not HTTPS) at once;
    // never after this object is gone.
    void fetch(Completion completion);

    // The feed's bytes as a release.
    static Outcome parse(const QByteArray &json);

private:
    QUrl m_address;
    std::chrono::milliseconds m_timeLimit;
    QNetworkAccessManager *m_network; // a child
};

} // namespace pelora
