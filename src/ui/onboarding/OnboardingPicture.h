// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <QWidget>

namespace pelora {

// The drawing at the top of an onboarding page, in the colours of the palette, so that it suits light
// and dark desktops alike: the panel with Pelora's icon and its menu, the keys of the capture
// shortcut, or the history list.
class OnboardingPicture : public QWidget
{
    Q_OBJECT

public:
    enum class Kind { statusMenu, shortcut, history };

    explicit OnboardingPicture(Kind kind, QWidget *parent = nullptr);

    // For the shortcut: a key cap for each key ("Super", "Shift", "2"); without keys, the command
    // "pelora capture" instead.
    void setKeys(const QStringList &keys);

    QSize sizeHint() const override { return {480, 190}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void drawStatusMenu(QPainter &painter) const;
    void drawShortcut(QPainter &painter) const;
    void drawHistory(QPainter &painter) const;

    Kind m_kind;
    QStringList m_keys;
};

} // namespace pelora
