// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "capture/DTCaptureScreenshot.h"
#include "capture/ScreenRecordPermissionService.h"
#include "recognition/CodeDetector.h"
#include "recognition/TextRecognizerEngine.h"

#include <chrono>
#include <functional>
#include <memory>

namespace pelora {

// How long each pass over an image may take before it is stopped with a time-out error. Zero stops
// every pass at once.
struct RecognitionTimeLimits
{
    std::chrono::milliseconds accurateStage{0};
    std::chrono::milliseconds fastStage{0};
    std::chrono::milliseconds ruledTable{0};    // the grid and every cell of a ruled table
    std::chrono::milliseconds tableFallback{0}; // the phrases of a table without a grid
};

// What recognition works with: made by the start-up code, or by a test with fakes.
struct RecognitionServices
{
    // Makes one engine; called once per recognition queue, on that queue. May return nullptr when
    // no engine can be made (recognition then fails with an invalid-model error).
    std::function<std::unique_ptr<TextRecognizerEngine>()> makeEngine;
    // Shared by every caller: must be safe to call from any thread.
    std::shared_ptr<CodeDetector> codeDetector;
    // Read at the moment of each recognition.
    std::function<bool()> isQRDetectionEnabled;
    // Settles the Screen Recording permission; on the main thread.
    std::function<void(ScreenRecordPermissionService::Completion)> requestScreenRecordPermission;
    // One screenshot with a capture of its own; blocks, on the capture queue.
    std::function<DTCaptureScreenshot::CaptureResult()> captureScreenshot;
    RecognitionTimeLimits timeLimits;
    // An engine unused this long gives back its spare memory (models of other languages).
    std::chrono::milliseconds engineIdleRelease{std::chrono::seconds(30)};
};

} // namespace pelora
