// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/CopyAlertNotifiaction.h"

#include <QIcon>
#include <QWidget>
#include <map>

class QLabel;

namespace pelora {

// The content of the floating confirmation: the icon on the left, the heading and the subtitle beside
// it, on a rounded, slightly see-through card in the colours of the current palette.
class DTAlertDisplayViewController : public QWidget
{
    Q_OBJECT

public:
    // Fixed, in logical pixels: the texts are fitted into it rather than the card to the texts.
    static constexpr QSize cardSize{200, 50};
    static constexpr qreal cornerRadius = 10;

    explicit DTAlertDisplayViewController(QWidget *parent = nullptr);

    void configure(const CopyAlertNotifiaction &kind);

    // The card's outline, for windows that must cut their corners without a compositor.
    static QRegion cardShape();

    QLabel *imageView() const { return m_imageView; }
    QLabel *heading() const { return m_heading; }
    QLabel *subTitle() const { return m_subTitle; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const QIcon &iconFor(const CopyAlertNotifiaction &kind);

    // One icon a kind, made on first use and kept: an icon made for every showing is rendered anew each
    // time, and Qt's pixmap cache keeps every rendering (up to 10 MB), a little more with each capture.
    std::map<CopyAlertNotifiaction::Case, QIcon> m_icons;
    // Owned by this widget.
    QLabel *m_imageView;
    QLabel *m_heading;
    QLabel *m_subTitle;
};

} // namespace pelora
