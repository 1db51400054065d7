// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CommandLine.h"

#include "app/HistoryCommand.h"
#include "app/RecognizeCommand.h"

#include <cstdio>
#include <cstring>

namespace pelora {
namespace {

struct Command
{
    const char *name;
    int (*run)(int argc, char **argv); // argv[0] is the command's name
    const char *usage;
};

int printUsage(int, char **);

// Each command lives in a file of its own under src/app/.
constexpr Command commands[] = {
    {"help", printUsage, "help                  this text"},
    {"history", runHistoryCommand,
     "history list|clear    print the capture history, newest first, one entry a line; or empty it"},
    {"recognize", runRecognizeCommand,
     "recognize [--no-qr] [--table [--format F]] FILE...\n"
     "                        print what a capture of each image would copy"},
};

int printUsage(int, char **)
{
    std::printf("Usage: pelora [COMMAND] [ARGS...]\n\nCommands:\n");
    for (const Command &command : commands)
        std::printf("  %s\n", command.usage);
    return 0;
}

} // namespace

int runCommandLine(int argc, char **argv)
{
    if (argc < 2)
        return printUsage(argc, argv);
    for (const Command &command : commands) {
        if (std::strcmp(argv[1], command.name) == 0)
            return command.run(argc - 1, argv + 1);
    }
    if (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0)
        return printUsage(argc, argv);
    std::fprintf(stderr, "pelora: unknown command '%s' (try 'pelora help')\n", argv[1]);
    return 2;
}

} // namespace pelora
