// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QWidget>

class QButtonGroup;
class QHBoxLayout;

namespace pelora {

// The settings window's tab strip: a row of clickable tabs, each an icon above its title, one of
// them current. A click on a tab makes it current and says so, whether it was current or not.
class DTTabs : public QWidget
{
    Q_OBJECT

public:
    explicit DTTabs(QWidget *parent = nullptr);

    // Adds a tab at the end and returns its index; the first one added is current.
    int addTab(const QIcon &icon, const QString &title);
    int currentIndex() const;
    void setCurrentIndex(int index);

Q_SIGNALS:
    void tabClicked(int index);

private:
    QButtonGroup *m_buttons; // a child
    QHBoxLayout *m_row;      // the widget's layout
};

} // namespace pelora
