// Whole files: reading, and replacing in one step.
#include "snapshot/files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

ReadResult readFile(const std::string& path, std::string* text) {
    std::FILE* file = std::fopen(path.c_str(), "r");
    if (file == nullptr)
        return errno == ENOENT ? ReadResult::missing : ReadResult::failed;
    char buffer[8192];
    for (std::size_t count; (count = std::fread(buffer, 1, sizeof buffer, file)) > 0;)
        text->append(buffer, count);
    const bool complete = std::ferror(file) == 0;
    return std::fclose(file) == 0 && complete ? ReadResult::done : ReadResult::failed;
}

static bool writeWhole(int file, const std::string& text) {
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t count = write(file, text.data() + done, text.size() - done);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        done += static_cast<std::size_t>(count);
    }
    return fsync(file) == 0;
}

static std::string directoryOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

// Makes the new name last beyond a power cut. What cannot be opened for this cannot be helped either.
static void syncDirectory(const std::string& path) {
    const int directory = open(directoryOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0)
        return;
    fsync(directory);
    close(directory);
}

static std::string problem(const std::string& path) {
    return "cannot write " + path + ": " + std::strerror(errno);
}

// Hidden, and without the suffix that collectors of metrics look for.
static std::string temporaryName(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    const std::size_t name = slash == std::string::npos ? 0 : slash + 1;
    return path.substr(0, name) + "." + path.substr(name) + "." + std::to_string(getpid());
}

std::string replaceFile(const std::string& path, const std::string& text) {
    const std::string temporary = temporaryName(path);
    const int file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0666);
    if (file < 0)
        return problem(path);
    const bool written = writeWhole(file, text);
    std::string failure = written ? "" : problem(path);
    close(file);
    if (written && std::rename(temporary.c_str(), path.c_str()) != 0)
        failure = problem(path);
    if (!failure.empty())
        unlink(temporary.c_str());
    else
        syncDirectory(path);
    return failure;
}
