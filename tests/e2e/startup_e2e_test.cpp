// Startup and its failures, and the libraries that the programs load. Uses fake adapter libraries.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include "tests/e2e/harness.h"

static const std::string kFakeLibs = E2E_FAKE_LIBS;
static const std::string kOpened = "initialize baba0001 1 60\ndiscover 1\n";

TEST(StartUp, ExitsWithTenWhenInitializationFails) {
    Session s;
    s.preferLibraries(kFakeLibs + "/uninitialized");
    const ProcessOutcome expected = {10, "Q5API is failed to initialized!\n", "initialize baba0001 1 60\n"};
    EXPECT_EQ(s.run({"ctrl"}), expected);
    EXPECT_EQ(s.prompt("ctrl\nexit\n"), expected);
}

TEST(StartUp, ExitsWithTenWhenDiscoveryFails) {
    Session s;
    s.preferLibraries(kFakeLibs + "/undiscovered");
    EXPECT_EQ(s.run({"ctrl"}), (ProcessOutcome{10, "Q5API is failed to initialized!\n", kOpened}));
}

TEST(StartUp, ExitsWithFiveWithoutControllers) {
    Session s;
    s.preferLibraries(kFakeLibs + "/empty");
    const ProcessOutcome expected = {5, "No controller is found in the system!\n", kOpened};
    EXPECT_EQ(s.run({"help"}), expected);
    EXPECT_EQ(s.prompt("help\n"), expected);
}

TEST(StartUp, KeepsEventFileOnFailure) {
    Session s;
    for (const char* library : {"/uninitialized", "/undiscovered", "/empty"}) {
        s.preferLibraries(kFakeLibs + library);
        s.run({"event"});
        EXPECT_EQ(readFile(s.eventFile()), "");
        writeFile(s.eventFile(), "as it was");
        s.run({"event"});
        EXPECT_EQ(readFile(s.eventFile()), "as it was");
        std::remove(s.eventFile().c_str());
    }
}

TEST(StartUp, FinalizesOnceAfterACommand) {
    Session s;
    s.preferLibraries(kFakeLibs + "/working");
    EXPECT_EQ(s.run({"nosuch"}), (ProcessOutcome{9, "Invalid command!\n", kOpened + "finalize\n"}));
}

TEST(StartUp, FinalizesOnceAfterThePrompt) {
    Session s;
    s.preferLibraries(kFakeLibs + "/working");
    const std::string out = "cli>Invalid command!\ncli>Invalid command!\ncli>";
    EXPECT_EQ(s.prompt("no\nsuch\nexit\n"), (ProcessOutcome{9, out, kOpened + "finalize\n"}));
    EXPECT_EQ(s.prompt("no\nsuch"), (ProcessOutcome{9, out, kOpened + "finalize\n"}));
}

static const char kFakeSummary[] =
    "ID      MemType  MemSize Disks Arrays Enclosures     BIOS Ver   Driver Ver\n"
    " 0          ECC   512 MB    7      3          2  10.11.12.13  90.91.92.93\n";

static const char kFakeBlock[] = "******************************\n"
                                 "Controller ID : 0\n"
                                 "BIOs Version : 10.11.12.13\n"
                                 "Driver Version : 90.91.92.93\n"
                                 "IRQ : 11\n"
                                 "Logical slot number : 12\n"
                                 "Bus master base : 200\n"
                                 "BIOs memory start : -1\n"
                                 "BIOs memory range : -2\n"
                                 "Base address ATA : 0xa0000000\n"
                                 "Base address XOR : 0xa0000001\n"
                                 "Base address SEQ : 0xa0000002\n"
                                 "Base address MMIO : 0xa0000003\n"
                                 "Base address SDRAM : 0xa0000004\n"
                                 "Memory type : ECC\n"
                                 "Memory size : 512 MB\n"
                                 "Maximum extents supported in each disk : 9\n"
                                 "Number of disks : 7\n"
                                 "Number of arrays : 3\n"
                                 "Number of enclosure : 2\n"
                                 "Battery installed : Yes\n"
                                 "Rebuild rate : 21\n"
                                 "Synchronization rate : 22\n"
                                 "Migration rate : 26\n"
                                 "Initialization rate : 25\n"
                                 "Media patrol rate : 23\n"
                                 "Smart check polling interval : 30\n"
                                 "Enclosure polling interval : 32\n"
                                 "Smart check : Disable\n"
                                 "Auto rebuild : Enable\n"
                                 "Rebuild policy : Enable\n"
                                 "Max port supported in each controller : 16\n"
                                 "Firmware version : 50.51.52.53\n";

// The library lacks most operations. It loads as long as no command calls them.
TEST(FakeLibrary, IsUsedByRehearsal) {
    Session s;
    s.preferLibraries(kFakeLibs + "/working");
    EXPECT_EQ(s.run({"ctrl"}), (ProcessOutcome{0, kFakeSummary, kOpened + "finalize\n"}));
    EXPECT_EQ(s.run({"ctrl", "-v"}), (ProcessOutcome{0, kFakeBlock, kOpened + "finalize\n"}));
}

// The time of the last change of a file, without opening it; 0 when there is none.
static std::int64_t modificationTime(const char* path) {
    struct stat state = {};
    return stat(path, &state) == 0 ? static_cast<std::int64_t>(state.st_mtime) : 0;
}

TEST(FakeLibrary, IsUsedByProduct) {
    const std::int64_t before = modificationTime("/usr/sbin/CLIEvent.dat");
    Session s;
    s.useProduct(kFakeLibs + "/working");
    EXPECT_EQ(s.run({"ctrl"}), (ProcessOutcome{0, kFakeSummary, kOpened + "finalize\n"}));
    EXPECT_EQ(s.prompt("ctrl -v\n"),
              (ProcessOutcome{0, "cli>" + std::string(kFakeBlock) + "cli>", kOpened + "finalize\n"}));
    EXPECT_EQ(modificationTime("/usr/sbin/CLIEvent.dat"), before);
    EXPECT_EQ(readFile(s.eventFile()), "");
}

TEST(FakeLibrary, FailureEndsProduct) {
    for (const auto& [library, status, out] :
         {std::tuple{"/uninitialized", 10, "Q5API is failed to initialized!\n"},
          std::tuple{"/undiscovered", 10, "Q5API is failed to initialized!\n"},
          std::tuple{"/empty", 5, "No controller is found in the system!\n"}}) {
        Session s;
        s.useProduct(kFakeLibs + library);
        const ProcessOutcome outcome = s.run({"ctrl"});
        EXPECT_EQ(outcome.status, status) << library;
        EXPECT_EQ(outcome.out, out) << library;
    }
}
