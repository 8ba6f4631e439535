// Atomic replacement: when a file has its old and its new content; links, owners and permissions.
#include "util/atomic_file.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

#include "tests/child_process.h"
#include "tests/temp_dir_fixture.h"

using AtomicFile = TempDirFixture;

static bool open(FileReplacement* file, const std::string& path) {
    return openReplacement(file, path.c_str());
}

static bool replace(const std::string& path, const std::string& content,
                    LinkPolicy links = LinkPolicy::follow, mode_t maxMode = 0777) {
    FileReplacement file;
    if (!openReplacement(&file, path.c_str(), links, maxMode))
        return false;
    std::fputs(content.c_str(), file.stream);
    return commitReplacement(&file);
}

static struct stat info(const std::string& path) {
    struct stat found = {};
    EXPECT_EQ(lstat(path.c_str(), &found), 0) << path;
    return found;
}

static mode_t mode(const std::string& path) {
    return info(path).st_mode & 07777;
}

TEST_F(AtomicFile, CreatesAFileAccordingToTheUmask) {
    const mode_t before = umask(027);
    EXPECT_TRUE(replace(path("new"), "content"));
    umask(before);
    EXPECT_EQ(content("new"), "content");
    EXPECT_EQ(mode(path("new")), 0640u);
    EXPECT_EQ(names(), (Names{"new"}));
}

TEST_F(AtomicFile, KeepsTheOldContentUntilTheCommit) {
    write("file", "old content");
    FileReplacement file;
    ASSERT_TRUE(open(&file, path("file")));
    std::fputs("new", file.stream);
    std::fflush(file.stream);
    EXPECT_EQ(content("file"), "old content");
    EXPECT_TRUE(commitReplacement(&file));
    EXPECT_EQ(content("file"), "new");
    EXPECT_EQ(names(), (Names{"file"}));
}

TEST_F(AtomicFile, CreatesNoFileBeforeTheCommit) {
    FileReplacement file;
    ASSERT_TRUE(open(&file, path("file")));
    EXPECT_FALSE(std::filesystem::exists(path("file")));
    EXPECT_TRUE(commitReplacement(&file));
    EXPECT_EQ(content("file"), "");
}

TEST_F(AtomicFile, DoesNotAffectAReaderOfTheOldFile) {
    write("file", "old");
    std::ifstream reader(path("file"));
    EXPECT_TRUE(replace(path("file"), "new content"));
    std::string read;
    reader >> read;
    EXPECT_EQ(read, "old");
}

TEST_F(AtomicFile, KeepsPermissions) {
    write("file", "old");
    for (const mode_t kept : std::array<mode_t, 4>{0600, 0640, 0664, 0755}) {
        chmod(path("file").c_str(), kept);
        EXPECT_TRUE(replace(path("file"), "new"));
        EXPECT_EQ(mode(path("file")), kept);
    }
}

TEST_F(AtomicFile, LimitsPermissionsToTheMaximum) {
    write("file", "old");
    chmod(path("file").c_str(), 0666);
    EXPECT_TRUE(replace(path("file"), "new", LinkPolicy::replace, 0644));
    EXPECT_EQ(mode(path("file")), 0644u);
    const mode_t before = umask(0);
    EXPECT_TRUE(replace(path("new"), "new", LinkPolicy::replace, 0644));
    umask(before);
    EXPECT_EQ(mode(path("new")), 0644u);
}

TEST_F(AtomicFile, KeepsTheOwner) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can give files away";
    write("file", "old");
    ASSERT_EQ(chown(path("file").c_str(), kNobody, kNobody - 1), 0);
    EXPECT_TRUE(replace(path("file"), "new"));
    EXPECT_EQ(info(path("file")).st_uid, kNobody);
    EXPECT_EQ(info(path("file")).st_gid, kNobody - 1);
}

TEST_F(AtomicFile, GrantsNothingToAnotherGroup) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can set the owner";
    write("file", "old");
    ASSERT_EQ(chown(path("file").c_str(), 0, 1), 0);
    ASSERT_EQ(chmod(path("file").c_str(), 0676), 0);
    ASSERT_EQ(chown(directory.c_str(), kNobody, kNobody), 0);
    EXPECT_EQ(runAsNobody([&] { EXPECT_TRUE(replace(path("file"), "new")); }), 0);
    EXPECT_EQ(content("file"), "new");
    EXPECT_EQ(mode(path("file")), 0606u);
}

