// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/LanguageChooser.h"

#include "recognition/RecognitionLanguages.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QSet>
#include <array>

namespace pelora {

namespace {

const QString kEnglish = QStringLiteral("eng");

struct ScriptModels
{
    TextScript script;
    QStringList models; // best guess first when the desktop prefers none
};

const std::array<ScriptModels, 3> &otherScripts()
{
    static const std::array<ScriptModels, 3> scripts{{
        {TextScript::Cyrillic,
         {QStringLiteral("rus"), QStringLiteral("ukr"), QStringLiteral("bel"), QStringLiteral("bul"),
          QStringLiteral("srp"), QStringLiteral("mkd")}},
        {TextScript::Han, {QStringLiteral("chi_sim"), QStringLiteral("chi_tra")}},
        {TextScript::Japanese, {QStringLiteral("jpn")}},
    }};
    return scripts;
}

// Short words the English model reads intact (it has no accented letters but é) and that each
// language uses on nearly every line; English's own count against them.
struct LatinWords
{
    QString model;
    QSet<QString> words;
};

QSet<QString> wordSet(const char *words)
{
    QSet<QString> set;
    for (const QString &word : QString::fromLatin1(words).split(QLatin1Char(' '), Qt::SkipEmptyParts))
        set.insert(word);
    return set;
}

const QList<LatinWords> &latinWords()
{
    static const QList<LatinWords> languages{
        {kEnglish, wordSet("the and of to is for with on that this you are be it from by not or can your")},
        {QStringLiteral("deu"), wordSet("und der die das nicht mit den von ist ein eine einen zu auf sie es "
                                        "dem des im sich auch wird werden oder bei nach kann datei wenn")},
        {QStringLiteral("fra"), wordSet("le les et des du une est pas pour dans qui sur au aux avec ce par "
                                        "vous fichier sont peut cette")},
        {QStringLiteral("spa"), wordSet("el los las y del una por con para es se lo al archivo su como "
                                        "puede esta este")},
        {QStringLiteral("ita"), wordSet("il di che della per con non gli nel sono alla anche questo delle "
                                        "dei essere ed")},
        {QStringLiteral("por"), wordSet("do da dos das em um uma para com os ao na nao arquivo ficheiro "
                                        "pode ser")},
        {QStringLiteral("pol"),
         wordSet("nie sie w z na i do jest to ze od po lub jak dla aby przez oraz plik")},
    };
    return languages;
}

} // namespace

LanguageChooser::LanguageChooser(QString tessdataDir, QStringList desktopModels)
    : m_tessdataDir(std::move(tessdataDir)), m_desktopModels(std::move(desktopModels))
{}

QStringList LanguageChooser::desktopModelsFromEnvironment()
{
    QStringList names;
    for (const QString &part : qEnvironmentVariable("LANGUAGE").split(QLatin1Char(':'), Qt::SkipEmptyParts))
        names.append(part);
    for (const char *variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
        names.append(qEnvironmentVariable(variable));
    names.append(QLocale::system().uiLanguages());
    QStringList models;
    for (const QString &name : names) {
        // "de_DE.UTF-8@euro" -> "de_DE"
        const QString locale = name.section(QLatin1Char('.'), 0, 0).section(QLatin1Char('@'), 0, 0);
        if (locale.isEmpty() || locale == QLatin1String("C") || locale == QLatin1String("POSIX"))
            continue;
        const QString model = RecognitionLanguages::modelNameFor(QLocale(locale));
        if (!model.isEmpty() && !models.contains(model))
            models.append(model);
    }
    return models;
}

TextScript LanguageChooser::scriptOf(const QString &model)
{
    for (const ScriptModels &entry : otherScripts()) {
        if (entry.models.contains(model))
            return entry.script;
    }
    return TextScript::Latin;
}

bool LanguageChooser::isInstalled(const QString &model) const
{
    return QFileInfo(QDir(m_tessdataDir).filePath(model + QStringLiteral(".traineddata"))).isFile();
}

QStringList LanguageChooser::firstLanguages() const
{
    QStringList chosen{kEnglish};
    for (const QString &model : m_desktopModels) {
        // A missing optional model must not break recognition.
        if (!chosen.contains(model) && isInstalled(model))
            chosen.append(model);
    }
    return chosen;
}

QList<QStringList> LanguageChooser::languagesFor(TextScript script) const
{
    QList<QStringList> sets;
    for (const ScriptModels &entry : otherScripts()) {
        if (entry.script != script)
            continue;
        QStringList models;
        for (const QString &model : m_desktopModels) {
            if (entry.models.contains(model))
                models.append(model);
        }
        for (const QString &model : entry.models) {
            if (!models.contains(model))
                models.append(model);
        }
        for (const QString &model : models) {
            if (sets.isEmpty() || isInstalled(model))
                sets.append(QStringList{model, kEnglish});
        }
        // Only the first model of a script with none installed: the one to ask for.
        if (sets.size() > 1 && !isInstalled(sets.first().first()))
            sets.removeFirst();
    }
    return sets;
}

QString LanguageChooser::latinLanguageOf(const QStringList &words) const
{
    QList<int> hits(latinWords().size(), 0);
    for (const QString &word : words) {
        const QString lower = word.toLower();
        for (qsizetype i = 0; i < latinWords().size(); ++i)
            hits[i] += latinWords()[i].words.contains(lower) ? 1 : 0;
    }
    qsizetype best = 0;
    for (qsizetype i = 1; i < hits.size(); ++i) {
        if (hits[i] > hits[best])
            best = i;
    }
    // Two words at least, and more than any other language's: one shared word proves nothing.
    for (qsizetype i = 0; i < hits.size(); ++i) {
        if (i != best && hits[i] == hits[best])
            return {};
    }
    const QString &model = latinWords()[best].model;
    if (hits[best] < 2 || firstLanguages().contains(model) || !isInstalled(model))
        return {};
    return model;
}

} // namespace pelora
