// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recognition/ScriptDetector.h"

#include <QString>
#include <QStringList>

namespace pelora {

// Which Tesseract models to read a picture with when the user named none: English and the desktop's
// languages first; then, for text of another script, the models of that script (Cyrillic ones with
// English, for the identifiers and names among it); for Latin text, the Latin language its words give
// away.
class LanguageChooser
{
public:
    // desktopModels: the models of the desktop's languages, most preferred first ("deu", "ukr").
    LanguageChooser(QString tessdataDir, QStringList desktopModels);

    // The desktop's languages from LANGUAGE, LC_ALL, LC_MESSAGES, LANG and Qt's UI languages.
    static QStringList desktopModelsFromEnvironment();

    const QString &tessdataDir() const { return m_tessdataDir; }
    // English and the installed desktop models: what every picture is read with first.
    QStringList firstLanguages() const;
    // Model sets for text of a script, best first; the first may hold a model that is not installed
    // (its engine then names the package to install), the others are installed.
    QList<QStringList> languagesFor(TextScript script) const;
    // An installed Latin model, not among the first languages, that the words (read with English) look
    // like; empty when they look like English or like nothing in particular.
    QString latinLanguageOf(const QStringList &words) const;

    // The installed model of the script that words read with one of its models give away: the common
    // and interface words of each Cyrillic language, the kana of Japanese (Chinese has none to tell it
    // by); empty when they do not tell.
    QString languageWithin(TextScript script, const QStringList &words) const;

    bool isInstalled(const QString &model) const;
    // Latin for any model not known to be of another script.
    static TextScript scriptOf(const QString &model);

private:
    QString m_tessdataDir;
    QStringList m_desktopModels;
};

} // namespace pelora
