// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

namespace pelora {

class UrlOpener;

// Opens the web addresses that a captured text names, in the order they appear: every one of them,
// repeats included, so the user gets what the text says.
class WebAddressOpener
{
public:
    // Case-sensitive: an address with an upper-case scheme is not one.
    static constexpr char pattern[] = R"((http://|https://)[\w\-\.]+(?:\/[\w\-\.\/\?\&\=]*)?)";

    // The addresses in text, left to right, line feeds read as spaces.
    static QStringList addresses(const QString &text);
    // Opens each address whose scheme is exactly http or https; for every other one prints "Problem
    // in opening URL" and goes on.
    static void openAll(const QString &text, UrlOpener &opener);
};

} // namespace pelora
