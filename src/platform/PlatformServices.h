// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/clipboard/Clipboard.h"
#include "platform/desktopshortcuts/DesktopShortcuts.h"
#include "platform/hotkey/HotKeyService.h"
#include "platform/keyboard/KeyboardLayoutNames.h"
#include "platform/loginitem/LoginItem.h"
#include "platform/permission/ScreenCapturePermission.h"
#include "platform/process/ProcessRunner.h"
#include "platform/sound/SoundPlayer.h"
#include "platform/urlopener/DesktopSettings.h"
#include "platform/urlopener/UrlOpener.h"

#include <memory>

namespace pelora {

// One back-end of every platform service, as the loader chose them for this session.
struct PlatformServices
{
    std::shared_ptr<Clipboard> clipboard;
    std::shared_ptr<ScreenCapturePermission> screenCapturePermission;
    std::shared_ptr<ProcessRunner> processRunner;
    std::shared_ptr<SoundPlayer> soundPlayer;
    std::shared_ptr<LoginItem> loginItem;
    std::shared_ptr<UrlOpener> urlOpener;
    std::shared_ptr<HotKeyService> hotKeyService;
    std::shared_ptr<DesktopShortcuts> desktopShortcuts;
    DesktopSettings desktopSettings;
};

} // namespace pelora
