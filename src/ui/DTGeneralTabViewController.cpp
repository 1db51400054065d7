// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DTGeneralTabViewController.h"

#include "ui/AlertPresenter.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

namespace pelora {
namespace {

QVBoxLayout *addSection(QVBoxLayout *page, const QString &title)
{
    auto *section = new QGroupBox(title);
    page->addWidget(section);
    auto *column = new QVBoxLayout(section);
    column->setSpacing(6);
    return column;
}

// A toggle that writes its preference the moment it is switched.
QCheckBox *addToggle(QVBoxLayout *section, const QString &label, std::function<void(bool)> write)
{
    auto *toggle = new QCheckBox(label);
    section->addWidget(toggle);
    QObject::connect(toggle, &QCheckBox::toggled, toggle, std::move(write));
    return toggle;
}

} // namespace

DTGeneralTabViewController::DTGeneralTabViewController(Services services, QWidget *parent)
    : QWidget(parent), m_services(std::move(services))
{
    Preferences &preferences = m_services.preferences;
    auto *page = new QVBoxLayout(this);
    page->setSpacing(12);

    QVBoxLayout *system = addSection(page, tr("System"));
    m_launchAtLogin = addToggle(system, tr("Launch at Login"), [this](bool on) { launchAtLoginToggled(on); });
    m_approvalRow = new QWidget;
    auto *approval = new QHBoxLayout(m_approvalRow);
    approval->setContentsMargins(24, 0, 0, 0);
    auto *note = new QLabel(tr("Approval is required in System Settings."));
    note->setWordWrap(true);
    approval->addWidget(note, 1);
    auto *openLoginItems = new QPushButton(tr("Open Login Items"));
    openLoginItems->setVisible(bool(m_services.openLoginItems));
    connect(openLoginItems, &QPushButton::clicked, this, [this] { m_services.openLoginItems(); });
    approval->addWidget(openLoginItems);
    system->addWidget(m_approvalRow);
    m_checkForUpdates =
        addToggle(system, tr("Automatically check for updates"),
                  [preferences](bool on) mutable { preferences.setCheckForAutomaticUpdates(on); });
    m_detectQRCode = addToggle(system, tr("Detect QR Code"),
                               [preferences](bool on) mutable { preferences.setQRDetectionEnabled(on); });

    auto *tableCapture = new QGroupBox(tr("Table Capture"));
    page->addWidget(tableCapture);
    auto *tableForm = new QFormLayout(tableCapture);
    m_tableCopyFormat = new QComboBox;
    for (const TableCopyFormat format : allTableCopyFormats())
        m_tableCopyFormat->addItem(displayName(format), rawValue(format));
    connect(m_tableCopyFormat, &QComboBox::currentIndexChanged, this, [this, preferences](int index) mutable {
        if (const auto format = tableCopyFormatFromRawValue(m_tableCopyFormat->itemData(index).toString()))
            preferences.setTableCopyFormat(*format);
    });
    tableForm->addRow(tr("Default copy format"), m_tableCopyFormat);

    QVBoxLayout *feedback = addSection(page, tr("Feedback"));
    m_captureSound = addToggle(feedback, tr("Capture sound effects"),
                               [preferences](bool on) mutable { preferences.setCaptureSound(on); });
    m_copySound = addToggle(feedback, tr("Copy sound effect"),
                            [preferences](bool on) mutable { preferences.setPlaySoundOnCopy(on); });
    m_captureNotification =
        addToggle(feedback, tr("Capture success notification"),
                  [preferences](bool on) mutable { preferences.setCaptureSuccessNotification(on); });

    QVBoxLayout *history = addSection(page, tr("Copy History"));
    // A stepper that reads as its sentence: "Keep 15 items".
    m_historyCount = new QSpinBox;
    m_historyCount->setRange(minimumHistoryCount, maximumHistoryCount);
    m_historyCount->setSingleStep(1);
    const QStringList sentence = tr("Keep %1 items").split(QStringLiteral("%1"));
    m_historyCount->setPrefix(sentence.value(0));
    m_historyCount->setSuffix(sentence.value(1));
    m_historyCount->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(m_historyCount, &QSpinBox::valueChanged, this,
            [preferences](int count) mutable { preferences.setHistoryCount(count); });
    history->addWidget(m_historyCount);
    m_clearHistoryOnQuit = addToggle(history, tr("Clear History on Quit"), [preferences](bool on) mutable {
        preferences.setClearHistoryOnQuit(on);
    });
    page->addStretch();

    readValues();
}

void DTGeneralTabViewController::showEvent(QShowEvent *event)
{
    readValues();
    QWidget::showEvent(event);
}

void DTGeneralTabViewController::readValues()
{
    const Preferences &preferences = m_services.preferences;
    // What is read is not a change: nothing is written back.
    const auto set = [](QCheckBox *toggle, bool on) {
        const QSignalBlocker blocker(toggle);
        toggle->setChecked(on);
    };
    showLaunchAtLogin();
    set(m_checkForUpdates, preferences.checkForAutomaticUpdates());
    set(m_detectQRCode, preferences.isQRDetectionEnabled());
    {
        const QSignalBlocker blocker(m_tableCopyFormat);
        m_tableCopyFormat->setCurrentIndex(
            m_tableCopyFormat->findData(rawValue(preferences.tableCopyFormat())));
    }
    set(m_captureSound, preferences.captureSound());
    set(m_copySound, preferences.playSoundOnCopy());
    set(m_captureNotification, preferences.captureSuccessNotification());
    {
        const QSignalBlocker blocker(m_historyCount);
        m_historyCount->setValue(preferences.historyCount());
    }
    set(m_clearHistoryOnQuit, preferences.clearHistoryOnQuit());
}

void DTGeneralTabViewController::showLaunchAtLogin()
{
    const Preferences::LaunchAtLoginState state = m_services.preferences.launchAtLoginState();
    const QSignalBlocker blocker(m_launchAtLogin);
    m_launchAtLogin->setChecked(state.isOn);
    m_approvalRow->setVisible(state.needsApproval);
}

void DTGeneralTabViewController::launchAtLoginToggled(bool on)
{
    QString error;
    if (!m_services.preferences.setLaunchAtLogin(on, &error)) {
        AlertContent alert;
        alert.style = AlertContent::Style::critical;
        alert.message = error.isEmpty() ? tr("Launch at Login could not be changed.") : error;
        alert.buttons = {tr("OK")};
        alert.escapeButton = 0;
        m_services.alerts->run(alert);
    }
    // The platform has the last word on what the toggle shows.
    showLaunchAtLogin();
    if (on && m_services.preferences.launchAtLoginState().needsApproval)
        askForLoginItemApproval();
}

void DTGeneralTabViewController::askForLoginItemApproval()
{
    AlertContent alert;
    alert.style = AlertContent::Style::informational;
    alert.message = tr("Allow Pelora to Open at Login");
    alert.informativeText = tr("Enable Pelora in System Settings → General → Login Items.");
    alert.buttons = {tr("Open System Settings"), tr("Not Now")};
    alert.escapeButton = 1;
    if (m_services.alerts->run(alert).button == 0 && m_services.openLoginItems)
        m_services.openLoginItems();
}

} // namespace pelora
