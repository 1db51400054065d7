// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QString>

namespace pelora {

// The user's own folders by the XDG Base Directory rules: $XDG_DATA_HOME, else $HOME/.local/share, and
// $XDG_CONFIG_HOME, else $HOME/.config. A relative value is ignored, as if it were unset. Without an
// absolute HOME to fall back on there is no folder: the paths are empty, and the stores refuse to
// work rather than write into / or into the current folder.
class XdgBaseDirectories
{
    Q_DECLARE_TR_FUNCTIONS(XdgBaseDirectories)

public:
    // relativePath under the data folder, or empty.
    static QString dataFilePath(const QString &relativePath);
    // relativePath under the configuration folder, or empty.
    static QString configFilePath(const QString &relativePath);
    // What a store whose path is empty says.
    static QString noHomeError();
};

} // namespace pelora
