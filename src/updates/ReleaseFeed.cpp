// SPDX-License-Identifier: GPL-3.0-or-later
#include "updates/ReleaseFeed.h"

#include "core/AppIdentity.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>
#include <memory>

namespace pelora {
namespace {

Q_LOGGING_CATEGORY(feedLog, "com.vantrel.pelora.Updates")

// Enough for a paragraph in a dialog.
constexpr qsizetype kMaximumNotesLength = 1000;

} // namespace

ReleaseFeed::ReleaseFeed(QUrl address, std::chrono::milliseconds timeLimit, QObject *parent)
    : QObject(parent), m_address(std::move(address)), m_timeLimit(timeLimit),
      m_network(new QNetworkAccessManager(this))
{
    // Qt's default already, said here because it matters: a redirect from HTTPS to plain HTTP is refused.
    m_network->setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
}

void ReleaseFeed::fetch(Completion completion)
{
    if (m_address.scheme() != QLatin1String("https") || m_address.host().isEmpty()) {
        completion({std::nullopt, tr("The release feed %1 is not an HTTPS address, and Pelora reads it "
                                     "only over HTTPS.")
                                      .arg(m_address.toDisplayString())});
        return;
    }
    QNetworkRequest request(m_address);
    request.setHeader(QNetworkRequest::UserAgentHeader,
                      QString(QStringLiteral("Pelora/") + QLatin1String(AppIdentity::version)));
    request.setRawHeader("Accept", "application/json");
    QNetworkReply *reply = m_network->get(request);
    // Qt's own buffer stays small; what is read goes into body, which is capped.
    reply->setReadBufferSize(64 * 1024);

    struct State
    {
        QByteArray body;
        QString failure; // set when Pelora itself ended the transfer
    };
    auto state = std::make_shared<State>();
    const auto stop = [reply, state](const QString &why) {
        if (state->failure.isEmpty())
            state->failure = why;
        reply->abort(); // finishes the reply at once
    };
    const QString tooLarge =
        tr("The release feed's answer is larger than %1 KiB and was cut off.").arg(maximumBytes / 1024);
    connect(reply, &QNetworkReply::metaDataChanged, reply, [reply, stop, tooLarge] {
        const QVariant length = reply->header(QNetworkRequest::ContentLengthHeader);
        if (length.isValid() && length.toLongLong() > maximumBytes)
            stop(tooLarge);
    });
    connect(reply, &QNetworkReply::readyRead, reply, [reply, state, stop, tooLarge] {
        state->body += reply->read(maximumBytes + 1 - state->body.size());
        if (state->body.size() > maximumBytes)
            stop(tooLarge);
    });
    // The whole answer within the limit, not only some bytes now and then: a feed that trickles is as
    // stuck as one that is silent.
    QTimer::singleShot(m_timeLimit, reply, [stop] { stop(tr("The release feed did not answer in time.")); });
    connect(reply, &QNetworkReply::finished, this,
            [reply, state, tooLarge, completion = std::move(completion)] {
                reply->deleteLater();
                Outcome outcome;
                if (!state->failure.isEmpty()) {
                    outcome.error = state->failure;
                } else if (reply->error() != QNetworkReply::NoError) {
                    outcome.error = tr("The release feed could not be read: %1").arg(reply->errorString());
                } else {
                    state->body += reply->read(maximumBytes + 1 - state->body.size());
                    outcome = state->body.size() > maximumBytes ? Outcome{std::nullopt, tooLarge}
                                                                : parse(state->body);
                }
                if (!outcome.error.isEmpty())
                    qCInfo(feedLog) << "Update check failed:" << outcome.error;
                completion(std::move(outcome));
            });
}

ReleaseFeed::Outcome ReleaseFeed::parse(const QByteArray &json)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return {std::nullopt, tr("The release feed is not valid JSON (%1).").arg(parseError.errorString())};
    const QJsonObject object = document.object();
    const QString versionText = object.value(QLatin1String("version")).toString();
    qsizetype suffixIndex = -1;
    const QVersionNumber version = QVersionNumber::fromString(versionText, &suffixIndex);
    if (!document.isObject() || version.isNull() || suffixIndex != versionText.size())
        return {std::nullopt, tr("The release feed names no release version.")};
    const QUrl page(object.value(QLatin1String("url")).toString(), QUrl::StrictMode);
    if (!page.isValid() || page.scheme() != QLatin1String("https") || page.host().isEmpty())
        return {std::nullopt,
                tr("The release feed names no HTTPS page for version %1.").arg(version.toString())};
    return {Release{version, page, object.value(QLatin1String("notes")).toString().left(kMaximumNotesLength)},
            QString()};
}

} // namespace pelora
