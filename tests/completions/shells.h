// Shared by the tests of the completions.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/e2e/process.h"

// A temporary directory, removed with its contents.
class TempDir {
public:
    TempDir() {
        char name[] = "/tmp/completions-XXXXXX";
        directory = mkdtemp(name);
    }
    ~TempDir() { std::filesystem::remove_all(directory); }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& path() const { return directory; }

    void write(const std::string& name, const std::string& text) const {
        std::ofstream(directory + "/" + name) << text;
    }

    std::string read(const std::string& name) const {
        std::ifstream file(directory + "/" + name);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    void writeProgram(const std::string& name, const std::string& text) const {
        write(name, text);
        std::filesystem::permissions(directory + "/" + name, std::filesystem::perms::owner_all);
    }

private:
    std::string directory;
};
