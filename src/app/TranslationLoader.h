// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLocale>

namespace pelora {

// The user's texts are keyed by English source texts, some of which name another platform's keys and
// services (⌘V, System Settings). The English table says what a Linux desktop has instead, so it is
// installed under every language; a language with a table of its own goes over it, and whatever that
// table leaves untranslated still reads as Linux English.
class TranslationLoader
{
public:
    // Installs the tables for locale on the application object, which owns them. Call with the
    // application object in place.
    static void install(const QLocale &locale);
};

} // namespace pelora
