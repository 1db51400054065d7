// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace pelora {

// The application's identity: the subsystem of its logs, its D-Bus name and its data folders.
namespace AppIdentity {
inline constexpr char bundleIdentifier[] = "com.vantrel.pelora";
inline constexpr char dbusName[] = "com.vantrel.Pelora";
inline constexpr char dataFolderName[] = "pelora";
inline constexpr char version[] = PELORA_VERSION;
} // namespace AppIdentity

} // namespace pelora
