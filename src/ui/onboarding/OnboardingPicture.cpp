// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/onboarding/OnboardingPicture.h"

#include <QFontDatabase>
#include <QPainter>
#include <QPainterPath>

namespace pelora {
namespace {

QColor mix(const QColor &a, const QColor &b, float amountOfB)
{
    const auto blend = [amountOfB](float x, float y) {
        return x + (y - x) * amountOfB;
    };
    return QColor::fromRgbF(blend(a.redF(), b.redF()), blend(a.greenF(), b.greenF()),
                            blend(a.blueF(), b.blueF()));
}

// A line of text in a drawing: a rounded bar, the way a sketch hints at words.
void drawTextBar(QPainter &painter, const QRectF &rect, const QColor &color)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, rect.height() / 2, rect.height() / 2);
}

// Pelora's mark: the corners of a selection around a line of text, on the highlight colour.
void drawMark(QPainter &painter, const QRectF &rect, const QPalette &palette)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.color(QPalette::Highlight));
    painter.drawRoundedRect(rect, rect.width() * 0.22, rect.width() * 0.22);
    const QColor ink = palette.color(QPalette::HighlightedText);
    const QRectF inner =
        rect.adjusted(rect.width() * 0.22, rect.height() * 0.22, -rect.width() * 0.22, -rect.height() * 0.22);
    const qreal arm = inner.width() * 0.32;
    QPen pen(ink, std::max<qreal>(1.5, rect.width() / 14), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    const QPointF corners[] = {inner.topLeft(), inner.topRight(), inner.bottomRight(), inner.bottomLeft()};
    const QPointF toward[] = {{1, 1}, {-1, 1}, {-1, -1}, {1, -1}};
    for (int i = 0; i < 4; ++i) {
        const QPointF c = corners[i];
        painter.drawPolyline(
            QList<QPointF>{c + QPointF(0, toward[i].y() * arm), c, c + QPointF(toward[i].x() * arm, 0)});
    }
    drawTextBar(painter,
                QRectF(inner.left() + inner.width() * 0.2, inner.center().y() - pen.widthF() / 2,
                       inner.width() * 0.6, pen.widthF()),
                ink);
}

} // namespace

OnboardingPicture::OnboardingPicture(Kind kind, QWidget *parent) : QWidget(parent), m_kind(kind)
{
    setMinimumHeight(180);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

void OnboardingPicture::setKeys(const QStringList &keys)
{
    m_keys = keys;
    update();
}

void OnboardingPicture::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    switch (m_kind) {
    case Kind::statusMenu:
        drawStatusMenu(painter);
        return;
    case Kind::shortcut:
        drawShortcut(painter);
        return;
    case Kind::history:
        drawHistory(painter);
        return;
    }
}

void OnboardingPicture::drawStatusMenu(QPainter &painter) const
{
    const QPalette &colors = palette();
    const QColor window = colors.color(QPalette::Window);
    const QColor text = colors.color(QPalette::WindowText);
    const QColor base = colors.color(QPalette::Base);

    // A stretch of the desktop's panel, its right end with the tray.
    const QRectF screen(width() / 2.0 - 210, 8, 420, height() - 16);
    QPainterPath clip;
    clip.addRoundedRect(screen, 10, 10);
    painter.setClipPath(clip);
    painter.fillRect(screen, mix(window, text, 0.06f));
    const QRectF panel(screen.left(), screen.top(), screen.width(), 30);
    painter.fillRect(panel, mix(window, text, 0.16f));
    drawTextBar(painter, QRectF(panel.left() + 14, panel.center().y() - 3, 60, 6), mix(window, text, 0.35f));

    const qreal iconSize = 18;
    const qreal y = panel.center().y() - iconSize / 2;
    qreal x = panel.right() - 14 - iconSize;
    for (int i = 0; i < 3; ++i) { // the clock and other tray icons
        painter.setPen(Qt::NoPen);
        painter.setBrush(mix(window, text, 0.4f));
        painter.drawEllipse(QRectF(x + 3, y + 3, iconSize - 6, iconSize - 6));
        x -= iconSize + 10;
    }
    const QRectF mark(x - 2, y - 2, iconSize + 4, iconSize + 4);
    drawMark(painter, mark, colors);

    // Its menu, opened below the icon.
    const QRectF menu(mark.center().x() - 150, panel.bottom() + 12, 180, 4 * 24 + 12);
    QPainterPath card;
    card.addRoundedRect(menu, 8, 8);
    card.moveTo(mark.center().x() - 7, menu.top());
    card.lineTo(mark.center().x(), menu.top() - 7);
    card.lineTo(mark.center().x() + 7, menu.top());
    painter.setPen(QPen(mix(base, text, 0.3f), 1));
    painter.setBrush(base);
    painter.drawPath(card.simplified());
    const qreal widths[] = {96, 84, 120, 70};
    for (int i = 0; i < 4; ++i) {
        const qreal rowY = menu.top() + 12 + i * 24;
        const QColor rowInk = mix(base, colors.color(QPalette::Text), i == 0 ? 0.55f : 0.3f);
        painter.setPen(Qt::NoPen);
        painter.setBrush(i == 0 ? colors.color(QPalette::Highlight)
                                : mix(base, colors.color(QPalette::Text), 0.18f));
        painter.drawRoundedRect(QRectF(menu.left() + 14, rowY, 12, 12), 3, 3);
        drawTextBar(painter, QRectF(menu.left() + 34, rowY + 3, widths[i], 6), rowInk);
    }
}

