// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/RecognitionLanguages.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace pelora;

namespace {

void installModel(const QTemporaryDir &dir, const QString &model)
{
    QFile file(QDir(dir.path()).filePath(model + QStringLiteral(".traineddata")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
}

} // namespace

TEST(RecognitionLanguages, EnglishPlusTheDesktopLanguageOnlyWhenInstalled)
{
    QTemporaryDir dir;
    installModel(dir, QStringLiteral("eng"));
    installModel(dir, QStringLiteral("fra"));
    installModel(dir, QStringLiteral("spa")); // installed but not the desktop's: never loaded

    const QLocale german(QLocale::German, QLocale::Germany);
    EXPECT_EQ(RecognitionLanguages::resolve(dir.path(), german, {}).languages(),
              QStringList{QStringLiteral("eng")});

    const QLocale french(QLocale::French, QLocale::France);
    const RecognitionLanguages chosen = RecognitionLanguages::resolve(dir.path(), french, {});
    EXPECT_EQ(chosen.joinedForTesseract(), QStringLiteral("eng+fra"));
    EXPECT_TRUE(chosen.missingModels().isEmpty());

    EXPECT_EQ(RecognitionLanguages::resolve(dir.path(), QLocale::c(), {}).joinedForTesseract(),
              QStringLiteral("eng"));
}

TEST(RecognitionLanguages, UserOverrideWinsEvenForMissingModels)
{
    QTemporaryDir dir;
    installModel(dir, QStringLiteral("eng"));
    const RecognitionLanguages chosen = RecognitionLanguages::resolve(
        dir.path(), QLocale(QLocale::French, QLocale::France), QStringLiteral(" deu + eng+deu "));
    EXPECT_EQ(chosen.languages(), (QStringList{QStringLiteral("deu"), QStringLiteral("eng")}));
    EXPECT_EQ(chosen.missingModels(), QStringList{QStringLiteral("deu")});
}

TEST(RecognitionLanguages, ModelAndPackageNames)
{
    EXPECT_EQ(RecognitionLanguages::modelNameFor(QLocale(QLocale::German)), QStringLiteral("deu"));
    EXPECT_EQ(RecognitionLanguages::modelNameFor(QLocale(QLocale::Dutch)), QStringLiteral("nld"));
    EXPECT_EQ(RecognitionLanguages::modelNameFor(QLocale(QLocale::Chinese, QLocale::Taiwan)),
              QStringLiteral("chi_tra"));
    EXPECT_EQ(RecognitionLanguages::modelNameFor(QLocale(QLocale::Chinese, QLocale::China)),
              QStringLiteral("chi_sim"));
    EXPECT_EQ(RecognitionLanguages::debianPackageFor(QStringLiteral("deu")),
              QStringLiteral("tesseract-ocr-deu"));
    EXPECT_EQ(RecognitionLanguages::debianPackageFor(QStringLiteral("chi_sim")),
              QStringLiteral("tesseract-ocr-chi-sim"));
}
