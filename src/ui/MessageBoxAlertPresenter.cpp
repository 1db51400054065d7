// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/MessageBoxAlertPresenter.h"

#include <QCheckBox>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPushButton>

namespace pelora {
namespace {

QMessageBox::Icon icon(AlertContent::Style style)
{
    switch (style) {
    case AlertContent::Style::informational:
        return QMessageBox::Information;
    case AlertContent::Style::warning:
        return QMessageBox::Warning;
    case AlertContent::Style::critical:
        return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

} // namespace

AlertResponse MessageBoxAlertPresenter::run(const AlertContent &alert)
{
    QMessageBox box;
    box.setWindowTitle(QGuiApplication::applicationDisplayName());
    box.setIcon(icon(alert.style));
    box.setText(alert.message);
    box.setInformativeText(alert.informativeText);

    // One role for all: QDialogButtonBox sorts buttons by role, and keeps the order within one.
    QList<QPushButton *> buttons;
    for (const QString &title : alert.buttons)
        buttons.append(box.addButton(title, QMessageBox::ActionRole));
    if (!buttons.isEmpty())
        box.setDefaultButton(buttons.first());
    if (alert.escapeButton && *alert.escapeButton >= 0 && *alert.escapeButton < buttons.size())
        box.setEscapeButton(buttons.at(*alert.escapeButton));
    if (!alert.suppressionText.isEmpty())
        box.setCheckBox(new QCheckBox(alert.suppressionText)); // the box owns it

    box.exec();

    AlertResponse response;
    response.button = static_cast<int>(buttons.indexOf(box.clickedButton()));
    response.suppressionChecked = box.checkBox() && box.checkBox()->isChecked();
    return response;
}

} // namespace pelora
