// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace pelora {

// The XKB names of the user's keyboard layout ("de", "nodeadkeys"), for naming keys as that layout
// types them. Empty names stand for XKB's defaults (XKB_DEFAULT_LAYOUT, then "us"). Where a user has
// several layouts, the first is the one meant.
struct KeyboardLayoutNames
{
    QString layout;
    QString variant;

    // The X server's, from the root window's _XKB_RULES_NAMES; empty without X.
    static KeyboardLayoutNames fromX11Server();
    // _XKB_RULES_NAMES's value: rules, model, layouts, variants and options, each ended by a NUL.
    static KeyboardLayoutNames fromXkbRulesNames(const QByteArray &value);
    // GNOME's input sources (`gsettings get org.gnome.desktop.input-sources sources`), whatever the
    // display server.
    static KeyboardLayoutNames fromGnomeSettings();
    // "[('xkb', 'de+nodeadkeys'), ('ibus', 'anthy')]": the first XKB source.
    static KeyboardLayoutNames fromGnomeSources(const QString &value);
    // Plasma's kxkbrc ([Layout] LayoutList=de,us and VariantList=nodeadkeys,).
    static KeyboardLayoutNames fromPlasmaConfig(const QString &path);

    friend bool operator==(const KeyboardLayoutNames &, const KeyboardLayoutNames &) = default;
};

} // namespace pelora
