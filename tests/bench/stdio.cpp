// Only reads and writes a file as large as the event file and prints a line: its cost beyond that of an empty
// program is that of the C library.
#include <cstdio>

static char contents[20408];

int main() {
    if (std::FILE* file = std::fopen("stdio.dat", "rb")) {
        static_cast<void>(std::fread(contents, 1, sizeof contents, file) == sizeof contents);
        std::fclose(file);
    }
    std::printf("%s : %d\n", "Contents", contents[0]);
    std::FILE* file = std::fopen("stdio.dat", "wb");
    if (file == nullptr)
        return 1;
    const bool written = std::fwrite(contents, 1, sizeof contents, file) == sizeof contents;
    return std::fclose(file) == 0 && written ? 0 : 1;
}
