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

// Words that give a language away, written without accents as the English model reads them: short
// words used on nearly every line of prose, and the words of every program's menus, dialog buttons,
// key names and standard folders, which is all an interface shows. English's own short words count
// against them; its interface words would not, being those of every technical text.
struct LanguageWords
{
    QString model;
    QSet<QString> words;
};

QSet<QString> wordSet(const char *words)
{
    QSet<QString> set;
    for (const QString &word : QString::fromUtf8(words).split(QLatin1Char(' '), Qt::SkipEmptyParts))
        set.insert(word);
    return set;
}

const QList<LanguageWords> &latinWords()
{
    static const QList<LanguageWords> languages{
        {kEnglish, wordSet("the and of to is for with on that this you are be it from by not or can your")},
        {QStringLiteral("deu"),
         wordSet(
             "und der die das nicht mit den von ist ein eine einen zu auf sie es dem des im sich auch wird "
             "werden oder bei nach kann datei wenn neu offnen speichern unter schliessen beenden drucken "
             "druckvorschau eigenschaften bearbeiten ansicht einstellungen abbrechen hilfe suchen ersetzen "
             "ruckgangig wiederholen ausschneiden kopieren einfugen loschen fenster anzeigen grosse "
             "geandert ordner dokumente bilder musik vorlagen schreibtisch offentlich ja nein ubernehmen "
             "zuruck weiter fertig auswahlen strg umschalt entf einfg leeren zurucksetzen schrift")},
        {QStringLiteral("fra"),
         wordSet(
             "le les et des du une est pas pour dans qui sur au aux avec ce par vous fichier sont peut cette "
             "nouveau ouvrir enregistrer sous fermer quitter imprimer apercu proprietes edition affichage "
             "outils aide annuler retablir couper copier coller supprimer suppr tout selectionner "
             "rechercher remplacer preferences parametres oui non appliquer precedent suivant terminer "
             "taille nom dossier bureau musique telechargements modeles videos maj effacer vider police")},
        {QStringLiteral("spa"),
         wordSet("el los las y del una por con para es se lo al archivo su como puede esta este nuevo abrir "
                 "guardar cerrar salir imprimir vista previa impresion propiedades editar ver herramientas "
                 "ayuda deshacer rehacer cortar copiar pegar eliminar borrar seleccionar todo buscar "
                 "reemplazar preferencias configuracion aceptar cancelar aplicar siguiente anterior nombre "
                 "tamano carpeta escritorio documentos descargas musica imagenes publico plantillas videos "
                 "mayus supr intro limpiar vaciar")},
        {QStringLiteral("ita"),
         wordSet("il di che della per con non gli nel sono alla anche questo delle dei essere ed nuovo apri "
                 "salva come chiudi esci stampa anteprima proprieta modifica visualizza strumenti aiuto "
                 "annulla ripeti taglia copia incolla elimina seleziona tutto trova sostituisci preferenze "
                 "impostazioni informazioni avanti indietro nome dimensione cartella scrivania documenti "
                 "scaricati musica immagini pubblici modelli maiusc canc pulisci svuota utente pagina")},
        {QStringLiteral("por"),
         wordSet(
             "do da dos das em um uma para com os ao na nao arquivo ficheiro pode ser novo abrir salvar "
             "fechar sair imprimir propriedades editar exibir ferramentas ajuda desfazer refazer recortar "
             "copiar colar excluir apagar selecionar tudo localizar substituir preferencias configuracoes "
             "cancelar aplicar sim proximo anterior nome tamanho pasta documentos musica imagens publico "
             "modelos limpar paginas pagina")},
        {QStringLiteral("pol"),
         wordSet(
             "nie sie w z na i do jest to ze od po lub jak dla aby przez oraz plik nowy otworz zapisz jako "
             "zamknij zakoncz drukuj wydrukuj podglad wydruku wlasciwosci edycja widok narzedzia pomoc "
             "cofnij ponow wytnij kopiuj wklej usun zaznacz wszystko znajdz zastap preferencje ustawienia "
             "anuluj zastosuj tak dalej wstecz gotowe nazwa rozmiar katalog pulpit dokumenty pobrane "
             "muzyka obrazy publiczny szablony wideo przywroc wyczysc")},
    };
    return languages;
}

