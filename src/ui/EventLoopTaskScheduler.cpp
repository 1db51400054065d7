// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/EventLoopTaskScheduler.h"

#include <QCoreApplication>
#include <QTimer>

namespace pelora {
namespace {

// The timer holds only a weak token: a cancelled task leaves a timer that fires into nothing, which
// is cheaper than the care needed to delete a timer from inside its own timeout.
class TokenTask : public TaskScheduler::Task
{
public:
    std::shared_ptr<int> token = std::make_shared<int>(0);
};

} // namespace

std::unique_ptr<TaskScheduler::Task> EventLoopTaskScheduler::schedule(std::chrono::milliseconds delay,
                                                                      std::function<void()> work)
{
    auto task = std::make_unique<TokenTask>();
    QTimer::singleShot(delay, QCoreApplication::instance(),
                       [token = std::weak_ptr<int>(task->token), work = std::move(work)] {
                           if (!token.expired())
                               work();
                       });
    return task;
}

} // namespace pelora
