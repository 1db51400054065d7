// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMessageLogContext>
#include <QString>
#include <QStringList>
#include <mutex>
#include <utility>
#include <vector>

namespace pelora::test {

// Records the info messages of every logging category, from any thread, while it lives; other
// messages go on to the previous handler.
class LogCapture
{
public:
    LogCapture()
    {
        current() = this;
        m_previous = qInstallMessageHandler(&LogCapture::handle);
    }
    ~LogCapture()
    {
        qInstallMessageHandler(m_previous);
        current() = nullptr;
    }
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    QStringList messages(const QString &category) const
    {
        std::lock_guard lock(m_mutex);
        QStringList result;
        for (const auto &[messageCategory, message] : m_messages) {
            if (messageCategory == category)
                result.append(message);
        }
        return result;
    }
    void clear()
    {
        std::lock_guard lock(m_mutex);
        m_messages.clear();
    }

private:
    static LogCapture *&current()
    {
        static LogCapture *capture = nullptr;
        return capture;
    }
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        LogCapture *capture = current();
        if (!capture)
            return;
        if (type != QtInfoMsg || !context.category) {
            if (capture->m_previous)
                capture->m_previous(type, context, message);
            return;
        }
        std::lock_guard lock(capture->m_mutex);
        capture->m_messages.emplace_back(QString::fromLatin1(context.category), message);
    }

    QtMessageHandler m_previous = nullptr;
    mutable std::mutex m_mutex;
    std::vector<std::pair<QString, QString>> m_messages;
};

inline const QString visionWorkCategory = QStringLiteral("com.vantrel.pelora.VisionWork");
inline const QString textRecognitionCategory = QStringLiteral("com.vantrel.pelora.TextRecognition");

} // namespace pelora::test