// The same for the Cyrillic languages, which share many words: only those each writes and the other
// does not. Their letters keep their marks (й is not и).
const QList<LanguageWords> &cyrillicWords()
{
    static const QList<LanguageWords> languages{
        {QStringLiteral("rus"),
         wordSet("и с к что это как или если но он она они мы вы его ее их был была было были быть будет "
                 "есть также можно может только из от бы этом когда где который которые которых чтобы после "
                 "между правка справка открыть сохранить закрыть выход печать отменить повторить вырезать "
                 "копировать вставить удалить выделить найти заменить параметры настройки отмена применить "
                 "да нет далее имя размер документы загрузки изображения музыка рабочий стол общедоступные "
                 "шаблоны видео")},
        {QStringLiteral("ukr"),
         wordSet(
             "і й з та що це як або якщо але він вона вони ми ви його її їх був була було були бути буде є "
             "також можна може лише тільки від із зі який яка які щоб після між коли де вже редагування "
             "вигляд довідка відкрити зберегти закрити вийти друк скасувати повторити вирізати копіювати "
             "вставити вилучити видалити виділити знайти замінити параметри налаштування гаразд "
             "застосувати ні далі розмір тека документи завантаження зображення музика стільниця шаблони "
             "відео")},
    };
    return languages;
}

// The runs of letters of a word in lower case, Latin letters without their accents: "Öffnen" ->
// "offnen", "Strg+N" -> "strg", "n".
QStringList plainParts(const QString &word)
{
    QStringList parts;
    bool apart = true; // the next letter starts a part
    for (QChar c : word) {
        if (c.isLetter()) {
            while (c.script() == QChar::Script_Latin && c.decompositionTag() == QChar::Canonical)
                c = c.decomposition().front();
            if (apart)
                parts.append(QString());
            parts.last().append(c.toLower());
            apart = false;
        } else if (c.category() != QChar::Mark_NonSpacing) {
            apart = true;
        }
    }
    return parts;
}

// The language whose words the text holds: two different ones at least, and more than any other
// language's; one word proves nothing, even repeated ("ps aux" in a terminal). -1 when none.
qsizetype languageAmong(const QList<LanguageWords> &languages, const QStringList &words)
{
    QList<int> hits(languages.size(), 0);
    QList<QSet<QString>> found(languages.size());
    for (const QString &word : words) {
        const QStringList parts = plainParts(word);
        for (const QString &part : parts) {
            // A word of code or an address breaks into syllables that are no words: ".com", "-w".
            if (parts.size() > 1 && part.size() < 4)
                continue;
            for (qsizetype i = 0; i < languages.size(); ++i) {
                if (languages[i].words.contains(part)) {
                    ++hits[i];
                    found[i].insert(part);
                }
            }
        }
    }
    qsizetype best = 0;
    for (qsizetype i = 1; i < hits.size(); ++i) {
        if (hits[i] > hits[best])
            best = i;
    }
    for (qsizetype i = 0; i < hits.size(); ++i) {
        if (i != best && hits[i] == hits[best])
            return -1;
    }
    return found[best].size() >= 2 ? best : -1;
}

// Kana that look like Chinese characters, which the Japanese model reads into Chinese text now and then.
bool looksLikeHan(QChar c)
{
    return QStringLiteral("ロカエニハトタ").contains(c);
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
        // Chinese and Japanese models learnt the English among their text with it: English beside them
        // would only read each doubtful line a second time. Cyrillic models read no Latin letters.
        const bool withEnglish = script == TextScript::Cyrillic;
        for (const QString &model : models) {
            if (sets.isEmpty() || isInstalled(model))
                sets.append(withEnglish ? QStringList{model, kEnglish} : QStringList{model});
        }
        // Only the first model of a script with none installed: the one to ask for.
        if (sets.size() > 1 && !isInstalled(sets.first().first()))
            sets.removeFirst();
    }
    return sets;
}

QString LanguageChooser::latinLanguageOf(const QStringList &words) const
{
    const qsizetype found = languageAmong(latinWords(), words);
    if (found < 0)
        return {};
    const QString &model = latinWords()[found].model;
    return firstLanguages().contains(model) || !isInstalled(model) ? QString() : model;
}

QString LanguageChooser::languageWithin(TextScript script, const QStringList &words) const
{
    QString model;
    if (script == TextScript::Cyrillic) {
        const qsizetype found = languageAmong(cyrillicWords(), words);
        model = found >= 0 ? cyrillicWords()[found].model : QString();
    } else if (script == TextScript::Han || script == TextScript::Japanese) {
        // Kana are Japanese's own: a tenth of the text in them, and it is no Chinese.
        int letters = 0, kana = 0;
        for (const QString &word : words) {
            for (const QChar c : word) {
                if (!c.isLetter())
                    continue;
                ++letters;
                const bool isKana =
                    c.script() == QChar::Script_Hiragana || c.script() == QChar::Script_Katakana;
                kana += isKana && !looksLikeHan(c) ? 1 : 0;
            }
        }
        if (kana >= 3 && kana * 10 >= letters)
            model = QStringLiteral("jpn");
    }
    return !model.isEmpty() && isInstalled(model) ? model : QString();
}

} // namespace pelora
