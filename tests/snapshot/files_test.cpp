// Whole files: reading, and replacing in one step.
#include "snapshot/files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <unistd.h>

#include <filesystem>

namespace fs = std::filesystem;

struct Files : testing::Test {
    std::string directory = testing::TempDir() + "/snapshot-files-" + std::to_string(getpid());
    std::string path = directory + "/file";
    void SetUp() override {
        fs::remove_all(directory);
        fs::create_directory(directory);
    }
    void TearDown() override { fs::remove_all(directory); }
    std::string text() const {
        std::string text;
        EXPECT_EQ(readFile(path, &text), ReadResult::done);
        return text;
    }
    std::size_t countFiles() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(directory), {}));
    }
};

TEST_F(Files, AreReadWhole) {
    const std::string large(100000, 'x');
    EXPECT_EQ(replaceFile(path, large), "");
    EXPECT_EQ(text(), large);
    std::string nothing;
    EXPECT_EQ(readFile(directory + "/none", &nothing), ReadResult::missing);
    EXPECT_EQ(readFile(directory, &nothing), ReadResult::failed);
}

TEST_F(Files, AreReplaced) {
    EXPECT_EQ(replaceFile(path, "old"), "");
    EXPECT_EQ(replaceFile(path, "new"), "");
    EXPECT_EQ(text(), "new");
    EXPECT_EQ(countFiles(), 1u);
}

// A name that cannot be taken leaves the directory as it was.
TEST_F(Files, AreLeftAloneWhenReplacingFails) {
    fs::create_directory(path);
    fs::create_directory(path + "/inside");
    EXPECT_EQ(replaceFile(path, "new"), "cannot write " + path + ": Is a directory");
    EXPECT_EQ(countFiles(), 1u);
    EXPECT_EQ(replaceFile(directory + "/none/file", "new"),
              "cannot write " + directory + "/none/file: No such file or directory");
}

// Nobody can lead the text elsewhere through a link with the temporary name.
TEST_F(Files, DoNotFollowALinkInTheirPlace) {
    fs::create_symlink(directory + "/elsewhere", directory + "/.file." + std::to_string(getpid()));
    EXPECT_NE(replaceFile(path, "new"), "");
    EXPECT_FALSE(fs::exists(directory + "/elsewhere"));
}

TEST_F(Files, FollowTheUmask) {
    const mode_t before = umask(027);
    EXPECT_EQ(replaceFile(path, "new"), "");
    umask(before);
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));
}
