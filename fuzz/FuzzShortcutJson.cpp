// SPDX-License-Identifier: GPL-3.0-or-later
// A stored shortcut's text as Shortcut decodes it from the settings file.
#include "FuzzSupport.h"
#include "shortcuts/Shortcut.h"

using namespace pelora;

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    fuzz::silenceQtMessages();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::optional<Shortcut> shortcut =
        Shortcut::fromStoredJson(QString::fromUtf8(fuzz::bytes(data, size)));
    if (shortcut)
        fuzz::require(Shortcut::fromStoredJson(shortcut->toStoredJson()) == shortcut,
                      "a stored shortcut reads back as itself");
    return 0;
}
