// Whole files: reading, and atomic replacement.
#include "snapshot/files.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "util/atomic_file.h"

ReadResult readFile(const std::string& path, std::string* text) {
    std::FILE* file = std::fopen(path.c_str(), "r");
    if (file == nullptr)
        return errno == ENOENT ? ReadResult::missing : ReadResult::failed;
    char buffer[8192];
    for (std::size_t count; (count = std::fread(buffer, 1, sizeof buffer, file)) > 0;)
        text->append(buffer, count);
    const bool complete = std::ferror(file) == 0;
    const int reason = errno;
    const bool closed = std::fclose(file) == 0;
    if (!complete)
        errno = reason;
    return closed && complete ? ReadResult::done : ReadResult::failed;
}

static std::string problem(const std::string& path) {
    return "cannot write " + path + ": " + std::strerror(errno);
}

static std::string putText(const std::string& path, const std::string& text) {
    FileReplacement file;
    if (!openReplacement(&file, path.c_str()))
        return problem(path);
    std::fwrite(text.data(), 1, text.size(), file.stream); // the stream keeps a failure for the commit
    return commitReplacement(&file) ? "" : problem(path);
}

// A pipe without a reader must be reported as a failure, not end the program by a signal.
std::string replaceFile(const std::string& path, const std::string& text) {
    struct sigaction ignore = {}, former;
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &ignore, &former);
    std::string failure = putText(path, text);
    sigaction(SIGPIPE, &former, nullptr);
    return failure;
}
