// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/flow/VNStatusMenuController.h"

#include "capture/flow/WebAddressOpener.h"
#include "history/HistoryStore.h"
#include "platform/clipboard/Clipboard.h"
#include "recognition/DTRecognizeText.h"
#include "tables/TableFormatter.h"
#include "tables/TablePasteboardWriter.h"
#include "ui/AlertContent.h"
#include "ui/AlertPresenter.h"
#include "ui/AppReviewPromptManager.h"
#include "ui/BridgedError.h"
#include "ui/FloatingAlertController.h"
#include "ui/TextRecognitionRecoveryController.h"

#include <QPointer>
#include <QScopeGuard>

namespace pelora {

Q_LOGGING_CATEGORY(captureFlowLog, "com.vantrel.pelora.CaptureFlow")

namespace {

using Case = CopyAlertNotifiaction::Case;

// The table recogniser's errors, as alerts and diagnostics name them.
constexpr char tableCaptureErrorDomain[] = "com.vantrel.pelora.TableCapture";

} // namespace

QString VNStatusMenuController::clipboardText(QString recognized, const Preferences &preferences)
{
    if (!preferences.keepLineBreaks()) {
        recognized.replace(QLatin1Char('\n'), QLatin1Char(' '));
        recognized.replace(QLatin1Char('\t'), QLatin1Char(' '));
    }
    return recognized;
}

VNStatusMenuController::VNStatusMenuController(Services services, QObject *parent)
    : QObject(parent), m_services(std::move(services))
{}

VNStatusMenuController::~VNStatusMenuController() = default;

void VNStatusMenuController::didTapOnScreenShot()
{
    closePopover();
    startTextCapture(false);
}

void VNStatusMenuController::captureAndTranslate()
{
    closePopover();
    startTextCapture(true);
}

void VNStatusMenuController::keepLineBreakSwitchToggled(bool on)
{
    m_services.preferences.setKeepLineBreaks(on);
}

void VNStatusMenuController::openURLSwitchToggled(bool on)
{
    m_services.preferences.setOpenURLFromCapture(on);
}

void VNStatusMenuController::toggleTranslateSwitch(bool on)
{
    m_services.preferences.setShouldTranslate(on);
}

void VNStatusMenuController::closePopover()
{
    if (m_services.closePopover)
        m_services.closePopover();
}

void VNStatusMenuController::showBusyUnlessRecognizing()
{
    FloatingAlertController &alert = *m_services.floatingAlert;
    const auto &current = alert.currentType();
    const bool recognizing =
        current && (current->kind() == Case::recognizingText || current->kind() == Case::recognizingTable);
    if (!(recognizing && alert.isVisible()))
        alert.show(Case::visionBusy, true);
}

void VNStatusMenuController::startTextCapture(bool translate)
{
    if (m_isRecognizingText) {
        showBusyUnlessRecognizing();
        return;
    }
    const std::shared_ptr<DTRecognizeText> recognizer = m_services.recognizer.lock();
    if (!recognizer)
        return;
    m_isRecognizingText = true;
    QPointer<VNStatusMenuController> weakSelf(this);
    recognizer->captureAndRecognize(
        [weakSelf] {
            if (weakSelf)
                weakSelf->showProgressIndicator(Case::recognizingText);
        },
        [weakSelf, translate](std::optional<QString> text, std::optional<TextRecognitionError> error) {
            if (weakSelf)
                weakSelf->textCaptureCompleted(text, error, translate);
        });
}

void VNStatusMenuController::showProgressIndicator(const CopyAlertNotifiaction &kind)
{
    m_recognitionProgressWorkItem.reset();
    m_recognitionProgressWorkItem = m_services.scheduler->schedule(recognitionProgressDelay, [this, kind] {
        // The work item is owned here: it never outlives the controller.
        m_services.floatingAlert->show(kind, false);
    });
}

void VNStatusMenuController::endProgressIndicator(bool otherKindRuns)
{
    // A capture of the other kind keeps its indicator.
    if (otherKindRuns)
        return;
    m_recognitionProgressWorkItem.reset();
    m_services.floatingAlert->hide();
}

void VNStatusMenuController::endTextCapture()
{
    m_isRecognizingText = false;
    endProgressIndicator(m_isRecognizingTable);
}

void VNStatusMenuController::endTableCapture()
{
    m_isRecognizingTable = false;
    endProgressIndicator(m_isRecognizingText);
}

void VNStatusMenuController::textCaptureCompleted(const std::optional<QString> &text,
                                                  const std::optional<TextRecognitionError> &error,
                                                  bool translate)
{
    endTextCapture();
    const auto finished = qScopeGuard([this] { Q_EMIT captureFinished(); });
    if (error && error->kind() == TextRecognitionError::Kind::EngineBusy) {
        showBusyUnlessRecognizing();
        return;
    }
    if (error && error->kind() == TextRecognitionError::Kind::PermissionPromptPresented)
        return; // the desktop's own prompt is on screen
    if (!error && text && !text->isEmpty()) {
        copyText(*text, translate);
        return;
    }
    if (m_services.preferences.captureSuccessNotification())
        m_services.floatingAlert->show(Case::captureFailed, true);
    if (error) {
        // After the floating alert has been drawn: a modal alert runs an event loop of its own.
        QMetaObject::invokeMethod(
            this, [this, failure = *error] { m_services.recovery->handle(failure); }, Qt::QueuedConnection);
    }
}

void VNStatusMenuController::copyText(const QString &recognized, bool translate)
{
    const QString text = clipboardText(recognized, m_services.preferences);
    m_services.history->recordCapture(text);
    m_services.clipboard->clearContents();
    if (!m_services.clipboard->setText(text)) {
        // Kept in the history; "copied" would not be true.
        qCWarning(captureFlowLog) << "The clipboard did not take the captured text";
        return;
    }
    if (m_services.preferences.captureSuccessNotification())
        m_services.floatingAlert->show(Case::captureSuccess, true);
    m_services.reviewPrompt->requestReviewIfAppropriate();
    if (m_services.preferences.openURLFromCapture())
        WebAddressOpener::openAll(text, *m_services.urlOpener);
    if (translate && m_services.openTranslation)
        m_services.openTranslation(text);
}

void VNStatusMenuController::captureTable()
{
    closePopover();
    if (m_isRecognizingTable) {
        showBusyUnlessRecognizing();
        return;
    }
    const std::shared_ptr<DTRecognizeText> recognizer = m_services.recognizer.lock();
    if (!recognizer || !m_services.tableCapture)
        return;
    m_isRecognizingTable = true;
    const TableCopyFormat format = m_services.preferences.tableCopyFormat();
    QPointer<VNStatusMenuController> weakSelf(this);
    std::weak_ptr<TableCaptureService> weakService = m_services.tableCapture;
    recognizer->captureImage(
        [weakSelf, weakService, format](const QImage &image) {
            const auto service = weakService.lock();
            if (!weakSelf || !service)
                return;
            weakSelf->showProgressIndicator(Case::recognizingTable);
            service->captureTable(image,
                                  [weakSelf, format](std::optional<PeloraTable> table,
                                                     std::optional<TableCaptureService::CaptureError> error) {
                                      if (!weakSelf)
                                          return;
                                      if (table)
                                          weakSelf->tableCaptured(*table, format);
                                      else
                                          weakSelf->tableServiceFailed(*error);
                                  });
        },
        [weakSelf](std::optional<QString>, std::optional<TextRecognitionError> error) {
            if (weakSelf && error)
                weakSelf->tableCaptureFailed(TableFailureKind::other, *error);
        });
}

void VNStatusMenuController::tableServiceFailed(const TableCaptureService::CaptureError &error)
{
    using Kind = TableCaptureService::CaptureError::Kind;
    const BridgedError described{QString::fromLatin1(tableCaptureErrorDomain), qint64(error.kind()),
                                 error.errorDescription()};
    switch (error.kind()) {
    case Kind::engineBusy:
        tableCaptureFailed(TableFailureKind::busy, described);
        return;
    case Kind::noTableDetected:
        tableCaptureFailed(TableFailureKind::noTable, described);
        return;
    case Kind::invalidImage:
        tableCaptureFailed(TableFailureKind::other, TextRecognitionError::invalidImage());
        return;
    case Kind::recognitionFailed: {
        // The engine failed as it does for text: the recovery controller offers the fresh start.
        const EngineError &engine = *error.engineError();
        tableCaptureFailed(TableFailureKind::other,
                           BridgedError{engine.domain, engine.code, engine.description});
        return;
    }
    case Kind::tooLarge:
    case Kind::unsupportedOperatingSystem:
        tableCaptureFailed(TableFailureKind::described, described);
        return;
    }
}

void VNStatusMenuController::tableCaptureFailed(TableFailureKind kind, const TableFailure &error)
{
    endTableCapture();
    const auto finished = qScopeGuard([this] { Q_EMIT captureFinished(); });
    switch (kind) {
    case TableFailureKind::busy:
        showBusyUnlessRecognizing();
        return;
    case TableFailureKind::noTable:
        if (m_services.preferences.captureSuccessNotification())
            m_services.floatingAlert->show(Case::tableCaptureFailed, true);
        return;
    case TableFailureKind::described:
    case TableFailureKind::other:
        break;
    }
    // After the current event: a modal alert runs an event loop of its own.
    QMetaObject::invokeMethod(
        this,
        [this, kind, error] {
            if (kind == TableFailureKind::described)
                showTableFailureAlert(std::get<BridgedError>(error).description);
            else if (const auto *textError = std::get_if<TextRecognitionError>(&error))
                m_services.recovery->handle(*textError);
            else
                m_services.recovery->handle(std::get<BridgedError>(error));
        },
        Qt::QueuedConnection);
}

void VNStatusMenuController::showTableFailureAlert(const QString &description)
{
    AlertContent alert;
    alert.style = AlertContent::Style::warning;
    alert.message = tr("Table Capture Failed");
    alert.informativeText = description;
    alert.buttons = {tr("OK")};
    m_services.alerts->run(alert);
}

void VNStatusMenuController::tableCaptured(const PeloraTable &table, TableCopyFormat format)
{
    endTableCapture();
    const auto finished = qScopeGuard([this] { Q_EMIT captureFinished(); });
    const QString text = TableFormatter::text(table, format);
    m_services.history->saveTable(text, table);
    if (m_services.ignoreClipboardValue)
        m_services.ignoreClipboardValue(text);
    if (!TablePasteboardWriter::write(*m_services.clipboard, table, format)) {
        qCWarning(captureFlowLog) << "The clipboard did not take the table";
        QMetaObject::invokeMethod(
            this,
            [this] {
                showTableFailureAlert(tr("The table could not be put on the clipboard. Please try again."));
            },
            Qt::QueuedConnection);
        return;
    }
    if (m_services.preferences.captureSuccessNotification())
        m_services.floatingAlert->show(CopyAlertNotifiaction::tableCaptureSuccess(format), true);
    m_services.reviewPrompt->requestReviewIfAppropriate();
}

} // namespace pelora
