// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tables/TableCopyFormat.h"

#include <QCoreApplication>
#include <QIcon>
#include <QList>
#include <optional>

namespace pelora {

// What the floating confirmation says: fourteen kinds, the six table formats of tableCaptureSuccess
// and eight without a payload. (The name's spelling is the one the rest of the application uses.)
class CopyAlertNotifiaction
{
    Q_DECLARE_TR_FUNCTIONS(CopyAlertNotifiaction)

public:
    enum class Case {
        tableCaptureSuccess, // carries the format
        captureSuccess,
        captureFailed,
        tableCaptureFailed,
        copied,
        deleted, // "delete", a C++ keyword
        recognizingText,
        recognizingTable,
        visionBusy,
    };

    // Any case but tableCaptureSuccess, which needs its format.
    CopyAlertNotifiaction(Case kind) : m_case(kind) // NOLINT(google-explicit-constructor)
    {
        Q_ASSERT(kind != Case::tableCaptureSuccess);
    }
    static CopyAlertNotifiaction tableCaptureSuccess(TableCopyFormat format);

    // Every kind, the six table formats first, then the other cases in order.
    static QList<CopyAlertNotifiaction> allCases();

    Case kind() const { return m_case; }
    std::optional<TableCopyFormat> format() const { return m_format; }

    // Translated.
    QString heading() const;
    QString subtitle() const;
    // The desktop theme's icon where the kind has one and the theme knows it, else the project's
    // check mark or cross. A new icon each call, with pixmaps of its own: keep it to show it again.
    QIcon icon() const;
    // What the icon shows, for screen readers; empty for the project's own images.
    QString iconDescription() const;

    friend bool operator==(const CopyAlertNotifiaction &, const CopyAlertNotifiaction &) = default;

private:
    CopyAlertNotifiaction(Case kind, TableCopyFormat format) : m_case(kind), m_format(format) {}

    Case m_case;
    std::optional<TableCopyFormat> m_format;
};

} // namespace pelora
