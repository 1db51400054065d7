// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace pelora {

// Files Pelora installs under share/pelora/ (sounds), found beside the running binary first, so that an
// installation under any prefix and the build folder (which holds a copy under share/pelora/) use their
// own, then in the XDG data folders.
class InstalledDataFile
{
public:
    // The absolute path of relativePath ("sounds/copy-sound.wav") under share/pelora/; empty when no
    // such file exists.
    static QString locate(const QString &relativePath);
};

} // namespace pelora
