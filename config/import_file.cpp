// Reads a configuration file completely before it is parsed.
#include "config/import_file.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

static constexpr std::size_t kPieceSize = 4096;

// Reads the file to its end, and into the copy if there is one. A copy is limited in size.
static bool readToEnd(int file, std::FILE* copy) {
    char piece[kPieceSize];
    std::size_t size = 0;
    for (;;) {
        const ssize_t length = read(file, piece, sizeof piece);
        if (length == 0)
            return true;
        if (length < 0 && errno != EINTR)
            return false;
        if (length < 0 || copy == nullptr)
            continue;
        size += static_cast<std::size_t>(length);
        if (size > kMaxStreamSize ||
            std::fwrite(piece, 1, static_cast<std::size_t>(length), copy) != static_cast<std::size_t>(length))
            return false;
    }
}

// A copy of a file that can be read only once; null if it exceeds the limit or the copy cannot be written.
static std::FILE* copyStream(int file) {
    std::FILE* copy = std::tmpfile();
    if (copy == nullptr)
        return nullptr;
    if (readToEnd(file, copy) && std::fflush(copy) == 0 && std::fseek(copy, 0, SEEK_SET) == 0)
        return copy;
    std::fclose(copy);
    return nullptr;
}

std::FILE* openConfigFile(const char* name) {
    std::FILE* file = std::fopen(name, "r");
    if (file == nullptr)
        return nullptr;
    const int descriptor = fileno(file);
    struct stat info;
    const bool known = fstat(descriptor, &info) == 0;
    if (known && S_ISREG(info.st_mode) && readToEnd(descriptor, nullptr) &&
        lseek(descriptor, 0, SEEK_SET) == 0)
        return file;
    std::FILE* copy = known && !S_ISREG(info.st_mode) ? copyStream(descriptor) : nullptr;
    std::fclose(file);
    return copy;
}
