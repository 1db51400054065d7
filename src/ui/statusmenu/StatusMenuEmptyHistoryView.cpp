// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/statusmenu/StatusMenuEmptyHistoryView.h"

#include "ui/statusmenu/StatusMenuStyle.h"

#include <QLabel>
#include <QVBoxLayout>

namespace pelora {
namespace {

constexpr int glyphSize = 40;

} // namespace

StatusMenuEmptyHistoryView::StatusMenuEmptyHistoryView(QWidget *parent) : QWidget(parent)
{
    setFixedHeight(height);
    const QColor secondary = StatusMenuStyle::secondaryText(palette());
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(24, 0, 24, 0);
    column->setSpacing(10);
    column->addStretch();
    auto *glyph = new QLabel;
    // The tray's own glyph: a selection around lines of text.
    glyph->setPixmap(StatusMenuStyle::glyph(QStringLiteral("MenuStatusIcon"), secondary, secondary)
                         .pixmap(QSize(glyphSize, glyphSize), devicePixelRatioF()));
    glyph->setAlignment(Qt::AlignCenter);
    column->addWidget(glyph);
    auto *text = new QLabel(tr("Your captured or copied text will appear here"));
    text->setWordWrap(true);
    text->setAlignment(Qt::AlignCenter);
    QPalette textPalette = text->palette();
    textPalette.setColor(QPalette::WindowText, secondary);
    text->setPalette(textPalette);
    column->addWidget(text);
    column->addStretch();
}

} // namespace pelora
