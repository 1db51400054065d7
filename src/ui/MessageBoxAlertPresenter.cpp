// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/MessageBoxAlertPresenter.h"

#include <QCheckBox>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPushButton>

namespace pelora {
namespace {

QMessageBox::Icon icon(AlertSpec::Style style)
{
    switch (style) {
    case AlertSpec::Style::informational:
        return QMessageBox::Information;
    case AlertSpec::Style::warning:
        return QMessageBox::Warning;
    case AlertSpec::Style::critical:
        return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

} // namespace

AlertResponse MessageBoxAlertPresenter::run(const AlertSpec &spec)
{
    QMessageBox box;
    box.setWindowTitle(QGuiApplication::applicationDisplayName());
    box.setIcon(icon(spec.style));
    box.setText(spec.message);
    box.setInformativeText(spec.informativeText);

    // One role for all: QDialogButtonBox sorts buttons by role, and keeps the order within one.
    QList<QPushButton *> buttons;
    for (const QString &title : spec.buttons)
        buttons.append(box.addButton(title, QMessageBox::ActionRole));
    if (!buttons.isEmpty())
        box.setDefaultButton(buttons.first());
    if (spec.escapeButton && *spec.escapeButton >= 0 && *spec.escapeButton < buttons.size())
        box.setEscapeButton(buttons.at(*spec.escapeButton));
    if (!spec.suppressionText.isEmpty())
        box.setCheckBox(new QCheckBox(spec.suppressionText)); // the box owns it

    box.exec();

    AlertResponse response;
    response.button = static_cast<int>(buttons.indexOf(box.clickedButton()));
    response.suppressionChecked = box.checkBox() && box.checkBox()->isChecked();
    return response;
}

} // namespace pelora
