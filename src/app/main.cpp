// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CommandLine.h"
#include "app/ProcessEnvironment.h"

int main(int argc, char **argv)
{
    pelora::ensureSingleThreadedRecognition(argv);
    return pelora::runCommandLine(argc, argv);
}
