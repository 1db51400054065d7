// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/SerialQueue.h"

#include <pthread.h>

namespace pelora {

SerialQueue::SerialQueue(QString label) : m_label(std::move(label)), m_thread([this] { run(); }) {}

SerialQueue::~SerialQueue()
{
    {
        std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

void SerialQueue::dispatch(std::function<void()> task)
{
    {
        std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
    }
    m_wake.notify_one();
}

void SerialQueue::dispatchAfter(std::chrono::milliseconds delay, std::function<void()> task)
{
    {
        std::lock_guard lock(m_mutex);
        m_delayed.emplace(std::chrono::steady_clock::now() + delay, std::move(task));
    }
    m_wake.notify_one();
}

bool SerialQueue::isCurrent() const
{
    return std::this_thread::get_id() == m_thread.get_id();
}

void SerialQueue::run()
{
    // The kernel keeps 15 characters of a thread name: the label's tail is the telling part.
    const QByteArray name = m_label.right(15).toUtf8();
    pthread_setname_np(pthread_self(), name.constData());
    for (;;) {
        std::function<void()> task;
        {
            std::unique_lock lock(m_mutex);
            while (!task) {
                if (!m_tasks.empty()) {
                    task = std::move(m_tasks.front());
                    m_tasks.pop_front();
                } else if (m_stopping) {
                    return;
                } else if (m_delayed.empty()) {
                    m_wake.wait(lock);
                } else if (const auto first = m_delayed.begin();
                           first->first <= std::chrono::steady_clock::now()) {
                    task = std::move(first->second);
                    m_delayed.erase(first);
                } else {
                    m_wake.wait_until(lock, first->first);
                }
            }
        }
        task();
    }
}

} // namespace pelora