// Of a file that its group may write, the group can be kept but not the owner.
TEST_F(AtomicFile, KeepsThePermissionsOfTheGroupWithoutTheOwner) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can set the owner";
    write("file", "old");
    ASSERT_EQ(chown(path("file").c_str(), 0, kNobody), 0);
    ASSERT_EQ(chmod(path("file").c_str(), 0664), 0);
    ASSERT_EQ(chown(directory.c_str(), kNobody, kNobody), 0);
    EXPECT_EQ(runAsNobody([&] { EXPECT_TRUE(replace(path("file"), "new")); }), 0);
    EXPECT_EQ(info(path("file")).st_uid, kNobody);
    EXPECT_EQ(info(path("file")).st_gid, kNobody);
    EXPECT_EQ(mode(path("file")), 0664u);
}

TEST_F(AtomicFile, ReplacesTheTargetOfALink) {
    std::filesystem::create_directory(path("there"));
    write("there/file", "old");
    std::filesystem::create_symlink("there/file", path("link"));
    std::filesystem::create_symlink(path("link"), path("there/second"));
    EXPECT_TRUE(replace(path("there/second"), "new"));
    EXPECT_TRUE(S_ISLNK(info(path("link")).st_mode));
    EXPECT_TRUE(S_ISLNK(info(path("there/second")).st_mode));
    EXPECT_EQ(content("there/file"), "new");
}

// Linux follows 40 links, FreeBSD 32.
TEST_F(AtomicFile, ReplacesTheTargetOfTheLongestChainOfLinks) {
    write("0", "old");
    const ino_t number = info(path("0")).st_ino;
    int links = 0;
    while (access(path(std::to_string(links)).c_str(), F_OK) == 0) {
        std::filesystem::create_symlink(std::to_string(links), path(std::to_string(links + 1)));
        ++links;
    }
    const std::string followed = path(std::to_string(links - 1)), refused = path(std::to_string(links));
    EXPECT_TRUE(replace(followed, "new"));
    EXPECT_TRUE(S_ISLNK(info(followed).st_mode));
    EXPECT_EQ(content("0"), "new");
    EXPECT_NE(info(path("0")).st_ino, number);
    FileReplacement file;
    EXPECT_FALSE(open(&file, refused));
}

TEST_F(AtomicFile, CreatesTheTargetOfALink) {
    std::filesystem::create_directory(path("there"));
    std::filesystem::create_symlink("there/file", path("link"));
    EXPECT_TRUE(replace(path("link"), "new"));
    EXPECT_TRUE(S_ISLNK(info(path("link")).st_mode));
    EXPECT_EQ(content("there/file"), "new");
}

TEST_F(AtomicFile, ReplacesALinkOnRequest) {
    write("file", "old");
    std::filesystem::create_symlink("file", path("link"));
    EXPECT_TRUE(replace(path("link"), "new", LinkPolicy::replace));
    EXPECT_EQ(content("file"), "old");
    EXPECT_TRUE(S_ISREG(info(path("link")).st_mode));
    EXPECT_EQ(content("link"), "new");
}

TEST_F(AtomicFile, ReplacesAPipeWithoutOpeningIt) {
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    EXPECT_TRUE(replace(path("pipe"), "new", LinkPolicy::replace)); // opening it would wait for a reader
    EXPECT_EQ(content("pipe"), "new");
}

TEST_F(AtomicFile, RejectsPathsThatCannotBeFiles) {
    std::filesystem::create_symlink("loop", path("loop"));
    write("file", "old");
    for (const std::string& name :
         {std::string(), directory, path("missing/file"), path("new/"), path("loop"), path("file/below"),
          path(std::string(300, 'x')), std::string(5000, 'x')}) {
        FileReplacement file;
        EXPECT_FALSE(open(&file, name)) << name;
    }
    EXPECT_EQ(names(), (Names{"file", "loop"}));
    EXPECT_EQ(content("file"), "old");
}

