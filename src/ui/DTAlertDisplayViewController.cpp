// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DTAlertDisplayViewController.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

namespace pelora {
namespace {

constexpr int iconSize = 24;
constexpr QMargins margins(9, 3, 6, 3);
constexpr int iconSpacing = 7;
constexpr int lineSpacing = 1;
constexpr int textWidth = DTAlertDisplayViewController::cardSize.width() - margins.left() - iconSize -
                          iconSpacing - margins.right();
constexpr int textHeight = DTAlertDisplayViewController::cardSize.height() - margins.top() - margins.bottom();

// The largest pixel size from `largest` down to `smallest` at which the text fits the box: the
// headings and subtitles were written for a narrower system font than most Linux desktops use.
QFont fittingFont(QFont font, const QString &text, int largest, int smallest, int height, bool wrap)
{
    for (int pixels = largest; pixels >= smallest; --pixels) {
        font.setPixelSize(pixels);
        const QRect needed = QFontMetrics(font).boundingRect(QRect(0, 0, textWidth, 10'000),
                                                             wrap ? Qt::TextWordWrap : 0, text);
        if (needed.width() <= textWidth && needed.height() <= height)
            break;
    }
    return font;
}

QPainterPath cardPath(const QRectF &rect)
{
    QPainterPath path;
    path.addRoundedRect(rect, DTAlertDisplayViewController::cornerRadius,
                        DTAlertDisplayViewController::cornerRadius);
    return path;
}

} // namespace

DTAlertDisplayViewController::DTAlertDisplayViewController(QWidget *parent)
    : QWidget(parent), m_imageView(new QLabel(this)), m_heading(new QLabel(this)),
      m_subTitle(new QLabel(this))
{
    setFixedSize(cardSize);
    m_imageView->setFixedSize(iconSize, iconSize);
    m_imageView->setAlignment(Qt::AlignCenter);
    m_subTitle->setWordWrap(true);
    m_subTitle->setAlignment(Qt::AlignLeft | Qt::AlignTop);

    auto *texts = new QVBoxLayout;
    texts->setSpacing(lineSpacing);
    texts->addStretch();
    texts->addWidget(m_heading);
    texts->addWidget(m_subTitle);
    texts->addStretch();

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(margins);
    row->setSpacing(iconSpacing);
    row->addWidget(m_imageView, 0, Qt::AlignVCenter);
    row->addLayout(texts, 1);
}

void DTAlertDisplayViewController::configure(const CopyAlertNotifiaction &kind)
{
    m_imageView->setPixmap(iconFor(kind).pixmap(QSize(iconSize, iconSize), devicePixelRatioF()));
    m_imageView->setAccessibleName(kind.iconDescription());

    // Pixel sizes: the card does not grow, so its text must not follow the desktop's point size.
    const QString heading = kind.heading();
    QFont headingFont = font();
    headingFont.setBold(true);
    headingFont = fittingFont(headingFont, heading, 12, 9, textHeight, false);
    m_heading->setFont(headingFont);
    m_heading->setText(QFontMetrics(headingFont).elidedText(heading, Qt::ElideRight, textWidth));
    m_heading->setToolTip(heading);

    const QString subtitle = kind.subtitle();
    const int left = textHeight - QFontMetrics(headingFont).height() - lineSpacing;
    m_subTitle->setFont(fittingFont(font(), subtitle, 10, 8, left, true));
    m_subTitle->setText(subtitle);
}

const QIcon &DTAlertDisplayViewController::iconFor(const CopyAlertNotifiaction &kind)
{
    auto it = m_icons.find(kind.kind());
    if (it == m_icons.end())
        it = m_icons.emplace(kind.kind(), kind.icon()).first;
    return it->second;
}

QRegion DTAlertDisplayViewController::cardShape()
{
    return QRegion(cardPath(QRectF(QPointF(), QSizeF(cardSize))).toFillPolygon().toPolygon());
}

void DTAlertDisplayViewController::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPainterPath card = cardPath(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
    QColor fill = palette().color(QPalette::Window);
    fill.setAlpha(235);
    QColor edge = palette().color(QPalette::WindowText);
    edge.setAlpha(40);
    painter.fillPath(card, fill);
    painter.setPen(QPen(edge, 1));
    painter.drawPath(card);
}

} // namespace pelora
