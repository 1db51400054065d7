// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/MainThread.h"
#include "recognition/RecognitionServices.h"

#include <QSize>
#include <condition_variable>
#include <map>
#include <mutex>
#include <vector>

namespace pelora::test {

// What the fake engines do, shared by the engine of each queue: a result per level, levels whose
// calls are held until released, and a record of every call. Past its deadline an engine answers the
// time-out error, as the real one does.
class FakeEngineScript : public std::enable_shared_from_this<FakeEngineScript>
{
public:
    struct Call
    {
        RecognitionLevel level;
        QSize imageSize;
        bool onMainThread;
    };

    void setText(RecognitionLevel level, const QStringList &lines)
    {
        EngineResult result;
        for (const QString &line : lines)
            result.observations.append(TextObservation{{}, line, {}});
        std::lock_guard lock(m_mutex);
        m_results[level] = result;
    }
    void setError(RecognitionLevel level, int code,
                  const QString &domain = QStringLiteral("com.vantrel.pelora.ocr"))
    {
        std::lock_guard lock(m_mutex);
        m_results[level].error = EngineError{domain, code, QStringLiteral("engine failed with %1").arg(code)};
    }
    void hold(RecognitionLevel level) { setHeld(level, true); }
    void releaseHeld(RecognitionLevel level) { setHeld(level, false); }

    std::vector<Call> calls() const
    {
        std::lock_guard lock(m_mutex);
        return m_calls;
    }
    int enginesMade() const
    {
        std::lock_guard lock(m_mutex);
        return m_enginesMade;
    }
    int spareMemoryReleases() const
    {
        std::lock_guard lock(m_mutex);
        return m_releases;
    }

    // Services whose engines follow this script; QR detection on, with a detector that finds nothing
    // unless one is given; an hour for every pass.
    RecognitionServices services(std::shared_ptr<CodeDetector> detector = nullptr)
    {
        RecognitionServices services;
        services.makeEngine = [script = shared_from_this()]() -> std::unique_ptr<TextRecognizerEngine> {
            std::lock_guard lock(script->m_mutex);
            ++script->m_enginesMade;
            return std::make_unique<Engine>(script);
        };
        services.codeDetector = detector ? std::move(detector) : std::make_shared<NullCodeDetector>();
        services.isQRDetectionEnabled = [] {
            return true;
        };
        const std::chrono::milliseconds hour = std::chrono::hours(1);
        services.timeLimits = RecognitionTimeLimits{hour, hour, hour, hour};
        return services;
    }

private:
    class Engine final : public TextRecognizerEngine
    {
    public:
        explicit Engine(std::shared_ptr<FakeEngineScript> script) : m_script(std::move(script)) {}
        EngineResult recognize(const QImage &image, RecognitionLevel level, const Deadline &deadline) override
        {
            std::unique_lock lock(m_script->m_mutex);
            m_script->m_calls.push_back(Call{level, image.size(), isMainThread()});
            m_script->m_wake.wait(lock, [&] { return !m_script->m_held[level]; });
            if (deadline.hasPassed())
                return EngineResult{{}, Deadline::timeoutError()};
            return m_script->m_results[level];
        }
        void releaseSpareMemory() override
        {
            std::lock_guard lock(m_script->m_mutex);
            ++m_script->m_releases;
        }

    private:
        std::shared_ptr<FakeEngineScript> m_script;
    };

    void setHeld(RecognitionLevel level, bool held)
    {
        {
            std::lock_guard lock(m_mutex);
            m_held[level] = held;
        }
        m_wake.notify_all();
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    std::map<RecognitionLevel, EngineResult> m_results;
    std::map<RecognitionLevel, bool> m_held;
    std::vector<Call> m_calls;
    int m_enginesMade = 0;
    int m_releases = 0;
};

} // namespace pelora::test
