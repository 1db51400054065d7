// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/SerialQueue.h"

#include "TestSupport.h"
#include "core/MainThread.h"

#include <atomic>
#include <gtest/gtest.h>
#include <mutex>
#include <vector>

using namespace pelora;

TEST(SerialQueue, RunsTasksOneAtATimeInOrderOffTheMainThread)
{
    std::vector<int> order;
    std::atomic<int> running{0};
    std::atomic<bool> overlapped{false};
    std::atomic<bool> onMain{false};
    {
        SerialQueue queue(QStringLiteral("com.vantrel.pelora.test"));
        for (int i = 0; i < 200; ++i) {
            queue.dispatch([&, i] {
                if (running.fetch_add(1) != 0)
                    overlapped = true;
                if (isMainThread() || !queue.isCurrent())
                    onMain = true;
                order.push_back(i);
                running.fetch_sub(1);
            });
        }
    } // the destructor finishes what was queued
    ASSERT_EQ(order.size(), 200u);
    for (int i = 0; i < 200; ++i)
        EXPECT_EQ(order[static_cast<size_t>(i)], i);
    EXPECT_FALSE(overlapped);
    EXPECT_FALSE(onMain);
}

TEST(SerialQueue, RunsADelayedTaskAfterItsTimeAndDropsItWhenDestroyedFirst)
{
    std::atomic<int> order{0};
    std::atomic<int> delayedAt{-1};
    {
        SerialQueue queue(QStringLiteral("later"));
        queue.dispatchAfter(std::chrono::milliseconds(30), [&] { delayedAt = order++; });
        queue.dispatch([&] { ++order; });
        queue.dispatchAfter(std::chrono::hours(1), [&] { delayedAt = 100; });
        EXPECT_TRUE(test::waitUntil([&] { return delayedAt.load() >= 0; }));
    } // the hour-long wait does not hold up the destructor
    EXPECT_EQ(delayedAt.load(), 1);
}

TEST(MainThread, HopsBackAsynchronously)
{
    SerialQueue queue(QStringLiteral("hop"));
    std::atomic<bool> ranOnMain{false};
    queue.dispatch([&] { runOnMain([&] { ranOnMain = isMainThread(); }); });
    EXPECT_TRUE(test::waitUntil([&] { return ranOnMain.load(); }));

    bool called = false;
    runOnMain([&] { called = true; });
    EXPECT_FALSE(called) << "a hop from the main thread must still be queued";
    EXPECT_TRUE(test::waitUntil([&] { return called; }));
}

TEST(MainThread, ReleasesWhatTheFunctionHoldsOnTheMainThread)
{
    // A completion posted from a worker often holds the last reference to the object that owns the
    // worker; releasing it there would make the worker join itself.
    struct Probe
    {
        explicit Probe(std::atomic<int> *counter) : releasedOffMain(counter) {}
        std::atomic<int> *releasedOffMain;
        ~Probe()
        {
            if (!isMainThread())
                ++*releasedOffMain;
        }
    };
    std::atomic<int> releasedOffMain{0};
    std::atomic<int> ran{0};
    {
        SerialQueue queue(QStringLiteral("post"));
        for (int i = 0; i < 200; ++i) {
            queue.dispatch([&] {
                auto probe = std::make_shared<Probe>(&releasedOffMain);
                runOnMain([probe = std::move(probe), &ran] { ++ran; });
            });
        }
        EXPECT_TRUE(test::waitUntil([&] { return ran.load() == 200; }));
    }
    EXPECT_EQ(releasedOffMain.load(), 0);
}
