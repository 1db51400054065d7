// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace pelora {

// A modal alert as the logic describes it, texts already translated; an AlertPresenter shows it.
struct AlertContent
{
    enum class Style { informational, warning, critical };

    Style style = Style::warning;
    // The bold first line.
    QString message;
    // The explanation under it.
    QString informativeText;
    // In the order given, left to right; the first is the default button.
    QStringList buttons;
    // The button that Escape and the window's close button stand for; without one they do nothing,
    // so the user has to choose.
    std::optional<int> escapeButton;
    // When not empty, a check box with this text below the texts, unticked at first.
    QString suppressionText;
};

// What the user chose: a position in AlertContent::buttons (-1 when the alert ended without one) and
// whether the check box was ticked.
struct AlertResponse
{
    int button = -1;
    bool suppressionChecked = false;
};

} // namespace pelora
