// Runs a fuzzer's entry function on every file of the given directories, in builds without the engine.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

int main(int argc, char** argv) {
    int files = 0;
    for (int i = 1; i < argc; ++i)
        for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
            std::ifstream stream(entry.path(), std::ios::binary);
            const std::vector<char> text((std::istreambuf_iterator<char>(stream)), {});
            std::vector<std::uint8_t> bytes(text.begin(), text.end());
            bytes.push_back(0); // so that data() of an empty file is not null
            LLVMFuzzerTestOneInput(bytes.data(), text.size());
            ++files;
        }
    std::fprintf(stderr, "%d files replayed\n", files);
    return files == 0;
}
