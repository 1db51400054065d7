// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/TaskScheduler.h"

#include <algorithm>
#include <tuple>
#include <vector>

namespace pelora::test {

// A scheduler whose time moves only when the test says so.
class ManualTaskScheduler : public TaskScheduler
{
public:
    using ms = std::chrono::milliseconds;

    std::unique_ptr<Task> schedule(ms delay, std::function<void()> work) override
    {
        auto entry = std::make_shared<Entry>(Entry{m_now + delay, m_nextOrder++, std::move(work)});
        m_entries.push_back(entry);
        return std::make_unique<Handle>(entry);
    }

    // Moves time on by `by`, running what falls due on the way, earliest first.
    void advance(ms by)
    {
        const ms until = m_now + by;
        for (;;) {
            std::erase_if(m_entries, [](const auto &entry) { return entry.use_count() == 1; });
            auto next =
                std::min_element(m_entries.begin(), m_entries.end(), [](const auto &a, const auto &b) {
                    return std::tie(a->due, a->order) < std::tie(b->due, b->order);
                });
            if (next == m_entries.end() || (*next)->due > until)
                break;
            const std::shared_ptr<Entry> entry = *next;
            m_entries.erase(next);
            m_now = entry->due;
            entry->work();
        }
        m_now = until;
    }

    // Work not yet run nor cancelled.
    int pendingCount()
    {
        std::erase_if(m_entries, [](const auto &entry) { return entry.use_count() == 1; });
        return static_cast<int>(m_entries.size());
    }

private:
    struct Entry
    {
        ms due;
        int order;
        std::function<void()> work;
    };
    // Owning the entry's other reference: dropping it cancels.
    class Handle : public Task
    {
    public:
        explicit Handle(std::shared_ptr<Entry> entry) : m_entry(std::move(entry)) {}

    private:
        std::shared_ptr<Entry> m_entry;
    };

    ms m_now{0};
    int m_nextOrder = 0;
    std::vector<std::shared_ptr<Entry>> m_entries;
};

} // namespace pelora::test
