// The extent command on drives with known extents, and changes that persist between runs. All drives except
// the last have 2000 MB.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/e2e/harness.h"

static const std::string kHeader = "DiskID Index AryID Size     StartLBA\n";
static const std::string kFirst = "     1     0     0  1000.00     0.00\n"
                                  "     1     1     1   500.00  1000.00\n"
                                  "     1     2    -1   500.00  1500.00\n";
static const std::string kSecond = "     2     0     0  1000.00     0.00\n"
                                   "     2     1    -1  1000.00  1000.00\n";
static const std::string kThird = "     3     0    -1  2000.00     0.00\n";
static const std::string kFourth = "     4     0    -1   500.00     0.00\n"
                                   "     4     1    -1   500.00   500.00\n"
                                   "     4     2     0  1000.00  1000.00\n";

struct Extents : testing::Test {
    Session s;
    Extents() { s.useWorld(fixtureWorld("drives_and_boxes")); }

    // Changes one extent; more is an additional option with its value.
    ProcessOutcome change(const std::string& action, const std::string& drive, const std::string& extent,
                          const std::vector<std::string>& more = {}) {
        std::vector<std::string> words = {"extent", "-a", action, "-p", drive, "-e", extent, "-i", "0"};
        words.insert(words.end(), more.begin(), more.end());
        return s.run(words);
    }
    std::string rows(const std::string& drive) { return s.run({"extent", "-p", drive}).out; }
    // The verbose block of an extent, from its position to its assignment status.
    std::string statusOf(const std::string& drive, int extent) {
        const std::string block = s.run({"extent", "-v", "-p", drive}).out;
        const std::size_t from = block.find("Maintenance", block.find("Index : " + std::to_string(extent)));
        const std::size_t to = block.find("Smart", from);
        return from == std::string::npos ? block : block.substr(from, to - from);
    }
};

static std::string status(const char* maintenance, const char* functional, const char* assignment) {
    return std::string("Maintenance status : ") + maintenance + "\nFunctional status : " + functional +
           "\nAssignment status : " + assignment + "\n";
}

// The message for a refusal by the adapter; drive counts from 0.
static ProcessOutcome refused(const std::string& what, int drive) {
    return {0, "Failed to " + what + " with ID " + std::to_string(drive) + " on controller #0!\n", ""};
}

TEST_F(Extents, AreListedForEveryDrive) {
    const ProcessOutcome all = {0, kHeader + kFirst + kSecond + kThird + kFourth, ""};
    EXPECT_EQ(s.run({"extent"}), all);
    EXPECT_EQ(s.run({"EXTENT", "-A", "LIST", "-c", "20"}), all);
    EXPECT_EQ(s.run({"extent", "-p", "2"}), (ProcessOutcome{0, kHeader + kSecond, ""}));
    EXPECT_EQ(s.run({"extent", "-p", "2", "-c", "2"}), (ProcessOutcome{0, kHeader + kSecond + kThird, ""}));
    EXPECT_EQ(s.prompt("extent -c 1\nexit\n"), (ProcessOutcome{0, "cli>" + kHeader + kFirst + "cli>", ""}));
    EXPECT_EQ(s.run({"extent", "-p", "6"}), (ProcessOutcome{0, kHeader, ""}));
    EXPECT_EQ(s.run({"extent", "-v", "-p", "6"}),
              (ProcessOutcome{0, "*********************************\nDisk ID : 6\n", ""}));
}

TEST_F(Extents, AreShownWithAllStates) {
    EXPECT_EQ(s.run({"extent", "-v", "-p", "4"}), (ProcessOutcome{0,
                                                                  "*********************************\n"
                                                                  "Disk ID : 4\n"
                                                                  "Extent Index : 0\n"
                                                                  "Extent's start LBA : 0.00\n"
                                                                  "Extent's size : 500.00 MB\n"
                                                                  "Maintenance status : Idle\n"
                                                                  "Functional status : Online\n"
                                                                  "Assignment status : global spare\n"
                                                                  "Smart status : OK\n"
                                                                  "Extent Index : 1\n"
                                                                  "Extent's start LBA : 500.00\n"
                                                                  "Extent's size : 500.00 MB\n"
                                                                  "Maintenance status : Idle\n"
                                                                  "Functional status : Online\n"
                                                                  "Assignment status : free\n"
                                                                  "Smart status : OK\n"
                                                                  "Extent Index : 2\n"
                                                                  "Extent's array ID : 0\n"
                                                                  "Extent's start LBA : 1000.00\n"
                                                                  "Extent's size : 1000.00 MB\n"
                                                                  "Maintenance status : Idle\n"
                                                                  "Functional status : Online\n"
                                                                  "Assignment status : dedicated spare\n"
                                                                  "Smart status : OK\n",
                                                                  ""}));
}

