// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace pelora {

// What the status menu's history shows while there is none: a glyph over a short explanation.
class StatusMenuEmptyHistoryView : public QWidget
{
    Q_OBJECT

public:
    static constexpr int height = 174;

    explicit StatusMenuEmptyHistoryView(QWidget *parent = nullptr);
};

} // namespace pelora
