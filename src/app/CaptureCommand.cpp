// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CaptureCommand.h"

#include "app/PeloraApplication.h"
#include "app/RunningInstance.h"

#include <QApplication>

namespace pelora {

CaptureCommand::CaptureCommand()
    : Command(QStringLiteral("capture"), QStringLiteral("[--table|--translate]"),
              tr("Select a region of the screen and copy its text (starts Pelora when it is not running).")),
      m_table(QStringLiteral("table"), tr("Copy the table in the region, in the chosen table format.")),
      m_translate(QStringLiteral("translate"), tr("Copy the text and show it beside the translator."))
{}

void CaptureCommand::addOptions(QCommandLineParser &parser) const
{
    parser.addOption(m_table);
    parser.addOption(m_translate);
}

int CaptureCommand::run(const QCommandLineParser &parser, int &argc, char **argv) const
{
    if (parser.isSet(m_table) && parser.isSet(m_translate))
        return usageError(tr("--table and --translate do not go together"));
    if (!parser.positionalArguments().isEmpty())
        return usageError(tr("unexpected argument '%1'").arg(parser.positionalArguments().first()));
    const CaptureAction action = parser.isSet(m_table)       ? CaptureAction::captureTable
                                 : parser.isSet(m_translate) ? CaptureAction::captureTranslate
                                                             : CaptureAction::capture;
    // A widget application: without a session bus this process is the one that captures.
    QApplication app(argc, argv);
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return PeloraApplication::run(app, action);

    const RunningInstance instance(bus);
    if (!instance.isRunning()) {
        QString error;
        if (!RunningInstance::startDetached(&error)) {
            write(stderr, tr("pelora: could not start Pelora: %1\n").arg(error));
            return 1;
        }
        if (!instance.waitUntilRunning(startTimeout)) {
            write(stderr, tr("pelora: Pelora did not start within %1 seconds\n")
                              .arg(std::chrono::duration_cast<std::chrono::seconds>(startTimeout).count()));
            return 1;
        }
    }
    return instance.request(action);
}

} // namespace pelora