TEST_F(Extents, StaySplitUntilDeleted) {
    EXPECT_EQ(change("split", "3", "0", {"-o", "500"}), kSilentSuccess);
    const std::string halves = kHeader + "     3     0    -1   500.00     0.00\n"
                                         "     3     1    -1  1500.00   500.00\n";
    EXPECT_EQ(rows("3"), halves);
    EXPECT_EQ(s.prompt("extent -a split -p 3 -e 1 -i 0 -o 1499\nexit\n"),
              (ProcessOutcome{0, "cli>cli>", ""}));
    EXPECT_EQ(rows("3"), kHeader + "     3     0    -1   500.00     0.00\n"
                                   "     3     1    -1  1499.00   500.00\n"
                                   "     3     2    -1     1.00  1999.00\n");
    EXPECT_EQ(change("delete", "3", "2"), kSilentSuccess);
    EXPECT_EQ(rows("3"), halves);
    EXPECT_EQ(change("delete", "3", "0"), kSilentSuccess);
    EXPECT_EQ(rows("3"), kHeader + kThird);
}

TEST_F(Extents, RejectInvalidSplits) {
    const ProcessOutcome whole = refused("split extent #0 in physical drive", 2);
    EXPECT_EQ(change("split", "3", "0", {"-o", "2000"}), whole);
    EXPECT_EQ(change("split", "3", "0", {"-o", "4294967295"}), whole);
    EXPECT_EQ(change("split", "3", "1", {"-o", "5"}), refused("split extent #1 in physical drive", 2));
    EXPECT_EQ(change("split", "1", "0", {"-o", "5"}), refused("split extent #0 in physical drive", 0));
    EXPECT_EQ(change("split", "5", "0", {"-o", "5"}), refused("split extent #0 in physical drive", 4));
    EXPECT_EQ(change("split", "3", "0", {"-o", "0"}),
              (ProcessOutcome{7, "Incorrect offset 0 is defined!\n", ""}));
    EXPECT_EQ(s.run({"extent"}).out, kHeader + kFirst + kSecond + kThird + kFourth);
}

TEST_F(Extents, AreNotDeletedWithoutFreeNeighbor) {
    EXPECT_EQ(change("delete", "3", "0"), refused("delete an extent #0 in disk", 2));
    EXPECT_EQ(change("delete", "4", "1"), refused("delete an extent #1 in disk", 3));
    EXPECT_EQ(change("delete", "1", "0"), refused("delete an extent #0 in disk", 0));
    EXPECT_EQ(change("delete", "4", "0"), refused("delete an extent #0 in disk", 3));
    EXPECT_EQ(s.run({"extent"}).out, kHeader + kFirst + kSecond + kThird + kFourth);
}

TEST_F(Extents, BecomeSparesAndFreeAgain) {
    EXPECT_EQ(change("spare", "3", "0"), kSilentSuccess);
    EXPECT_EQ(statusOf("3", 0), status("Idle", "Online", "global spare"));
    EXPECT_EQ(rows("3"), kHeader + kThird);
    EXPECT_EQ(change("free", "3", "0"), kSilentSuccess);
    EXPECT_EQ(statusOf("3", 0), status("Idle", "Online", "free"));
    EXPECT_EQ(change("spare", "3", "0", {"-l", "0"}), kSilentSuccess);
    EXPECT_EQ(statusOf("3", 0), status("Idle", "Online", "dedicated spare"));
    EXPECT_EQ(rows("3"), kHeader + "     3     0     0  2000.00     0.00\n");
    EXPECT_EQ(s.prompt("extent -a free -p 3 -e 0 -i 0\nextent -p 3\nexit\n"),
              (ProcessOutcome{0, "cli>cli>" + kHeader + kThird + "cli>", ""}));
}

TEST_F(Extents, OfArraysAreNeitherFreedNorMadeSpares) {
    EXPECT_EQ(change("free", "1", "0"), refused("free an extent #0 in disk", 0));
    EXPECT_EQ(change("spare", "1", "0"), refused("spare an extent #0 in disk", 0));
    EXPECT_EQ(change("spare", "1", "0", {"-l", "1"}), refused("spare an extent #0 in disk", 0));
    EXPECT_EQ(change("spare", "3", "0", {"-l", "9"}), refused("spare an extent #0 in disk", 2));
    EXPECT_EQ(statusOf("1", 0), status("Idle", "Online", "assigned"));
    EXPECT_EQ(s.run({"extent"}).out, kHeader + kFirst + kSecond + kThird + kFourth);
}

