// A fixture with a temporary directory for each test, which other users can read.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/temp_dir.h"

class TempDirFixture : public testing::Test {
protected:
    void SetUp() override { std::filesystem::permissions(directory, std::filesystem::perms(0755)); }

    std::string path(const std::string& name) const { return temporary.path(name); }
    void write(const std::string& name, const std::string& content) const { temporary.write(name, content); }
    std::string content(const std::string& name) const { return temporary.read(name); }
    // The names in the directory, sorted.
    std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(directory))
            found.push_back(entry.path().filename().string());
        std::sort(found.begin(), found.end());
        return found;
    }
    using Names = std::vector<std::string>;

    const TempDir temporary;
    const std::string directory = temporary.path();
};
