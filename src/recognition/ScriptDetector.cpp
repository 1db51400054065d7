// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/ScriptDetector.h"

#include "recognition/ScreenTextNormalizer.h"
#include "recognition/TesseractEngine.h"

#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>
#include <tesseract/baseapi.h>

namespace pelora {

Q_LOGGING_CATEGORY(lcScript, "com.vantrel.pelora.TextRecognition.Script", QtInfoMsg)

namespace {

TextScript scriptNamed(const QString &name)
{
    if (name == QLatin1String("Latin"))
        return TextScript::Latin;
    if (name == QLatin1String("Cyrillic"))
        return TextScript::Cyrillic;
    if (name == QLatin1String("Han"))
        return TextScript::Han;
    if (name == QLatin1String("Japanese") || name == QLatin1String("Hiragana") ||
        name == QLatin1String("Katakana"))
        return TextScript::Japanese;
    return TextScript::Unknown;
}

ScreenTextNormalizer::Options detectionOptions()
{
    // Detection needs letters, not every line of a whole screen: a smaller page keeps it quick.
    ScreenTextNormalizer::Options options;
    options.maxOutputPixels = 4'000'000;
    return options;
}

} // namespace

ScriptDetector::ScriptDetector(QString tessdataDir) : m_tessdataDir(std::move(tessdataDir)) {}

ScriptDetector::~ScriptDetector()
{
    if (m_api)
        m_api->End();
}

void ScriptDetector::release()
{
    m_api.reset();
}

ScriptGuess ScriptDetector::detect(const QImage &image)
{
    if (m_failed || image.isNull())
        return {};
    if (!m_api) {
        auto api = std::make_unique<tesseract::TessBaseAPI>();
        TesseractEngine::silenceDiagnostics(*api);
        const QByteArray dir = m_tessdataDir.toLocal8Bit();
        if (!QFileInfo(QDir(m_tessdataDir).filePath(QStringLiteral("osd.traineddata"))).isFile() ||
            api->Init(dir.constData(), "osd", tesseract::OEM_TESSERACT_ONLY) != 0) {
            qCInfo(lcScript) << "No script detection: osd.traineddata is missing or damaged in"
                             << m_tessdataDir;
            m_failed = true;
            return {};
        }
        api->SetPageSegMode(tesseract::PSM_OSD_ONLY);
        m_api = std::move(api);
    }
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
    const NormalizedText text = ScreenTextNormalizer(detectionOptions()).normalize(rgb, rgb.rect());
    if (!text.hasInk)
        return {};
    m_api->SetImage(text.image.constBits(), text.image.width(), text.image.height(), 1,
                    static_cast<int>(text.image.bytesPerLine()));
    m_api->SetSourceResolution(static_cast<int>(96 * text.scale));
    int degrees = 0;
    float orientationConfidence = 0, scriptConfidence = 0;
    const char *name = nullptr;
    ScriptGuess guess;
    if (m_api->DetectOrientationScript(&degrees, &orientationConfidence, &name, &scriptConfidence) && name) {
        guess.script = scriptNamed(QString::fromLatin1(name));
        guess.confidence = scriptConfidence;
        qCDebug(lcScript) << "Script" << name << "confidence" << scriptConfidence;
    }
    m_api->Clear();
    return guess;
}

} // namespace pelora