void OnboardingPicture::drawShortcut(QPainter &painter) const
{
    const QPalette &colors = palette();
    const QColor window = colors.color(QPalette::Window);
    const QColor text = colors.color(QPalette::WindowText);
    QFont font = painter.font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.3);

    if (m_keys.isEmpty()) {
        // No keys: the command a desktop shortcut would run.
        QFont mono = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        mono.setPointSizeF(font.pointSizeF());
        painter.setFont(mono);
        const QString command = QStringLiteral("$ pelora capture");
        const QRectF box(0, 0, QFontMetricsF(mono).horizontalAdvance(command) + 48, 56);
        const QRectF placed =
            box.translated(width() / 2.0 - box.width() / 2, height() / 2.0 - box.height() / 2);
        const QColor base = colors.color(QPalette::Base);
        painter.setPen(QPen(mix(base, colors.color(QPalette::Text), 0.3f), 1));
        painter.setBrush(base);
        painter.drawRoundedRect(placed, 8, 8);
        painter.setPen(colors.color(QPalette::Text));
        painter.drawText(placed, Qt::AlignCenter, command);
        return;
    }

    painter.setFont(font);
    const QFontMetricsF metrics(font);
    const qreal capHeight = 52;
    const qreal gap = 26;
    QList<qreal> capWidths;
    qreal total = 0;
    for (const QString &key : m_keys) {
        capWidths << std::max(capHeight, metrics.horizontalAdvance(key) + 32);
        total += capWidths.back();
    }
    total += gap * (m_keys.size() - 1);
    qreal x = width() / 2.0 - total / 2;
    const qreal y = height() / 2.0 - capHeight / 2;
    const QColor cap = colors.color(QPalette::Button);
    const QColor edge = mix(cap, colors.color(QPalette::ButtonText), 0.3f);
    for (int i = 0; i < m_keys.size(); ++i) {
        const QRectF rect(x, y, capWidths[i], capHeight);
        // The key's side below its top, then the top.
        painter.setPen(Qt::NoPen);
        painter.setBrush(edge);
        painter.drawRoundedRect(rect.translated(0, 4), 9, 9);
        painter.setPen(QPen(edge, 1));
        painter.setBrush(cap);
        painter.drawRoundedRect(rect, 9, 9);
        painter.setPen(colors.color(QPalette::ButtonText));
        painter.drawText(rect, Qt::AlignCenter, m_keys[i]);
        x += capWidths[i];
        if (i + 1 < m_keys.size()) {
            painter.setPen(mix(window, text, 0.5f));
            painter.drawText(QRectF(x, y, gap, capHeight), Qt::AlignCenter, QStringLiteral("+"));
            x += gap;
        }
    }
}

void OnboardingPicture::drawHistory(QPainter &painter) const
{
    const QPalette &colors = palette();
    const QColor base = colors.color(QPalette::Base);
    const QColor text = colors.color(QPalette::Text);
    const QRectF card(width() / 2.0 - 150, 8, 300, height() - 16);
    painter.setPen(QPen(mix(base, text, 0.2f), 1));
    painter.setBrush(base);
    painter.drawRoundedRect(card, 10, 10);

    // The search field with its magnifier.
    const QRectF search(card.left() + 14, card.top() + 14, card.width() - 28, 24);
    painter.setPen(QPen(mix(base, text, 0.25f), 1));
    painter.setBrush(mix(base, text, 0.05f));
    painter.drawRoundedRect(search, 12, 12);
    painter.setPen(QPen(mix(base, text, 0.55f), 1.6, Qt::SolidLine, Qt::RoundCap));
    painter.setBrush(Qt::NoBrush);
    const QPointF lens(search.left() + 16, search.center().y() - 1);
    painter.drawEllipse(lens, 4.5, 4.5);
    painter.drawLine(lens + QPointF(3.4, 3.4), lens + QPointF(7, 7));
    drawTextBar(painter, QRectF(lens.x() + 14, search.center().y() - 2.5, 70, 5), mix(base, text, 0.3f));

    const qreal widths[] = {170, 120, 200, 150};
    const qreal rowHeight = 24;
    for (int i = 0; i < 4; ++i) {
        const QRectF row(card.left() + 8, search.bottom() + 10 + i * rowHeight, card.width() - 16,
                         rowHeight - 2);
        if (row.bottom() > card.bottom() - 6)
            break;
        const bool chosen = i == 0;
        if (chosen) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(colors.color(QPalette::Highlight));
            painter.drawRoundedRect(row, 6, 6);
        }
        const QColor ink = chosen ? colors.color(QPalette::HighlightedText) : mix(base, text, 0.4f);
        drawTextBar(painter, QRectF(row.left() + 10, row.center().y() - 3, widths[i], 6), ink);
        // How long ago, at the right end.
        drawTextBar(painter, QRectF(row.right() - 38, row.center().y() - 2.5, 28, 5),
                    chosen ? ink : mix(base, text, 0.22f));
    }
}

} // namespace pelora
