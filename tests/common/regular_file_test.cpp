// Regular files, and what can be at their place.
#include "tools/common/regular_file.h"

#include <sys/stat.h>

#include "tests/temp_dir_fixture.h"

struct RegularFileTest : TempDirFixture {
    std::string text = "earlier", problem;
    RegularFile readPath(const std::string& name) { return readRegularFile(name, &text, &problem); }
};

TEST_F(RegularFileTest, ReadsAllBytes) {
    const std::string written = std::string(20000, 'x') + '\0' + "\n";
    write("file", written);
    EXPECT_EQ(readPath(path("file")), RegularFile::read);
    EXPECT_EQ(text, written);
    write("file", "");
    EXPECT_EQ(readPath(path("file")), RegularFile::read);
    EXPECT_EQ(text, "");
    EXPECT_EQ(problem, "");
}

TEST_F(RegularFileTest, FollowsALink) {
    write("file", "x");
    std::filesystem::create_symlink(path("file"), path("link"));
    EXPECT_EQ(readPath(path("link")), RegularFile::read);
    EXPECT_EQ(text, "x");
}

TEST_F(RegularFileTest, ReportsAMissingFile) {
    EXPECT_EQ(readPath(path("none")), RegularFile::missing);
    EXPECT_EQ(problem, "cannot read " + path("none") + ": No such file or directory");
}

TEST_F(RegularFileTest, ReportsAFailure) {
    write("file", "x");
    EXPECT_EQ(readPath(path("file/below")), RegularFile::failed);
    EXPECT_EQ(problem, "cannot read " + path("file/below") + ": Not a directory");
}

// Reading the pipe would wait for a writer, and the device has no end.
TEST_F(RegularFileTest, RefusesAnythingElse) {
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    for (const std::string& name : {path("pipe"), directory, std::string("/dev/zero")}) {
        EXPECT_EQ(readPath(name), RegularFile::notRegular);
        EXPECT_EQ(problem, "cannot read " + name + ": it is not a regular file");
        EXPECT_EQ(text, "");
    }
}

TEST_F(RegularFileTest, RefusesAHugeFile) {
    write("file", "");
    std::filesystem::resize_file(path("file"), 64 * 1024 * 1024 + 1);
    EXPECT_EQ(readPath(path("file")), RegularFile::failed);
    EXPECT_EQ(problem, "cannot read " + path("file") + ": File too large");
}
