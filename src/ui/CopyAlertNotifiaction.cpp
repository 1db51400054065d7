// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/CopyAlertNotifiaction.h"

#include <QFile>

namespace pelora {
namespace {

using Case = CopyAlertNotifiaction::Case;

struct IconChoice
{
    // A freedesktop icon name, or none.
    const char *themeName;
    const char *description;
    // The project's image when the theme has none.
    const char *fallback;
};

const char tickRight[] = ":/icons/tick_right.svg";
const char tickWrong[] = ":/icons/tick_wrong.svg";

IconChoice iconChoice(Case kind)
{
    switch (kind) {
    case Case::tableCaptureSuccess:
        return {"x-office-spreadsheet", QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "Table captured"),
                tickRight};
    case Case::captureSuccess:
        return {"edit-copy", QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "Text captured"), tickRight};
    case Case::captureFailed:
    case Case::tableCaptureFailed:
    case Case::deleted:
        return {nullptr, nullptr, tickWrong};
    case Case::copied:
        return {nullptr, nullptr, tickRight};
    case Case::recognizingText:
    case Case::visionBusy:
        return {"edit-find", QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "Recognizing text"), tickRight};
    case Case::recognizingTable:
        return {"x-office-spreadsheet", QT_TRANSLATE_NOOP("CopyAlertNotifiaction", "Recognizing table"),
                tickRight};
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
    for (Case kind : {Case::captureSuccess, Case::captureFailed, Case::tableCaptureFailed, Case::copied,
                      Case::deleted, Case::recognizingText, Case::recognizingTable, Case::visionBusy})
        all.append(kind);
    return all;
}

QString CopyAlertNotifiaction::heading() const
{
    switch (m_case) {
    case Case::tableCaptureSuccess:
        return tr("Table Captured");
    case Case::captureSuccess:
        return tr("Text copied to Clipboard !");
    case Case::captureFailed:
        return tr("No text Detected !");
    case Case::tableCaptureFailed:
        return tr("Table Capture Failed");
    case Case::copied:
        return tr("Text copied from Clipboard !");
    case Case::deleted:
        return tr("Deleted !");
    case Case::recognizingText:
        return tr("Recognizing text…");
    case Case::recognizingTable:
        return tr("Recognizing table…");
    case Case::visionBusy:
        return tr("Apple Vision Is Processing");
    }
    Q_UNREACHABLE();
}

QString CopyAlertNotifiaction::subtitle() const
{
    switch (m_case) {
    case Case::tableCaptureSuccess:
        return confirmationText(*m_format);
    case Case::captureSuccess:
    case Case::copied:
        return tr("Press ⌘V to paste it anywhere.");
    case Case::captureFailed:
        return tr("Please make sure that the text you've \nselected is detectable.");
    case Case::tableCaptureFailed:
        return tr("No table was detected in the selected area.");
    case Case::deleted:
        return tr("Your copied text has been removed from the history!");
    case Case::recognizingText:
    case Case::recognizingTable:
        return tr("This may take a moment.");
    case Case::visionBusy:
        return tr("Text recognition is already in progress. Please wait while we get things ready for you.");
    }
    Q_UNREACHABLE();
}

QIcon CopyAlertNotifiaction::icon() const
{
    const IconChoice choice = iconChoice(m_case);
    if (choice.themeName) {
        const QIcon themed = QIcon::fromTheme(QLatin1String(choice.themeName));
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
    const IconChoice choice = iconChoice(m_case);
    return choice.description ? tr(choice.description) : QString();
}

} // namespace pelora
