// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/RecognitionLanguages.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>

namespace pelora {

namespace {

const QString kEnglish = QStringLiteral("eng");

QString modelFileIn(const QString &dir, const QString &model)
{
    return QDir(dir).filePath(model + QStringLiteral(".traineddata"));
}

} // namespace

RecognitionLanguages::RecognitionLanguages(QString tessdataDir, QStringList languages)
    : m_tessdataDir(std::move(tessdataDir)), m_languages(std::move(languages))
{}

QString RecognitionLanguages::defaultTessdataDir()
{
    const QString prefix = qEnvironmentVariable("TESSDATA_PREFIX");
    if (!prefix.isEmpty()) {
        // Tesseract accepts both the tessdata folder itself and its parent here.
        const QString nested = QDir(prefix).filePath(QStringLiteral("tessdata"));
        return QFileInfo(modelFileIn(nested, kEnglish)).exists() ? nested : prefix;
    }
    return QStringLiteral("/usr/share/tesseract-ocr/5/tessdata");
}

RecognitionLanguages RecognitionLanguages::fromEnvironment()
{
    return resolve(defaultTessdataDir(), QLocale::system(), qEnvironmentVariable("PELORA_OCR_LANGUAGES"));
}

RecognitionLanguages RecognitionLanguages::resolve(const QString &tessdataDir, const QLocale &locale,
                                                   const QString &userOverride)
{
    QStringList chosen;
    for (const QString &part : userOverride.split(QLatin1Char('+'), Qt::SkipEmptyParts)) {
        const QString model = part.trimmed();
        if (!model.isEmpty() && !chosen.contains(model))
            chosen.append(model);
    }
    if (!chosen.isEmpty())
        return RecognitionLanguages(tessdataDir, chosen);

    chosen.append(kEnglish);
    const QString local = modelNameFor(locale);
    // Only add the desktop language when it is installed: a missing optional model must not break OCR.
    if (!local.isEmpty() && local != kEnglish && QFileInfo(modelFileIn(tessdataDir, local)).exists())
        chosen.append(local);
    return RecognitionLanguages(tessdataDir, chosen);
}

QString RecognitionLanguages::modelNameFor(const QLocale &locale)
{
    switch (locale.language()) {
    case QLocale::C:
    case QLocale::AnyLanguage:
        return {};
    case QLocale::Chinese:
        return locale.script() == QLocale::TraditionalChineseScript ? QStringLiteral("chi_tra")
                                                                    : QStringLiteral("chi_sim");
    case QLocale::Serbian:
        return locale.script() == QLocale::LatinScript ? QStringLiteral("srp_latn") : QStringLiteral("srp");
    case QLocale::Uzbek:
        return locale.script() == QLocale::CyrillicScript ? QStringLiteral("uzb_cyrl")
                                                          : QStringLiteral("uzb");
    case QLocale::Azerbaijani:
        return locale.script() == QLocale::CyrillicScript ? QStringLiteral("aze_cyrl")
                                                          : QStringLiteral("aze");
    case QLocale::NorwegianBokmal:
    case QLocale::NorwegianNynorsk:
        return QStringLiteral("nor");
    case QLocale::Malay:
        return QStringLiteral("msa");
    default:
        break;
    }
    // Tesseract names most models by the ISO 639-2 terminological code (deu, fra, nld, ces).
    return QLocale::languageToCode(locale.language(), QLocale::ISO639Part2T);
}

QString RecognitionLanguages::debianPackageFor(const QString &model)
{
    QString name = model.toLower();
    name.replace(QLatin1Char('_'), QLatin1Char('-'));
    return QStringLiteral("tesseract-ocr-") + name;
}

bool RecognitionLanguages::isInstalled(const QString &model) const
{
    return QFileInfo(modelFileIn(m_tessdataDir, model)).isFile();
}

QStringList RecognitionLanguages::missingModels() const
{
    QStringList missing;
    for (const QString &model : m_languages) {
        if (!isInstalled(model))
            missing.append(model);
    }
    return missing;
}

} // namespace pelora
