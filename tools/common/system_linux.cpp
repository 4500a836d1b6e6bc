// SPDX-License-Identifier: MIT
#include "common/system.h"

#include <fcntl.h>
#include <unistd.h>

void PrepareStandardStreams()
{
    int descriptor = 0;
    do descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC);
    while (descriptor >= 0 && descriptor <= STDERR_FILENO);
    if (descriptor >= 0) close(descriptor);
}
