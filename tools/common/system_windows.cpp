// SPDX-License-Identifier: MIT
#include "common/system.h"

#include <cstdio>
#include <initializer_list>

#include <fcntl.h>
#include <io.h>

void PrepareStandardStreams()
{
    // A closed stream has no number that a file could get. Line ends stay those of the logs, as on other
    // systems.
    for (std::FILE* stream : {stdin, stdout, stderr})
        if (_fileno(stream) >= 0) _setmode(_fileno(stream), _O_BINARY);
}