TEST_F(AtomicFile, RejectsAReadOnlyFile) {
    write("file", "old");
    chmod(path("file").c_str(), 0444);
    chmod(directory.c_str(), 0777);
    EXPECT_EQ(runAsNobody([&] {
                  FileReplacement file;
                  EXPECT_FALSE(open(&file, path("file")));
              }),
              0);
    EXPECT_EQ(content("file"), "old");
    EXPECT_EQ(names(), (Names{"file"}));
}

TEST_F(AtomicFile, WritesInPlaceInAReadOnlyDirectory) {
    write("file", "old content");
    chmod(path("file").c_str(), 0666);
    chmod(directory.c_str(), 0555);
    const ino_t number = info(path("file")).st_ino;
    EXPECT_EQ(runAsNobody([&] {
                  FileReplacement file;
                  ASSERT_TRUE(open(&file, path("file")));
                  std::fputs("new", file.stream);
                  std::fflush(file.stream);
                  EXPECT_EQ(content("file"), "old content");
                  EXPECT_TRUE(commitReplacement(&file));
                  EXPECT_FALSE(open(&file, path("other")));
              }),
              0);
    chmod(directory.c_str(), 0755);
    EXPECT_EQ(content("file"), "new");
    EXPECT_EQ(info(path("file")).st_ino, number);
}

// As in /tmp, where only the owner may rename a file.
TEST_F(AtomicFile, WritesInPlaceWhereRenamingIsRefused) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can set the owner";
    write("file", "old content");
    chmod(path("file").c_str(), 0666);
    chmod(directory.c_str(), 01777);
    EXPECT_EQ(runAsNobody([&] { EXPECT_TRUE(replace(path("file"), "new")); }), 0);
    EXPECT_EQ(content("file"), "new");
    EXPECT_EQ(info(path("file")).st_uid, 0u);
    EXPECT_EQ(names(), (Names{"file"}));
}

// "." again and again, before the name of a file.
static std::string lengthened(const std::string& name, std::size_t length) {
    std::string path;
    while (path.size() + 2 + name.size() <= length)
        path += "./";
    return path + name;
}

// The link and its directory together do not fit the buffer of a path, though the system follows the link.
TEST_F(AtomicFile, WritesInPlaceWhatALinkTooLongToResolveLeadsTo) {
    write("file", "old content");
    const ino_t number = info(path("file")).st_ino;
    std::filesystem::create_symlink(lengthened("file", 4090), path("link"));
    EXPECT_TRUE(replace(path("link"), "new"));
    EXPECT_EQ(content("file"), "new");
    EXPECT_EQ(info(path("file")).st_ino, number);
    std::filesystem::create_symlink(lengthened("missing", 4090), path("dangling"));
    EXPECT_TRUE(replace(path("dangling"), "new"));
    EXPECT_EQ(content("missing"), "new");
    EXPECT_EQ(names(), (Names{"dangling", "file", "link", "missing"}));
}

// A path that leaves no room for the name of a temporary file.
TEST_F(AtomicFile, RefusesAFileWithoutRoomForTheTemporaryName) {
    write("f", "old");
    FileReplacement file;
    EXPECT_FALSE(open(&file, path(lengthened("f", 4090 - directory.size()))));
    EXPECT_FALSE(open(&file, path(lengthened("n", 4090 - directory.size()))));
    EXPECT_EQ(content("f"), "old");
    EXPECT_EQ(names(), (Names{"f"}));
}

// Temporary files of killed programs with the same process ID.
TEST_F(AtomicFile, TriesAHundredTemporaryNames) {
    write("file", "old");
    const std::string start = ".cli-" + std::to_string(getpid()) + "-";
    for (int number = 0; number < 99; ++number)
        write(start + std::to_string(number) + ".tmp", "");
    EXPECT_TRUE(replace(path("file"), "new"));
    EXPECT_EQ(content("file"), "new");
    write(start + "99.tmp", "");
    EXPECT_FALSE(replace(path("file"), "newer"));
    EXPECT_EQ(content("file"), "new");
}

