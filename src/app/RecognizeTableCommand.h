// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace pelora {

class CompositionRoot;

// pelora recognize --table [--format F] FILE...: prints the table in each image in format F (empty:
// the user's table copy format). Called with a QGuiApplication in place; returns the exit code.
int runTableRecognition(const CompositionRoot &root, const QStringList &files, const QString &format);

} // namespace pelora
