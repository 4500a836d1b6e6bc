// SPDX-License-Identifier: MIT
// Loaded into Firefox: adds the modem lines of a real serial port to pseudo-terminals, which have none. Firefox reads
// them when it opens a port.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <stdarg.h>
#include <stdio.h>
#include <string.h>
#include <sys/ioctl.h>
#include <unistd.h>

static int IsPseudoTerminal(int file)
{
    char link[64], name[128];
    snprintf(link, sizeof link, "/proc/self/fd/%d", file);
    const ssize_t length = readlink(link, name, sizeof name - 1);
    if (length < 0) return 0;
    name[length] = 0;
    return strncmp(name, "/dev/pts/", 9) == 0 && !strstr(name, "ptmx");
}

int ioctl(int file, unsigned long request, ...)
{
    static int (*system)(int, unsigned long, ...);
    if (!system) system = dlsym(RTLD_NEXT, "ioctl");
    va_list arguments;
    va_start(arguments, request);
    void* argument = va_arg(arguments, void*);
    va_end(arguments);
    const int result = system(file, request, argument);
    if (result >= 0 || errno != ENOTTY || !IsPseudoTerminal(file)) return result;
    switch (request) {
    case TIOCMGET: *(int*)argument = TIOCM_CTS | TIOCM_DSR | TIOCM_CAR; return 0;
    case TIOCMSET:
    case TIOCMBIS:
    case TIOCMBIC: return 0;
    default: return result;
    }
}
