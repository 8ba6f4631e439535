// Reading regular files that the user names, or that are in directories where others can write.
#include "tools/common/regular_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

static constexpr std::size_t kMaxSize = 64 * 1024 * 1024; // bytes

// On failure, errno is the reason.
static bool readAll(int file, std::string* text) {
    char buffer[8192];
    for (;;) {
        const ssize_t count = read(file, buffer, sizeof buffer);
        if (count == 0)
            return true;
        if (count < 0 && errno != EINTR)
            return false;
        if (count > 0)
            text->append(buffer, static_cast<std::size_t>(count));
        if (text->size() > kMaxSize) {
            errno = EFBIG;
            return false;
        }
    }
}

static RegularFile openAndRead(const std::string& path, std::string* text) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file < 0)
        return errno == ENOENT ? RegularFile::missing : RegularFile::failed;
    struct stat info;
    RegularFile result = RegularFile::failed;
    if (fstat(file, &info) == 0)
        result = !S_ISREG(info.st_mode) ? RegularFile::notRegular
                 : readAll(file, text)  ? RegularFile::read
                                        : RegularFile::failed;
    const int reason = errno;
    close(file);
    errno = reason;
    return result;
}

RegularFile readRegularFile(const std::string& path, std::string* text, std::string* problem) {
    text->clear();
    const RegularFile result = openAndRead(path, text);
    if (result != RegularFile::read)
        *problem = "cannot read " + path + ": " +
                   (result == RegularFile::notRegular ? "it is not a regular file" : std::strerror(errno));
    return result;
}
