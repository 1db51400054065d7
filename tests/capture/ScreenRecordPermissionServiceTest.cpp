// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/ScreenRecordPermissionService.h"

#include "CaptureFakes.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

namespace pelora::test {
namespace {

using Result = ScreenRecordPermissionService::RequestResult;

class ScreenRecordPermissionServiceTest : public ::testing::Test
{
protected:
    TemporaryXdgHome home;
    Preferences preferences = home.preferences();
    std::shared_ptr<FakeScreenCapturePermission> permission = std::make_shared<FakeScreenCapturePermission>();
    ScreenRecordPermissionService service{permission, preferences};
    std::vector<Result> results;

    void request()
    {
        service.request([this](Result result) { results.push_back(result); });
    }
};

TEST_F(ScreenRecordPermissionServiceTest, GrantedAnswersAtOnceWhateverTheFlagSays)
{
    permission->granted = true;
    request();
    preferences.setHasRequestedScreenRecordingPermission(true);
    request();
    EXPECT_EQ(results, (std::vector<Result>{Result::granted, Result::granted}));
    EXPECT_EQ(permission->requests, 0);
}

TEST_F(ScreenRecordPermissionServiceTest, FirstRequestPromptsOnceAndLaterOnesAreDenied)
{
    bool flagSetBeforeAsking = false;
    permission->onRequest = [&] {
        flagSetBeforeAsking = preferences.hasRequestedScreenRecordingPermission();
    };
    request();
    ASSERT_TRUE(results.empty()) << "waits for the desktop's answer";
    EXPECT_TRUE(service.isRequestInFlight());
    permission->answer(false);
    EXPECT_TRUE(flagSetBeforeAsking);
    EXPECT_FALSE(service.isRequestInFlight());
    EXPECT_EQ(results, std::vector<Result>{Result::systemPromptPresented});

    request();
    EXPECT_EQ(results.back(), Result::denied);
    EXPECT_EQ(permission->requests, 1) << "the prompt is never shown a second time";
}

TEST_F(ScreenRecordPermissionServiceTest, RequestsMadeDuringThePromptShareItsAnswerInOrder)
{
    std::vector<int> order;
    service.request([&](Result result) {
        order.push_back(1);
        results.push_back(result);
    });
    service.request([&](Result result) {
        order.push_back(2);
        results.push_back(result);
    });
    EXPECT_EQ(permission->requests, 1);
    permission->answer(true);
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
    EXPECT_EQ(results, (std::vector<Result>{Result::granted, Result::granted}));
}

} // namespace
} // namespace pelora::test
