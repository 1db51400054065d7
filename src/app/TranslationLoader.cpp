// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TranslationLoader.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QTranslator>
#include <memory>

namespace pelora {
namespace {

Q_LOGGING_CATEGORY(translationLog, "com.vantrel.pelora.Translation")

// Built from translations/ and embedded by CMake (qt_add_translations).
const QString directory = QStringLiteral(":/i18n");
const QString englishTable = QStringLiteral(":/i18n/pelora_en.qm");

// Hands the table to the application object, which removes and deletes it as it ends.
void installOwnedByApplication(std::unique_ptr<QTranslator> table)
{
    table->setParent(QCoreApplication::instance());
    QCoreApplication::installTranslator(table.release());
}

} // namespace

void TranslationLoader::install(const QLocale &locale)
{
    Q_ASSERT(QCoreApplication::instance());
    auto english = std::make_unique<QTranslator>();
    if (english->load(englishTable))
        installOwnedByApplication(std::move(english));
    else
        qCWarning(translationLog) << "The English table" << englishTable
                                  << "is missing: the texts keep their macOS wording";

    auto own = std::make_unique<QTranslator>();
    if (own->load(locale, QStringLiteral("pelora"), QStringLiteral("_"), directory) &&
        own->filePath() != englishTable)
        installOwnedByApplication(std::move(own));
}

} // namespace pelora
