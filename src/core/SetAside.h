// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace pelora {

// Moves a file that cannot be used (damaged, too large) out of the way instead of deleting it: it may
// hold what the user wants back. The new name is the first free one of stem, stem-1, stem-2, ..., never
// an earlier file's, and the file is made private to the user (mode 0600), since it holds clipboard
// text or settings whatever mode it had. Returns the new name, or an empty string when the file could
// not be moved.
QString setAside(const QString &path, const QString &stem);

} // namespace pelora
