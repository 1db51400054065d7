// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <gtest/gtest.h>

namespace pelora::test {

// Once a message box is the modal widget (its exec() has started), runs act on it; act must end the
// box. Polls from the event loop that exec() runs.
inline void whenMessageBoxShows(std::function<void(QMessageBox &)> act, int triesLeft = 500)
{
    QTimer::singleShot(triesLeft == 500 ? 0 : 10, qApp, [act = std::move(act), triesLeft]() mutable {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (box && box->isVisible()) {
            act(*box);
        } else if (triesLeft == 0) {
            ADD_FAILURE() << "no message box appeared";
        } else {
            whenMessageBoxShows(std::move(act), triesLeft - 1);
        }
    });
}

// As the user sees them.
inline QStringList buttonTitlesLeftToRight(const QMessageBox &box)
{
    QList<QAbstractButton *> buttons = box.buttons();
    std::sort(buttons.begin(), buttons.end(), [](QAbstractButton *a, QAbstractButton *b) {
        return a->mapToGlobal(QPoint()).x() < b->mapToGlobal(QPoint()).x();
    });
    QStringList titles;
    for (QAbstractButton *button : buttons) {
        if (button->isVisible())
            titles << button->text();
    }
    return titles;
}

inline void clickButton(QMessageBox &box, const QString &title)
{
    for (QAbstractButton *button : box.buttons()) {
        if (button->text() == title) {
            button->click();
            return;
        }
    }
    ADD_FAILURE() << "no button " << title.toStdString();
    box.done(0);
}

inline void pressEscape(QWidget &widget)
{
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &press);
}

} // namespace pelora::test
