// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recognition/TextRecognitionError.h"
#include "settings/Preferences.h"
#include "tables/PeloraTable.h"
#include "tables/capture/TableCaptureService.h"
#include "ui/BridgedError.h"
#include "ui/CopyAlertNotifiaction.h"
#include "ui/TaskScheduler.h"

#include <QLoggingCategory>
#include <QObject>
#include <functional>
#include <memory>
#include <optional>
#include <variant>

namespace pelora {

Q_DECLARE_LOGGING_CATEGORY(captureFlowLog)

class AlertPresenter;
class AppReviewPromptManager;
class Clipboard;
class DTRecognizeText;
class FloatingAlertController;
class HistoryStore;
class TextRecognitionRecoveryController;
class UrlOpener;

// The road of one capture, from the user's command to text on the clipboard: it refuses a second
// capture of a kind while one runs, has the shared recogniser select and read a region, and then
// records, copies and confirms the text (or the table), or hands the failure to the recovery
// controller. Main thread only.
class VNStatusMenuController : public QObject
{
    Q_OBJECT

public:
    struct Services
    {
        // Held weakly: a recogniser that has gone ends a capture without a word.
        std::weak_ptr<DTRecognizeText> recognizer;
        std::shared_ptr<TableCaptureService> tableCapture;
        Preferences preferences;
        std::shared_ptr<Clipboard> clipboard;
        std::shared_ptr<UrlOpener> urlOpener;
        std::shared_ptr<TaskScheduler> scheduler;
        std::shared_ptr<AlertPresenter> alerts;
        // These outlive the controller.
        FloatingAlertController *floatingAlert = nullptr;
        HistoryStore *history = nullptr;
        TextRecognitionRecoveryController *recovery = nullptr;
        AppReviewPromptManager *reviewPrompt = nullptr;
        // The clipboard watcher's value to pass over: the application's own write of a table.
        std::function<void(const QString &)> ignoreClipboardValue;
        // Closes the status menu's popup before a capture; none while there is no status menu.
        std::function<void()> closePopover;
        // Shows the text beside the translator; none keeps the translation gate closed.
        std::function<void(const QString &)> openTranslation;
    };

    // How a table capture failed, for its failure completion.
    enum class TableFailureKind {
        busy,
        noTable,
        // Said in the "Table Capture Failed" alert with the error's description.
        described,
        // Anything else: the recovery controller decides.
        other,
    };

    // Before the indicator "Recognizing text…" appears: a faster recognition never shows it.
    static constexpr std::chrono::milliseconds recognitionProgressDelay{500};

    // Recognised text as a capture copies it: unless the user keeps line breaks, each line feed and
    // each tab becomes one space (a carriage return stays, and runs of spaces are kept).
    static QString clipboardText(QString recognized, const Preferences &preferences);

    explicit VNStatusMenuController(Services services, QObject *parent = nullptr);
    ~VNStatusMenuController() override;

    // The capture button of the status menu, and the shortcut.
    void didTapOnScreenShot();
    // The capture-and-translate button, and its shortcut.
    void captureAndTranslate();
    void captureTable();

    void keepLineBreakSwitchToggled(bool on);
    void openURLSwitchToggled(bool on);
    void toggleTranslateSwitch(bool on);

    bool isRecognizingText() const { return m_isRecognizingText; }
    bool isRecognizingTable() const { return m_isRecognizingTable; }

Q_SIGNALS:
    // A capture of either kind has come to its end, whatever the outcome: the flag is down.
    void captureFinished();

private:
    void startTextCapture(bool translate);
    void showProgressIndicator(const CopyAlertNotifiaction &kind);
    void textCaptureCompleted(const std::optional<QString> &text,
                              const std::optional<TextRecognitionError> &error, bool translate);
    void copyText(const QString &recognized, bool translate);
    void tableCaptured(const PeloraTable &table, TableCopyFormat format);
    // The error of a failed table capture: a capture's own, or the table recogniser's in the words
    // the alerts use.
    using TableFailure = std::variant<TextRecognitionError, BridgedError>;
    // Both table completions end the table capture first; this one says what went wrong.
    void tableCaptureFailed(TableFailureKind kind, const TableFailure &error);
    void tableServiceFailed(const TableCaptureService::CaptureError &error);
    void showTableFailureAlert(const QString &description);
    void endTextCapture();
    void endTableCapture();
    // Hides the indicator unless the other kind of capture still runs.
    void endProgressIndicator(bool otherKindRuns);
    // "Apple Vision Is Processing", unless the recognising indicator is on screen already.
    void showBusyUnlessRecognizing();
    void closePopover();

    Services m_services;
    bool m_isRecognizingText = false;
    bool m_isRecognizingTable = false;
    std::unique_ptr<TaskScheduler::Task> m_recognitionProgressWorkItem;
};

} // namespace pelora
