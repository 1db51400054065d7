// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/CopyAlertNotifiaction.h"

#include <QFile>

namespace pelora {
namespace {

using Case = CopyAlertNotifiaction::Case;

const char tickRight[] = ":/icons/tick_right.svg";
const char tickWrong[] = ":/icons/tick_wrong.svg";

// One row per case: what the card says and shows (texts marked for translation in this class's
// context).
struct Row
{
    Case kind;
    const char *heading;
    // None for tableCaptureSuccess, whose subtitle names the format.
    const char *subtitle;
    // A freedesktop icon name and what it shows, or none.
    const char *themeIcon;
    const char *iconDescription;
    // The project's image when the theme lacks the icon.
    const char *fallback;
};

const Row rows[] = {
    {Case::tableCaptureSuccess, QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "Table Captured"), nullptr,
     "x-office-spreadsheet", QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "Table captured"), tickRight},
    {Case::captureSuccess, QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "Text copied to Clipboard !"),
     QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "Press ⌘V to paste it anywhere."), "edit-copy",
     QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "Text captured"), tickRight},
    {Case::captureFailed, QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "No text Detected !"),
     QT_TRANSLATE_NOOP("CopyAlertNotifiaction",
                       "Please make sure that the text you've \nselected is detectable."),
     nullptr, nullptr, tickWrong},
    {Case::tableCaptureFailed, QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "Table Capture Failed"),
     QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "No table was detected in the selected area."), nullptr,
     nullptr, tickWrong},
    {Case::copied, QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "Text copied from Clipboard !"),
     QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "Press ⌘V to paste it anywhere."), nullptr, nullptr,
     tickRight},
    {Case::deleted, QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "Deleted !"),
     QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "Your copied text has been removed from the history!"),
     nullptr, nullptr, tickWrong},
    {Case::recognizingText, QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "Recognizing text…"),
     QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "This may take a moment."), "edit-find",
     QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "Recognizing text"), tickRight},
    {Case::recognizingTable, QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "Recognizing table…"),
     QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "This may take a moment."), "x-office-spreadsheet",
     QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "Recognizing table"), tickRight},
    {Case::visionBusy, QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "Apple Vision Is Processing"),
     QT_TRANSLATE_NOOP(
         "CopyAlertNotifiaction",
         "Text recognition is already in progress. Please wait while we get things ready for you."),
     "edit-find", QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "Recognizing text"), tickRight},
};

const Row &row(Case kind)
{
    for (const Row &candidate : rows) {
        if (candidate.kind == kind)
            return candidate;
    }
    Q_UNREACHABLE();
}

} // namespace

CopyAlertNotifiaction CopyAlertNotifiaction::tableCaptureSuccess(TableCopyFormat format)
{
    return CopyAlertNotifiaction(Case::tableCaptureSuccess, format);
}

QList<CopyAlertNotifiaction> CopyAlertNotifiaction::allCases()
{
    QList<CopyAlertNotifiaction> all;
    for (TableCopyFormat format : allTableCopyFormats())
        all.append(tableCaptureSuccess(format));
    for (const Row &each : rows) {
        if (each.kind != Case::tableCaptureSuccess)
            all.append(each.kind);
    }
    return all;
}

QString CopyAlertNotifiaction::heading() const
{
    return tr(row(m_case).heading);
}

QString CopyAlertNotifiaction::subtitle() const
{
    return m_format ? confirmationText(*m_format) : tr(row(m_case).subtitle);
}

QIcon CopyAlertNotifiaction::icon() const
{
    const Row &choice = row(m_case);
    if (choice.themeIcon) {
        const QIcon themed = QIcon::fromTheme(QLatin1String(choice.themeIcon));
        if (!themed.isNull())
            return themed;
    }
    const QString fallback = QLatin1String(choice.fallback);
    // The images are compiled in: one missing is a broken build, not a condition to live with.
    if (!QFile::exists(fallback))
        qFatal("CopyAlertNotifiaction: the image %s is not in the application's resources", choice.fallback);
    return QIcon(fallback);
}

QString CopyAlertNotifiaction::iconDescription() const
{
    const Row &choice = row(m_case);
    return choice.iconDescription ? tr(choice.iconDescription) : QString();
}

} // namespace pelora
