// Writing whole files: replaced atomically, or newly created.
#include "snapshot/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "util/atomic_file.h"

static std::string writeProblem(const std::string& path) {
    return "cannot write " + path + ": " + std::strerror(errno);
}

static bool isPipe(const std::string& path) {
    struct stat info;
    return stat(path.c_str(), &info) == 0 && S_ISFIFO(info.st_mode);
}

// Writes the text and closes the file. False, with errno set, if that failed.
static bool writeAndClose(int file, const std::string& text, bool durable) {
    std::FILE* stream = fdopen(file, "w");
    if (stream == nullptr) {
        close(file);
        return false;
    }
    const bool written = std::fwrite(text.data(), 1, text.size(), stream) == text.size() &&
                         std::fflush(stream) == 0 && (!durable || fsync(file) == 0);
    const int reason = errno;
    const bool closed = std::fclose(stream) == 0;
    if (!written)
        errno = reason;
    return written && closed;
}

// Opened without waiting: a plain open() of a pipe blocks until another program opens it for reading.
static std::string writeToPipe(const std::string& path, const std::string& text) {
    const int file = open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return errno == ENXIO ? "cannot write " + path + ": no program reads this pipe" : writeProblem(path);
    fcntl(file, F_SETFL, fcntl(file, F_GETFL) & ~O_NONBLOCK);
    return writeAndClose(file, text, false) ? "" : writeProblem(path);
}

static std::string writeText(const std::string& path, const std::string& text) {
    FileReplacement file;
    if (isPipe(path))
        return writeToPipe(path, text);
    if (!openReplacement(&file, path.c_str()))
        return writeProblem(path);
    std::fwrite(text.data(), 1, text.size(), file.stream); // the stream keeps a failure for the commit
    return commitReplacement(&file) ? "" : writeProblem(path);
}

// A pipe without a reader must be reported as a failure, not end the program by a signal.
std::string replaceFile(const std::string& path, const std::string& text) {
    struct sigaction ignore = {}, former;
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &ignore, &former);
    std::string failure = writeText(path, text);
    sigaction(SIGPIPE, &former, nullptr);
    return failure;
}

std::string createFile(const std::string& path, const std::string& text) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (file < 0)
        return writeProblem(path);
    if (writeAndClose(file, text, true))
        return "";
    std::string failure = writeProblem(path);
    unlink(path.c_str());
    return failure;
}
