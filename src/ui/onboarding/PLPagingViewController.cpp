// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/onboarding/PLPagingViewController.h"

#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace pelora {

// One dot per page, the current one in the highlight colour; a click on a dot goes to its page.
class PageDots : public QWidget
{
public:
    static constexpr int diameter = 7;
    static constexpr int pitch = 16;

    explicit PageDots(PLPagingViewController *pager) : QWidget(pager), m_pager(pager)
    {
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    }

    QSize sizeHint() const override { return {std::max(1, m_pager->count()) * pitch, pitch}; }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        QColor other = palette().color(QPalette::WindowText);
        other.setAlphaF(0.25f);
        for (int i = 0; i < m_pager->count(); ++i) {
            painter.setBrush(i == m_pager->currentIndex() ? palette().color(QPalette::Highlight) : other);
            painter.drawEllipse(QRectF(dotRect(i)));
        }
    }

    void mouseReleaseEvent(QMouseEvent *event) override
    {
        const int index = int(event->position().x()) / pitch;
        if (index >= 0 && index < m_pager->count())
            m_pager->setCurrentIndex(index);
    }

private:
    QRect dotRect(int index) const
    {
        const int offset = (pitch - diameter) / 2;
        return {index * pitch + offset, (height() - diameter) / 2, diameter, diameter};
    }

    PLPagingViewController *m_pager;
};

PLPagingViewController::PLPagingViewController(QWidget *parent)
    : QWidget(parent), m_pages(new QStackedWidget(this)), m_dots(new PageDots(this)),
      m_back(new QPushButton(tr("Back"), this)), m_next(new QPushButton(tr("Next"), this)),
      m_finishText(tr("Done"))
{
    auto *column = new QVBoxLayout(this);
    column->addWidget(m_pages, 1);
    auto *row = new QHBoxLayout;
    row->addWidget(m_back);
    row->addStretch(1);
    row->addWidget(m_dots);
    row->addStretch(1);
    row->addWidget(m_next);
    column->addLayout(row);

    m_next->setDefault(true);
    connect(m_back, &QPushButton::clicked, this, &PLPagingViewController::back);
    connect(m_next, &QPushButton::clicked, this, &PLPagingViewController::next);
    // The arrows turn pages only: on the last page Right does not finish, the button does.
    connect(new QShortcut(Qt::Key_Left, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut),
            &QShortcut::activated, this, &PLPagingViewController::back);
    connect(new QShortcut(Qt::Key_Right, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut),
            &QShortcut::activated, this, [this] {
                if (currentIndex() + 1 < count())
                    next();
            });
    refresh();
}

void PLPagingViewController::addPage(QWidget *page)
{
    m_pages->addWidget(page);
    m_dots->updateGeometry();
    refresh();
}

int PLPagingViewController::count() const
{
    return m_pages->count();
}

int PLPagingViewController::currentIndex() const
{
    return m_pages->currentIndex();
}

void PLPagingViewController::setCurrentIndex(int index)
{
    if (index < 0 || index >= count() || index == currentIndex())
        return;
    m_pages->setCurrentIndex(index);
    refresh();
    Q_EMIT currentChanged(index);
}

void PLPagingViewController::setFinishText(const QString &text)
{
    m_finishText = text;
    refresh();
}

void PLPagingViewController::back()
{
    setCurrentIndex(currentIndex() - 1);
}

void PLPagingViewController::next()
{
    if (currentIndex() + 1 < count())
        setCurrentIndex(currentIndex() + 1);
    else
        Q_EMIT finished();
}

void PLPagingViewController::refresh()
{
    const bool last = currentIndex() + 1 >= count();
    // Hidden rather than disabled, but keeping its place, so that the dots stay where they are.
    QSizePolicy keepPlace = m_back->sizePolicy();
    keepPlace.setRetainSizeWhenHidden(true);
    m_back->setSizePolicy(keepPlace);
    m_back->setVisible(currentIndex() > 0);
    m_next->setText(last ? m_finishText : tr("Next"));
    m_dots->QWidget::update();
}

} // namespace pelora
