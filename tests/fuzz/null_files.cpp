// Fuzzers that run whole commands are linked with a wrapped fopen(): every file that a command names is
// /dev/null. Reports of the engine are written, including those about an input that crashed the command.
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <fcntl.h>

#include "tests/fuzz/word_table.h"

extern "C" std::FILE* __real_fopen(const char* path, const char* mode); // NOLINT: the linker's names
extern "C" std::FILE* __wrap_fopen(const char* path, const char* mode); // NOLINT

static const char* const kinds[] = {"crash-", "leak-", "timeout-", "oom-", "slow-unit-"};
static constexpr std::size_t kHashLength = 40; // of the hexadecimal hash at the end of a report's name

// A fuzzer cannot guess a hash, but may find a prefix such as "oom-".
static bool isReport(const char* path) {
    for (const char* kind : kinds)
        if (const char* found = std::strstr(path, kind))
            return std::strspn(found + std::strlen(kind), "0123456789abcdef") == kHashLength;
    return false;
}

std::FILE* __wrap_fopen(const char* path, const char* mode) {
    return __real_fopen(commandRuns && !isReport(path) ? "/dev/null" : path, mode);
}

extern "C" int __real_open(const char* path, int flags, ...); // NOLINT
extern "C" int __wrap_open(const char* path, int flags, ...); // NOLINT

// Commands cannot create or replace files: open() fails, and they write in place, with fopen().
int __wrap_open(const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const unsigned mode = (flags & O_CREAT) != 0 ? va_arg(arguments, unsigned) : 0;
    va_end(arguments);
    if (!commandRuns || (flags & O_ACCMODE) == O_RDONLY)
        return __real_open(path, flags, mode);
    errno = EACCES;
    return -1;
}
