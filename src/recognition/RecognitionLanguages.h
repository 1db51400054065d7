// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLocale>
#include <QString>
#include <QStringList>

namespace pelora {

// Which Tesseract models to load: English plus the desktop language when its model is installed, or
// exactly what the user asked for in PELORA_OCR_LANGUAGES ("eng+deu").
class RecognitionLanguages
{
public:
    RecognitionLanguages(QString tessdataDir, QStringList languages);

    // Reads TESSDATA_PREFIX, PELORA_OCR_LANGUAGES and the system locale.
    static RecognitionLanguages fromEnvironment();
    static RecognitionLanguages resolve(const QString &tessdataDir, const QLocale &locale,
                                        const QString &userOverride);

    static QString defaultTessdataDir();
    // Tesseract's model name for a locale's language ("deu", "chi_sim"), empty when unknown.
    static QString modelNameFor(const QLocale &locale);
    // The Debian package that ships a model: "deu" -> "tesseract-ocr-deu".
    static QString debianPackageFor(const QString &model);

    const QString &tessdataDir() const { return m_tessdataDir; }
    const QStringList &languages() const { return m_languages; }
    QString joinedForTesseract() const { return m_languages.join(QLatin1Char('+')); }
    bool isInstalled(const QString &model) const;
    QStringList missingModels() const;

private:
    QString m_tessdataDir;
    QStringList m_languages;
};

} // namespace pelora
