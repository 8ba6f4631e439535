// Atomic replacement of whole files.
#include "snapshot/files.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "util/atomic_file.h"

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
