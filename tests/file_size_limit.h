// A limit on the size of files, which makes writing fail as on a full file system.
#pragma once

#include <sys/resource.h>

#include <csignal>

// While it exists, this program and those that it starts cannot write larger files.
struct FileSizeLimit {
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &before);
        const struct rlimit small = {bytes, before.rlim_max};
        handler = std::signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    struct rlimit before = {};
    void (*handler)(int) = SIG_DFL;
};
