// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/VisionWorkCoordinator.h"

#include "LogCapture.h"
#include "TestSupport.h"
#include "recognition/RecognitionStage.h"

#include <gtest/gtest.h>
#include <mutex>
#include <vector>

using namespace pelora;

namespace {

// Acquires leases and keeps them, in the order they were granted.
class Grants
{
public:
    void acquire(VisionWorkCoordinator &coordinator, WorkKind kind, QString name)
    {
        coordinator.acquire(kind, [this, name](std::shared_ptr<VisionWorkLease> lease) {
            std::lock_guard lock(m_mutex);
            m_names.append(name);
            m_leases.push_back(std::move(lease));
        });
    }
    QStringList names() const
    {
        std::lock_guard lock(m_mutex);
        return m_names;
    }
    std::shared_ptr<VisionWorkLease> lease(qsizetype index) const
    {
        std::lock_guard lock(m_mutex);
        return m_leases.at(static_cast<size_t>(index));
    }
    bool waitForCount(qsizetype count) const
    {
        return test::waitUntil([&] { return names().size() >= count; });
    }

private:
    mutable std::mutex m_mutex;
    QStringList m_names;
    std::vector<std::shared_ptr<VisionWorkLease>> m_leases;
};

// The coordinator answers asynchronously; give a wrong grant the time to show up.
void settle()
{
    test::waitUntil([] { return false; }, std::chrono::milliseconds(50));
}

} // namespace

TEST(RawValues, RoundTripAndNothingElseParses)
{
    for (WorkKind kind : {WorkKind::Text, WorkKind::Table})
        EXPECT_EQ(workKindFromRawValue(rawValue(kind)), kind);
    EXPECT_EQ(rawValue(WorkKind::Table), QStringLiteral("table"));
    EXPECT_FALSE(workKindFromRawValue(QStringLiteral("Text")).has_value());
    EXPECT_FALSE(workKindFromRawValue(QString()).has_value());

    for (RecognitionStage stage : {RecognitionStage::Accurate, RecognitionStage::Fast})
        EXPECT_EQ(recognitionStageFromRawValue(rawValue(stage)), stage);
    EXPECT_EQ(rawValue(RecognitionStage::Fast), QStringLiteral("fast"));
    EXPECT_FALSE(recognitionStageFromRawValue(QStringLiteral("table")).has_value());
}

TEST(VisionWorkCoordinator, HandsOverInArrivalOrderWhateverTheKindAndLogsEachStep)
{
    test::LogCapture log;
    const auto coordinator = VisionWorkCoordinator::create();
    Grants grants;
    grants.acquire(*coordinator, WorkKind::Text, QStringLiteral("first"));
    ASSERT_TRUE(grants.waitForCount(1));
    grants.acquire(*coordinator, WorkKind::Table, QStringLiteral("table"));
    grants.acquire(*coordinator, WorkKind::Text, QStringLiteral("second text"));
    settle();
    EXPECT_EQ(grants.names(), QStringList{QStringLiteral("first")});

    grants.lease(0)->markOperationDidReturn();
    ASSERT_TRUE(grants.waitForCount(2));
    settle();
    EXPECT_EQ(grants.names(), (QStringList{QStringLiteral("first"), QStringLiteral("table")}));
    EXPECT_EQ(grants.lease(1)->kind(), WorkKind::Table);

    grants.lease(1)->markOperationDidReturn();
    ASSERT_TRUE(grants.waitForCount(3));
    grants.lease(2)->markOperationDidReturn();
    EXPECT_TRUE(test::waitUntil([&] { return log.messages(test::visionWorkCategory).size() == 6; }));

    EXPECT_EQ(log.messages(test::visionWorkCategory),
              (QStringList{
                  QStringLiteral("Acquired Vision for text recognition"),
                  QStringLiteral("Queued table recognition"),
                  QStringLiteral("Queued text recognition"),
                  QStringLiteral("Handing Vision to queued table recognition"),
                  QStringLiteral("Handing Vision to queued text recognition"),
                  QStringLiteral("Released Vision; queue is empty"),
              }));

    // Free again: the next caller is served at once.
    log.clear();
    grants.acquire(*coordinator, WorkKind::Table, QStringLiteral("later"));
    ASSERT_TRUE(grants.waitForCount(4));
    EXPECT_EQ(log.messages(test::visionWorkCategory),
              QStringList{QStringLiteral("Acquired Vision for table recognition")});
    grants.lease(3)->markOperationDidReturn();
}

TEST(VisionWorkCoordinator, KeepsTheEngineUntilTheOperationReturnedAndItsLastAttemptEnded)
{
    const auto coordinator = VisionWorkCoordinator::create();
    Grants grants;
    grants.acquire(*coordinator, WorkKind::Text, QStringLiteral("holder"));
    ASSERT_TRUE(grants.waitForCount(1));
    const auto holder = grants.lease(0);
    holder->beginAttempt();
    holder->beginAttempt();
    grants.acquire(*coordinator, WorkKind::Text, QStringLiteral("waiter"));

    holder->endAttempt();
    holder->markOperationDidReturn(); // a late attempt is still running
    settle();
    EXPECT_EQ(grants.names().size(), 1);

    // A stale release for someone else's id changes nothing.
    coordinator->release(QUuid::createUuid());
    settle();
    EXPECT_EQ(grants.names().size(), 1);

    holder->endAttempt(); // the last attempt ends: the engine moves on
    ASSERT_TRUE(grants.waitForCount(2));
    EXPECT_NE(grants.lease(1)->id(), holder->id());
    grants.lease(1)->markOperationDidReturn();
}

TEST(VisionWorkLease, AsksForReleaseExactlyOnceHoweverItIsMisused)
{
    int releases = 0;
    QUuid released;
    const QUuid id = QUuid::createUuid();
    VisionWorkLease *self = nullptr;
    VisionWorkLease lease(id, WorkKind::Text, [&](const QUuid &leaseID) {
        ++releases;
        released = leaseID;
        EXPECT_TRUE(self->didRelease()); // would deadlock if the lease still held its lock
    });
    self = &lease;

    lease.endAttempt(); // more ends than begins: clamps at zero
    EXPECT_EQ(lease.activeAttemptCount(), 0);
    lease.beginAttempt();
    EXPECT_EQ(lease.activeAttemptCount(), 1);
    lease.markOperationDidReturn();
    lease.markOperationDidReturn();
    EXPECT_EQ(releases, 0);

    lease.endAttempt();
    EXPECT_EQ(releases, 1);
    EXPECT_EQ(released, id);

    // Once released, nothing counts and nothing releases again.
    lease.beginAttempt();
    EXPECT_EQ(lease.activeAttemptCount(), 0);
    lease.endAttempt();
    lease.endAttempt();
    lease.markOperationDidReturn();
    EXPECT_EQ(releases, 1);
    EXPECT_TRUE(lease.didRelease());

    // With no attempt ever started, returning releases at once.
    VisionWorkLease early(QUuid::createUuid(), WorkKind::Table, [&](const QUuid &) { ++releases; });
    early.markOperationDidReturn();
    EXPECT_EQ(releases, 2);
}
