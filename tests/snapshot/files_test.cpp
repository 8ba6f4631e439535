// Whole files: reading, and atomic replacement.
#include "snapshot/files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include "tests/file_size_limit.h"

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
        std::ifstream stream(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    std::size_t countFiles() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(directory), {}));
    }
};

TEST_F(Files, AreWrittenCompletely) {
    const std::string large(100000, 'x');
    EXPECT_EQ(replaceFile(path, large), "");
    EXPECT_EQ(text(), large);
}

TEST_F(Files, AreReplaced) {
    EXPECT_EQ(replaceFile(path, "old"), "");
    EXPECT_EQ(replaceFile(path, "new"), "");
    EXPECT_EQ(text(), "new");
    EXPECT_EQ(countFiles(), 1u);
}

// A name that cannot be taken leaves the directory as it was.
TEST_F(Files, AreUnchangedWhenReplacingFails) {
    fs::create_directory(path);
    fs::create_directory(path + "/inside");
    EXPECT_EQ(replaceFile(path, "new"), "cannot write " + path + ": Is a directory");
    EXPECT_EQ(countFiles(), 1u);
    EXPECT_EQ(replaceFile(directory + "/none/file", "new"),
              "cannot write " + directory + "/none/file: No such file or directory");
}

// A link with the temporary name does not redirect the text.
TEST_F(Files, DoNotFollowALinkWithTheTemporaryName) {
    const std::string temporary = directory + "/.cli-" + std::to_string(getpid()) + "-0.tmp";
    fs::create_symlink(directory + "/elsewhere", temporary);
    EXPECT_EQ(replaceFile(path, "new"), "");
    EXPECT_EQ(text(), "new");
    EXPECT_TRUE(fs::is_symlink(temporary));
    EXPECT_FALSE(fs::exists(directory + "/elsewhere"));
}

TEST_F(Files, FollowTheUmask) {
    const mode_t before = umask(027);
    EXPECT_EQ(replaceFile(path, "new"), "");
    umask(before);
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));
}

TEST_F(Files, KeepOwnerAndPermissions) {
    EXPECT_EQ(replaceFile(path, "old"), "");
    fs::permissions(path, fs::perms(0604));
    const bool givenAway = geteuid() == 0 && chown(path.c_str(), 65534, 65534) == 0;
    EXPECT_EQ(replaceFile(path, "new"), "");
    struct stat found = {};
    ASSERT_EQ(stat(path.c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 07777u, 0604u);
    EXPECT_EQ(found.st_uid, givenAway ? 65534u : geteuid());
    EXPECT_EQ(text(), "new");
}

TEST_F(Files, AreReplacedWhereALinkLeads) {
    fs::create_directory(directory + "/target");
    fs::create_symlink("target/file", path);
    EXPECT_EQ(replaceFile(path, "new"), ""); // nothing is there yet
    EXPECT_EQ(replaceFile(path, "newer"), "");
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_FALSE(fs::is_symlink(directory + "/target/file"));
    EXPECT_EQ(text(), "newer");
}

struct Pipes : Files {
    std::string pipe = directory + "/pipe";
    void SetUp() override {
        Files::SetUp();
        ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    }
    bool isPipe() const { return fs::is_fifo(fs::symlink_status(pipe)); }
    void expectWrittenInPlace(const std::string& name) const {
        const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
        ASSERT_GE(reader, 0);
        EXPECT_EQ(replaceFile(name, "new"), "");
        char bytes[8] = {};
        EXPECT_EQ(read(reader, bytes, sizeof bytes), 3);
        EXPECT_STREQ(bytes, "new");
        close(reader);
        EXPECT_TRUE(isPipe());
    }
};

// As are devices, /dev/stdout among them: replacing one would break the system.
TEST_F(Pipes, AreWrittenInPlace) {
    expectWrittenInPlace(pipe);
    EXPECT_EQ(countFiles(), 1u);
    fs::create_symlink("pipe", path);
    expectWrittenInPlace(path);
    EXPECT_TRUE(fs::is_symlink(path));
}

TEST_F(Pipes, ThatNothingReadsAreRefused) {
    EXPECT_EQ(replaceFile(pipe, "new"), "cannot write " + pipe + ": no program reads this pipe");
    EXPECT_TRUE(isPipe());
}

// The reader closes the full pipe, so that writing the rest fails.
TEST_F(Pipes, WithoutAReaderAreAFailure) {
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    std::thread leaving([&] {
        char byte;
        while (read(reader, &byte, 1) != 1) // until the writer has started
            std::this_thread::yield();
        close(reader);
    });
    EXPECT_EQ(replaceFile(pipe, std::string(1000000, 'x')), "cannot write " + pipe + ": Broken pipe");
    leaving.join();
    EXPECT_TRUE(isPipe());
}

TEST_F(Files, KeepTheOldTextWhenTheNewOneDoesNotFit) {
    EXPECT_EQ(replaceFile(path, "old"), "");
    const FileSizeLimit limit(4096);
    EXPECT_EQ(replaceFile(path, std::string(100000, 'x')), "cannot write " + path + ": File too large");
    EXPECT_EQ(text(), "old");
    EXPECT_EQ(countFiles(), 1u);
}

TEST_F(Files, AreCreatedForTheirOwner) {
    EXPECT_EQ(createFile(path, "first"), "");
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0600));
    EXPECT_EQ(createFile(path, "second"), "cannot write " + path + ": File exists");
    EXPECT_EQ(text(), "first");
    EXPECT_EQ(createFile(directory + "/none/file", "new"),
              "cannot write " + directory + "/none/file: No such file or directory");
}

TEST_F(Files, AreNotCreatedWithPartOfTheText) {
    const FileSizeLimit limit(4096);
    EXPECT_EQ(createFile(path, std::string(100000, 'x')), "cannot write " + path + ": File too large");
    EXPECT_EQ(countFiles(), 0u);
}

TEST_F(Files, HaveNamesOfBoundedLength) {
    const std::string name(5000, 'x');
    EXPECT_EQ(replaceFile(name, "new"), "cannot write " + name + ": File name too long");
}