// The array has members of 500 MB, one of them missing; a rebuild at rate 1 copies 8 MB per second.
TEST_F(Extents, AreRebuiltIntoDegradedArray) {
    EXPECT_EQ(change("add", "3", "0", {"-l", "1"}), kSilentSuccess);
    const std::string taken = kHeader + "     3     0     1   500.00     0.00\n"
                                        "     3     1    -1  1500.00   500.00\n";
    EXPECT_EQ(rows("3"), taken);
    EXPECT_EQ(statusOf("3", 0), status("Rebuilding", "Offline", "assigned"));
    s.setClock(kSessionStart + 62);
    EXPECT_EQ(statusOf("3", 0), status("Rebuilding", "Offline", "assigned"));
    s.setClock(kSessionStart + 63);
    EXPECT_EQ(statusOf("3", 0), status("Idle", "Online", "assigned"));
    EXPECT_EQ(rows("3"), taken);
    const std::string array = s.run({"logdrv", "-v", "-l", "1"}).out;
    EXPECT_NE(array.find("Disk members with ID in array : (1,3)\n"), std::string::npos) << array;
    EXPECT_EQ(change("free", "3", "0"), refused("free an extent #0 in disk", 2));
}

TEST_F(Extents, AreNotAddedToCompleteArray) {
    const ProcessOutcome whole = refused("add extent #0 in physical drive", 2);
    EXPECT_EQ(change("add", "3", "0", {"-l", "0"}), whole);
    EXPECT_EQ(change("add", "3", "0", {"-l", "7"}), whole);
    EXPECT_EQ(change("add", "1", "2", {"-l", "1"}), refused("add extent #2 in physical drive", 0));
    EXPECT_EQ(change("add", "2", "0", {"-l", "1"}), refused("add extent #0 in physical drive", 1));
    EXPECT_EQ(s.run({"extent", "-a", "add", "-p", "3", "-e", "0", "-i", "0", "-i", "0"}),
              (ProcessOutcome{6, "Invalid logical drive ID defined!\n", ""}));
    EXPECT_EQ(s.run({"extent"}).out, kHeader + kFirst + kSecond + kThird + kFourth);
}

TEST_F(Extents, OfFailedDriveAreInaccessible) {
    std::string world = fixtureWorld("drives_and_boxes");
    const std::string healthy = "\"mediaErrors\": 3";
    world.replace(world.find(healthy), healthy.size(), "\"failed\": true, \"smartFailure\": true");
    s.useWorld(world);
    EXPECT_EQ(statusOf("2", 0), status("Idle", "Offline", "no access"));
    EXPECT_EQ(statusOf("2", 1), status("Idle", "Offline", "no access"));
    EXPECT_NE(s.run({"extent", "-v", "-p", "2"}).out.find("Smart status : Failed\n"), std::string::npos);
    EXPECT_EQ(rows("2"), kHeader + kSecond);
    EXPECT_EQ(change("spare", "2", "1"), refused("spare an extent #1 in disk", 1));
}

TEST_F(Extents, LogEachChange) {
    const auto events = [&] {
        const std::string listing = s.run({"event", "-c", "100"}).out;
        return std::count(listing.begin(), listing.end(), '\n');
    };
    auto seen = events();
    const std::pair<const char*, std::vector<std::string>> changes[] = {
        {"split", {"-o", "500"}}, {"delete", {}}, {"spare", {}}, {"free", {}}, {"add", {"-l", "1"}}};
    for (const auto& [action, more] : changes) {
        EXPECT_EQ(change(action, "3", "0", more), kSilentSuccess);
        EXPECT_EQ(events(), ++seen) << action;
    }
    change("free", "1", "0");
    EXPECT_EQ(events(), seen);
}

TEST_F(Extents, RejectBadWords) {
    for (const char* action : {"spare", "free", "add", "split", "delete"}) {
        EXPECT_EQ(
            s.run({"extent", "-a", action, "-p", "3", "-e", "0"}),
            (ProcessOutcome{
                2, std::string("Invalid number of parameters for \"extent -a ") + action + "\" defined\n",
                ""}));
    }
    EXPECT_EQ(change("free", "3", "x"), (ProcessOutcome{6, "Invalid extent ID 'x' specified\n", ""}));
    EXPECT_EQ(change("split", "3", "0", {"-o", "1.5"}),
              (ProcessOutcome{6, "Invalid offset '1.5' specified\n", ""}));
    EXPECT_EQ(change("merge", "3", "0"), (ProcessOutcome{9, "Invalid command for \"extent\"\n", ""}));
    EXPECT_EQ(s.run({"extent", "-e", "0"}), (ProcessOutcome{1, "Invalid parameters defined\n", ""}));
    EXPECT_EQ(s.run({"extent", "-p", "5"}), (ProcessOutcome{5, "Disk with ID 4 is not existed!\n", ""}));
}
