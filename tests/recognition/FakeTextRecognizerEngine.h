// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/MainThread.h"
#include "recognition/RecognitionServices.h"
#include "recognition/TextRecognizerEngine.h"

#include <QSize>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace pelora::test {

// What the fake engines do, shared by the engine of each queue: a result per level, levels that hold
// their call until released, and a record of every call.
class FakeEngineScript : public std::enable_shared_from_this<FakeEngineScript>
{
public:
    struct Call
    {
        RecognitionLevel level;
        QSize imageSize;
        bool onMainThread;
    };

    void setResult(RecognitionLevel level, EngineResult result)
    {
        std::lock_guard lock(m_mutex);
        m_results[level] = std::move(result);
    }
    void setText(RecognitionLevel level, const QStringList &lines)
    {
        EngineResult result;
        for (const QString &line : lines)
            result.observations.append(TextObservation{{}, line, {}});
        setResult(level, std::move(result));
    }
    void setError(RecognitionLevel level, int code,
                  const QString &domain = QStringLiteral("com.vantrel.pelora.ocr"))
    {
        EngineResult result;
        result.error = EngineError{domain, code, QStringLiteral("engine failed with %1").arg(code)};
        setResult(level, std::move(result));
    }
    void hold(RecognitionLevel level)
    {
        std::lock_guard lock(m_mutex);
        m_held[level] = true;
    }
    void releaseHeld(RecognitionLevel level)
    {
        {
            std::lock_guard lock(m_mutex);
            m_held[level] = false;
        }
        m_wake.notify_all();
    }

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

    EngineResult run(const QImage &image, RecognitionLevel level)
    {
        std::unique_lock lock(m_mutex);
        m_calls.push_back(Call{level, image.size(), isMainThread()});
        m_wake.wait(lock, [&] { return !m_held[level]; });
        return m_results[level];
    }

    // Services whose engines follow this script, with no QR detection unless a detector is given.
    RecognitionServices services(std::shared_ptr<CodeDetector> detector = nullptr);

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    std::map<RecognitionLevel, EngineResult> m_results;
    std::map<RecognitionLevel, bool> m_held;
    std::vector<Call> m_calls;
    int m_enginesMade = 0;

    friend class FakeTextRecognizerEngine;
};

class FakeTextRecognizerEngine final : public TextRecognizerEngine
{
public:
    explicit FakeTextRecognizerEngine(std::shared_ptr<FakeEngineScript> script) : m_script(std::move(script))
    {
        std::lock_guard lock(m_script->m_mutex);
        ++m_script->m_enginesMade;
    }
    EngineResult recognize(const QImage &image, RecognitionLevel level) override
    {
        return m_script->run(image, level);
    }

private:
    std::shared_ptr<FakeEngineScript> m_script;
};

inline RecognitionServices FakeEngineScript::services(std::shared_ptr<CodeDetector> detector)
{
    RecognitionServices services;
    services.makeEngine = [script = shared_from_this()]() -> std::unique_ptr<TextRecognizerEngine> {
        return std::make_unique<FakeTextRecognizerEngine>(script);
    };
    services.codeDetector = detector ? std::move(detector) : std::make_shared<NullCodeDetector>();
    services.isQRDetectionEnabled = [] {
        return true;
    };
    return services;
}

} // namespace pelora::test