// Such a directory cannot be opened, and therefore not synchronized.
TEST_F(AtomicFile, ReplacesAFileInADirectoryThatMayNotBeRead) {
    chmod(directory.c_str(), 0333);
    EXPECT_EQ(runAsNobody([&] { EXPECT_TRUE(replace(path("file"), "new")); }), 0);
    chmod(directory.c_str(), 0755);
    EXPECT_EQ(content("file"), "new");
    EXPECT_EQ(names(), (Names{"file"}));
}

TEST_F(AtomicFile, WritesDevicesInPlace) {
    EXPECT_TRUE(replace("/dev/null", "content"));
    EXPECT_FALSE(replace("/dev/full", "content"));
    EXPECT_TRUE(S_ISCHR(info("/dev/full").st_mode));
}

TEST_F(AtomicFile, KeepsTheOldContentWhenTheNewOneDoesNotFit) {
    write("file", "old");
    EXPECT_EQ(runInChild([&] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  struct rlimit before;
                  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
                  const struct rlimit limit = {4096, before.rlim_max};
                  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
                  EXPECT_FALSE(replace(path("file"), std::string(100000, 'x')));
                  EXPECT_FALSE(replace(path("new"), std::string(100000, 'x')));
                  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
              }),
              0);
    EXPECT_EQ(content("file"), "old");
    EXPECT_EQ(names(), (Names{"file"}));
}

// The new content is complete, but cannot be copied over the old one.
TEST_F(AtomicFile, ReportsAnErrorWhileWritingInPlace) {
    write("file", "old");
    chmod(path("file").c_str(), 0666);
    chmod(directory.c_str(), 0555);
    EXPECT_EQ(runAsNobody([&] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  FileReplacement file;
                  ASSERT_TRUE(open(&file, path("file")));
                  std::fputs(std::string(10000, 'x').c_str(), file.stream);
                  std::fflush(file.stream);
                  struct rlimit before;
                  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
                  const struct rlimit limit = {5000, before.rlim_max};
                  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
                  EXPECT_FALSE(commitReplacement(&file));
                  EXPECT_EQ(errno, EFBIG);
                  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
              }),
              0);
    chmod(directory.c_str(), 0755);
}

TEST_F(AtomicFile, RemovesItsTemporaryFileWhenASignalEndsTheProgram) {
    write("file", "old");
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
        EXPECT_EQ(runInChild([&] {
                      const struct rlimit none = {0, 0};
                      setrlimit(RLIMIT_CORE, &none);
                      std::signal(signal, SIG_DFL); // ignored if the tests run in the background
                      FileReplacement file;
                      ASSERT_TRUE(open(&file, path("file")));
                      EXPECT_EQ(names().size(), 2u);
                      raise(signal);
                  }),
                  128 + signal);
        EXPECT_EQ(names(), (Names{"file"}));
    }
    EXPECT_EQ(content("file"), "old");
}

static void ignore(int, siginfo_t*, void*) {}

TEST_F(AtomicFile, LeavesAHandlerOfTheLibraryInPlace) {
    struct sigaction before, handler = {};
    handler.sa_sigaction = ignore;
    handler.sa_flags = SA_SIGINFO;
    ASSERT_EQ(sigaction(SIGINT, &handler, &before), 0);
    FileReplacement file;
    ASSERT_TRUE(open(&file, path("file")));
    raise(SIGINT);
    EXPECT_EQ(names().size(), 1u);
    EXPECT_TRUE(commitReplacement(&file));
    EXPECT_EQ(names(), (Names{"file"}));
    sigaction(SIGINT, &before, nullptr);
}

// A program in the background starts with some of them ignored.
TEST_F(AtomicFile, RestoresSignalHandlers) {
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM})
        for (const auto handler : {SIG_DFL, SIG_IGN}) {
            const auto former = std::signal(signal, handler);
            EXPECT_TRUE(replace(path("file"), "new"));
            EXPECT_EQ(std::signal(signal, former), handler) << signal;
        }
}

TEST_F(AtomicFile, LeavesIgnoredSignalsIgnored) {
    const auto former = std::signal(SIGINT, SIG_IGN);
    FileReplacement file;
    ASSERT_TRUE(open(&file, path("file")));
    raise(SIGINT);
    EXPECT_TRUE(commitReplacement(&file));
    std::signal(SIGINT, former);
}
