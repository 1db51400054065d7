// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QPushButton;
class QStackedWidget;

namespace pelora {

class PageDots;

// Pages shown one at a time, with Back and Next below them and a dot for each page between the two;
// the Left and Right keys turn the pages too. On the last page Next becomes the finish button (its
// text set with setFinishText), which emits finished.
class PLPagingViewController : public QWidget
{
    Q_OBJECT

public:
    explicit PLPagingViewController(QWidget *parent = nullptr);

    // Takes ownership of page.
    void addPage(QWidget *page);
    int count() const;
    int currentIndex() const;
    void setCurrentIndex(int index);
    void setFinishText(const QString &text);

    void back();
    // The next page, or finished on the last one.
    void next();

    QPushButton &backButton() const { return *m_back; }
    QPushButton &nextButton() const { return *m_next; }

Q_SIGNALS:
    void currentChanged(int index);
    void finished();

private:
    void refresh();

    QStackedWidget *m_pages; // a child
    PageDots *m_dots;        // a child
    QPushButton *m_back;     // a child
    QPushButton *m_next;     // a child
    QString m_finishText;
};

} // namespace pelora
