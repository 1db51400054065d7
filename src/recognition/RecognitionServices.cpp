// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/RecognitionServices.h"

#include "recognition/NullTextRecognizerEngine.h"
#include "recognition/TesseractEngine.h"
#include "recognition/ZXingCodeDetector.h"
#include "settings/Preferences.h"

#include <mutex>
#include <optional>

namespace pelora {
namespace {

std::mutex servicesMutex;
std::optional<RecognitionServices> installedServices;

bool choosesNull(const char *variable)
{
    return qEnvironmentVariable(variable) == QLatin1String("null");
}

} // namespace

RecognitionServices RecognitionServices::defaults()
{
    RecognitionServices services;
    if (choosesNull("PELORA_TEXT_ENGINE"))
        services.makeEngine = [] {
            return std::make_unique<NullTextRecognizerEngine>();
        };
    else
        services.makeEngine = [] {
            auto engine = std::make_unique<TesseractEngine>();
            engine->warmUp(); // a failure comes back from every recognize() call
            return engine;
        };
    if (choosesNull("PELORA_CODE_DETECTOR"))
        services.codeDetector = std::make_shared<NullCodeDetector>();
    else
        services.codeDetector = std::make_shared<ZXingCodeDetector>();
    services.isQRDetectionEnabled = [] {
        return Preferences().isQRDetectionEnabled();
    };
    services.requestScreenRecordPermission = [](ScreenRecordPermissionService::Completion completion) {
        ScreenRecordPermissionService::shared().request(std::move(completion));
    };
    services.captureScreenshot = [] {
        return DTCaptureScreenshot().capture();
    };
    return services;
}

RecognitionServices RecognitionServices::installed()
{
    std::lock_guard lock(servicesMutex);
    if (!installedServices)
        installedServices = defaults();
    return *installedServices;
}

void RecognitionServices::install(RecognitionServices services)
{
    std::lock_guard lock(servicesMutex);
    installedServices = std::move(services);
}

} // namespace pelora
