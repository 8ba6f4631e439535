// Replaces the C library's functions of the system log where it is loaded first: each message becomes a line
// of the file named by $SYSLOG_RECORD, with the number for facility and priority that a log daemon receives.
#include <syslog.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

static const char* logName = "";
static int logFacility = LOG_USER;

static void record(int priority, const char* format, std::va_list arguments) {
    const char* path = std::getenv("SYSLOG_RECORD");
    std::FILE* file = path != nullptr ? std::fopen(path, "a") : nullptr;
    if (file == nullptr)
        return;
    std::fprintf(file, "<%d>%s: ", logFacility | priority, logName);
    std::vfprintf(file, format, arguments);
    std::fputc('\n', file);
    std::fclose(file);
}

extern "C" void openlog(const char* name, int, int facility) {
    logName = name;
    logFacility = facility;
}

extern "C" void closelog() {
    logName = "";
    logFacility = LOG_USER;
}

extern "C" void syslog(int priority, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    record(priority, format, arguments);
    va_end(arguments);
}

// What a fortified build calls in its place.
extern "C" void __syslog_chk(int priority, int flag, const char* format, ...);
extern "C" void __syslog_chk(int priority, int, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    record(priority, format, arguments);
    va_end(arguments);
}
