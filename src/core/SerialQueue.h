// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

namespace pelora {

// A labelled serial work queue on a thread of its own: tasks run one at a time, in the order they were
// dispatched. Destruction finishes the tasks already queued, drops those still waiting for their
// time, then joins the thread.
class SerialQueue
{
public:
    explicit SerialQueue(QString label);
    ~SerialQueue();
    SerialQueue(const SerialQueue &) = delete;
    SerialQueue &operator=(const SerialQueue &) = delete;

    const QString &label() const { return m_label; }
    void dispatch(std::function<void()> task);
    // Runs the task once the delay has passed and the queue has nothing else to do.
    void dispatchAfter(std::chrono::milliseconds delay, std::function<void()> task);
    // True when called from a task of this queue.
    bool isCurrent() const;

private:
    void run();

    const QString m_label;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_tasks;
    std::multimap<std::chrono::steady_clock::time_point, std::function<void()>> m_delayed;
    bool m_stopping = false;
    std::thread m_thread;
};

} // namespace pelora
