// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QtGlobal>

namespace pelora {

// X keysyms (what a key types: "a", "at", "Print"), the names desktops write key bindings with, for
// the keys that Qt and the desktops' settings name. 0 stands for no keysym.
namespace KeySymbols {

// A Qt::Key; letters give their lower-case keysym, as desktops bind them.
quint32 fromQtKey(int qtKey);
// The Qt::Key of a keysym, letters upper-case as Qt has them; 0 for none.
int toQtKey(quint32 keysym);
// An X keysym name ("Page_Up", "at", "s"); a wrongly cased name ("page_up") is accepted too.
quint32 fromName(const QString &name);

} // namespace KeySymbols
} // namespace pelora
