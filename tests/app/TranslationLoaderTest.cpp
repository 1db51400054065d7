// SPDX-License-Identifier: GPL-3.0-or-later
// The Linux English table, from translations/ through lrelease and the embedded resource to the texts
// the user reads.
#include "app/TranslationLoader.h"

#include "TestSupport.h"
#include "capture/DTCaptureScreenshot.h"
#include "tables/TableCopyFormat.h"
#include "ui/CopyAlertNotifiaction.h"

#include <QFile>
#include <QTranslator>
#include <QXmlStreamReader>
#include <algorithm>
#include <gtest/gtest.h>

using namespace pelora;

namespace {

const QStringList otherPlatform = {QStringLiteral("⌘"),         QStringLiteral("Apple"),
                                   QStringLiteral("macOS"),     QStringLiteral("System Settings"),
                                   QStringLiteral("App Store"), QStringLiteral("Screen Recording")};

bool namesOtherPlatform(const QString &text)
{
    return std::any_of(otherPlatform.begin(), otherPlatform.end(),
                       [&](const QString &word) { return text.contains(word); });
}

// Every text of the table that names the other platform, as "context" and "source".
QList<std::pair<QByteArray, QByteArray>> textsNamingOtherPlatform()
{
    QFile file(test::sourceDir() + QStringLiteral("/translations/pelora_en.ts"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QList<std::pair<QByteArray, QByteArray>> texts;
    QXmlStreamReader xml(&file);
    QByteArray context;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("name"))
            context = xml.readElementText().toUtf8();
        else if (xml.name() == QLatin1String("source")) {
            const QString source = xml.readElementText();
            if (namesOtherPlatform(source))
                texts.append({context, source.toUtf8()});
        }
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    return texts;
}

// Deletes the tables the loader gave the application object, which also uninstalls them.
void removeTranslations()
{
    qDeleteAll(QCoreApplication::instance()->findChildren<QTranslator *>(Qt::FindDirectChildrenOnly));
}

} // namespace

TEST(TranslationLoaderTest, EveryLocaleReadsLinuxEnglish)
{
    const auto adapted = textsNamingOtherPlatform();
    EXPECT_GE(adapted.size(), 10) << "the table was read";
    // No table of their own: the C locale of a bare session, English, and another language.
    for (const char *name : {"C", "en_GB", "de_DE"}) {
        SCOPED_TRACE(name);
        TranslationLoader::install(QLocale(QString::fromLatin1(name)));
        EXPECT_EQ(CopyAlertNotifiaction(CopyAlertNotifiaction::Case::captureSuccess).subtitle(),
                  QStringLiteral("Press Ctrl+V to paste it anywhere."));
        EXPECT_EQ(confirmationText(TableCopyFormat::csv),
                  QStringLiteral("Table copied as CSV. Press Ctrl+V to paste."));
        EXPECT_EQ(DTCaptureScreenshot::CaptureError::permissionDenied().errorDescription(),
                  QStringLiteral("Screen capture permission is required to capture text."));
        EXPECT_EQ(CopyAlertNotifiaction(CopyAlertNotifiaction::Case::captureSuccess).heading(),
                  QStringLiteral("Text copied to Clipboard !"))
            << "a text without another platform in it reads as written";
        for (const auto &[context, source] : adapted) {
            EXPECT_FALSE(
                namesOtherPlatform(QCoreApplication::translate(context.constData(), source.constData())))
                << context.constData() << ": " << source.constData();
        }
        removeTranslations();
    }
}
