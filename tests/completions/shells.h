// What the tests of the shells' completions share.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/e2e/process.h"

// A folder of the test's own, gone with it.
class Folder {
public:
    Folder() {
        char name[] = "/tmp/completions-XXXXXX";
        folder = mkdtemp(name);
    }
    ~Folder() { std::filesystem::remove_all(folder); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    const std::string& path() const { return folder; }

    void write(const std::string& name, const std::string& text) const {
        std::ofstream(folder + "/" + name) << text;
    }

    std::string read(const std::string& name) const {
        std::ifstream file(folder + "/" + name);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    void writeProgram(const std::string& name, const std::string& text) const {
        write(name, text);
        std::filesystem::permissions(folder + "/" + name, std::filesystem::perms::owner_all);
    }

private:
    std::string folder;
};
