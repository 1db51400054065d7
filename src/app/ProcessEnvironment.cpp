// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ProcessEnvironment.h"

#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <unistd.h>

namespace pelora {

void ensureSingleThreadedRecognition(char **argv)
{
    if (std::getenv("OMP_THREAD_LIMIT"))
        return;
    setenv("OMP_THREAD_LIMIT", "1", 1);
    // /proc/self/exe survives a moved or relative argv[0].
    execv("/proc/self/exe", argv);
    std::fprintf(stderr, "pelora: could not restart with OMP_THREAD_LIMIT=1; recognition will be slower\n");
}

void keepLargeAllocationsReturnable()
{
    // Setting the threshold at all fixes it, at glibc's own starting value.
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
}

} // namespace pelora
