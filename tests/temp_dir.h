// A temporary directory, removed with its contents.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

class TempDir {
public:
    TempDir() {
        directory = (std::filesystem::temp_directory_path() / "cli-test-XXXXXX").string();
        if (mkdtemp(directory.data()) == nullptr)
            throw std::runtime_error("cannot create a temporary directory");
    }
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(directory, ignored);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& path() const { return directory; }
    std::string path(const std::string& name) const { return directory + "/" + name; }

    void write(const std::string& name, const std::string& content) const {
        std::ofstream(path(name), std::ios::binary) << content;
    }
    void writeProgram(const std::string& name, const std::string& content) const {
        write(name, content);
        std::filesystem::permissions(path(name), std::filesystem::perms::owner_all);
    }
    std::string read(const std::string& name) const {
        std::ifstream file(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    std::string directory;
};
