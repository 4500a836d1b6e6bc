// SPDX-License-Identifier: MIT
// Makes system calls on one file fail, in a program that loads this library first (LD_PRELOAD).
//
// TORAVANE_FAULT is "CALL ERROR N PATH": the N-th such call (1: the first) and all later ones fail with that
// error number. CALL is open, read, write, tcgetattr, tcsetattr, ioctl, fopen (also for fdopen), fwrite,
// fclose or symlink; PATH is the beginning of the file's name.

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <set>
#include <string>
#include <sys/types.h>
#include <termios.h>

namespace
{

struct Fault {
    char call[32] = "";
    int error = 0;
    long from = 0;
    char path[256] = "";
    long calls = 0;

    Fault()
    {
        const char* text = std::getenv("TORAVANE_FAULT");
        if (text && std::sscanf(text, "%31s %d %ld %255s", call, &error, &from, path) != 4) std::abort();
    }
};

Fault& TheFault()
{
    static Fault fault;
    return fault;
}

std::set<int>& Files()
{
    static std::set<int> files;
    return files;
}

std::set<const FILE*>& Streams()
{
    static std::set<const FILE*> streams;
    return streams;
}

bool IsMeant(const char* path)
{
    return TheFault().path[0] && std::strncmp(path, TheFault().path, std::strlen(TheFault().path)) == 0;
}

// Counts a call on the given file; true if it must fail.
bool Fails(const char* call)
{
    Fault& fault = TheFault();
    if (std::strcmp(fault.call, call) != 0 || ++fault.calls < fault.from) return false;
    errno = fault.error;
    return true;
}

template <typename Function> Function* Real(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

int open(const char* path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const int mode = (flags & O_CREAT) ? va_arg(rest, int) : 0;
    va_end(rest);
    if (!IsMeant(path)) return Real<int(const char*, int, int)>("open")(path, flags, mode);
    if (Fails("open")) return -1;
    const int file = Real<int(const char*, int, int)>("open")(path, flags, mode);
    if (file >= 0) Files().insert(file);
    return file;
}

ssize_t read(int file, void* bytes, size_t count)
{
    if (Files().contains(file) && Fails("read")) return -1;
    return Real<ssize_t(int, void*, size_t)>("read")(file, bytes, count);
}

ssize_t write(int file, const void* bytes, size_t count)
{
    if (Files().contains(file) && Fails("write")) return -1;
    return Real<ssize_t(int, const void*, size_t)>("write")(file, bytes, count);
}

int tcgetattr(int file, termios* settings) noexcept
{
    if (Files().contains(file) && Fails("tcgetattr")) return -1;
    return Real<int(int, termios*)>("tcgetattr")(file, settings);
}

int tcsetattr(int file, int actions, const termios* settings) noexcept
{
    if (Files().contains(file) && Fails("tcsetattr")) return -1;
    return Real<int(int, int, const termios*)>("tcsetattr")(file, actions, settings);
}

FILE* fopen(const char* path, const char* mode)
{
    if (!IsMeant(path)) return Real<FILE*(const char*, const char*)>("fopen")(path, mode);
    if (Fails("fopen")) return nullptr;
    FILE* const stream = Real<FILE*(const char*, const char*)>("fopen")(path, mode);
    if (stream) Streams().insert(stream);
    return stream;
}

FILE* fdopen(int file, const char* mode) noexcept
{
    if (!Files().contains(file)) return Real<FILE*(int, const char*)>("fdopen")(file, mode);
    if (Fails("fopen")) return nullptr;
    FILE* const stream = Real<FILE*(int, const char*)>("fdopen")(file, mode);
    if (stream) Streams().insert(stream);
    return stream;
}

size_t fwrite(const void* bytes, size_t size, size_t count, FILE* stream)
{
    if (Streams().contains(stream) && Fails("fwrite")) return 0;
    return Real<size_t(const void*, size_t, size_t, FILE*)>("fwrite")(bytes, size, count, stream);
}

int fclose(FILE* stream)
{
    const bool fails = Streams().contains(stream) && Fails("fclose");
    const int error = errno;
    Streams().erase(stream);
    const int result = Real<int(FILE*)>("fclose")(stream);
    if (!fails) return result;
    errno = error;
    return EOF;
}

int symlink(const char* target, const char* path) noexcept
{
    if (IsMeant(path) && Fails("symlink")) return -1;
    return Real<int(const char*, const char*)>("symlink")(target, path);
}
}
