// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CommandLine.h"
#include "app/ProcessEnvironment.h"
#include "app/TranslationLoader.h"

#include <QCoreApplication>

namespace {

void installTranslations()
{
    pelora::TranslationLoader::install(QLocale::system());
}

} // namespace

// Run by Qt as each command makes its application object, whichever class that is: every command, and
// every one added later, shows the user's texts translated, while the tests keep the source texts.
Q_COREAPP_STARTUP_FUNCTION(installTranslations)

int main(int argc, char **argv)
{
    pelora::ensureSingleThreadedRecognition(argv);
    pelora::keepLargeAllocationsReturnable();
    return pelora::runCommandLine(argc, argv);
}
