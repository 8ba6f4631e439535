// Migrations: from a striped pair to a RAID5 and further; listed, paused, resumed and refused.
#include "tests/e2e/array_session.h"

static const std::string kStarted = "0: Migration is started on Array 0.\n";
static const std::string kNoMigration = "0: No activity for migration!\n";

// A RAID0 of 1600 MB on drives 1 and 2.
struct Migrate : Arrays {
    Migrate() { EXPECT_EQ(add("1 2", "name=data,raid=raid0,capacity=1600"), "0: "); }

    std::string start(const std::string& options, const std::string& text) {
        return outcomeOf("migrate -a start -l 0 -i 0 " + options + " -s " + text);
    }
    std::string control(const std::string& action) {
        return outcomeOf("migrate -a " + action + " -l 0 -i 0");
    }
};

TEST_F(Migrate, RunsToCompletion) {
    EXPECT_EQ(outcomeOf("migrate"), kNoMigration);
    EXPECT_EQ(control("pause"), "0: ");
    EXPECT_EQ(start("-p 3 -e 0", "raid=raid5"), kStarted);
    advanceClockTo(25);
    EXPECT_EQ(outcomeOf("migrate"),
              "0: Migration is in progress 25% on logical drive with ID 0 in controller #0!\n");
    EXPECT_EQ(bga(0), "0: Array activity status : Migrating\nArray migration progress : 25 %\n");
    EXPECT_EQ(row(0), " 0   RAID0     2      64    1600.00           (1,2) data\n");
    EXPECT_EQ(start("-p 4 -e 0", "raid=raid5"), "0: ");
    EXPECT_EQ(control("resume"), "0: ");
    EXPECT_EQ(control("pause"), "0: Migration paused on Array 0.\n");
    advanceClockTo(300);
    EXPECT_EQ(outcomeOf("migrate -a list -l 0 -i 0"), "0: Migration is paused!\n");
    EXPECT_EQ(state(0),
              "Array activity status : Migration Paused\nArray migration progress : 25 %\n" + kOnlineLine);
    EXPECT_EQ(control("pause"), "0: ");
    EXPECT_EQ(control("resume"), "0: Migration resumed on Array 0.\n");
    advanceClockTo(374);
    EXPECT_EQ(bga(0), "0: Array activity status : Migrating\nArray migration progress : 99 %\n");
    advanceClockTo(375);
    EXPECT_EQ(state(0), kIdleLine + kOnlineLine);
    EXPECT_EQ(outcomeOf("migrate -l 0"), kNoMigration);
    EXPECT_EQ(row(0), " 0   RAID5     3      64    1600.00         (1,2,3) data\n");
    EXPECT_NE(events().find("Event Desciption: Logical drive 0: migration ended\n"), std::string::npos);
}

TEST_F(Migrate, ResultIsACompleteRaid5) {
    EXPECT_EQ(start("-p 3 -e 0", "raid=raid5"), kStarted);
    advanceClockTo(375);
    EXPECT_EQ(outcomeOf("rc -a start -l 0 -i 0"), "0: Redundancy check started on Array 0!\n");
    advanceClockTo(500);
    EXPECT_EQ(start("", "raid=raid0"),
              "1: Error: migrate only support from low level raid to high level raid\n");
    failDrive(3);
    EXPECT_EQ(state(0), "Set down disk members with ID in array : 2\n" + kIdleLine +
                            "Array functional status : Critical\n");
    EXPECT_EQ(outcomeOf("logdrv -a del -l 0"), "0: ");
    EXPECT_EQ(outcomeOf("logdrv"), "0: No array with ID 0 in controller #0 is existed\n");
    EXPECT_EQ(outcomeOf("extent -p 1"),
              "0: DiskID Index AryID Size     StartLBA\n     1     0    -1   800.00     0.00\n");
}

TEST_F(Migrate, ChangesStripeOnly) {
    EXPECT_EQ(start("", "raid=raid0,stripe=128"), kStarted);
    advanceClockTo(99);
    EXPECT_EQ(row(0), " 0   RAID0     2      64    1600.00           (1,2) data\n");
    advanceClockTo(100);
    EXPECT_EQ(row(0), " 0   RAID0     2     128    1600.00           (1,2) data\n");
    EXPECT_EQ(start("", "stripe=32"), kStarted);
    advanceClockTo(200);
    EXPECT_EQ(row(0), " 0   RAID0     2      32    1600.00           (1,2) data\n");
}

TEST_F(Migrate, SubtractsParityFromMemberCount) {
    EXPECT_EQ(outcomeOf({"migrate", "-a", "start", "-l", "0", "-i", "0", "-p", "3 4 5", "-e", "0 0 0", "-s",
                         "raid=raidmf,count=3"}),
              kStarted);
    advanceClockTo(100);
    EXPECT_EQ(row(0), " 0  RAIDMF     5      64    1600.00     (1,2,3,4,5) data\n");
    EXPECT_TRUE(outcomeOf("logdrv -v").ends_with("Array parity count:3\nArray Symmetric:0\nArray Shift:0\n"));
}

TEST_F(Migrate, ChangesNothingWhenRefused) {
    EXPECT_EQ(add("7", "name=small,raid=raid0,capacity=100"), "0: ");
    const std::string before = s.worldWithoutRefusals();
    const char* const starts[][2] = {
        {"", "raid=raid5"},           // too few members
        {"-p 2 -e 0", "raid=raid5"},  // twice
        {"-p 7 -e 1", "raid=raid5"},  // too small
        {"-p 7 -e 0", "raid=raid5"},  // of another array
        {"-p 9 -e 0", "raid=raid5"},  // no such drive
        {"-p 3 -e 1", "raid=raid5"},  // no such extent
        {"", "raid=raid0"},           // no change
        {"", "raid=raid0,stripe=48"}, // no such stripe
        {"-p 3 -e 0", "raid=raid1"},  // too many members
    };
    for (const auto& [options, text] : starts)
        EXPECT_EQ(start(options, text), "8: Migration is failed to start on Array 0.\n") << options << text;
    EXPECT_EQ(start("-p 3 -e 0", "raid=raid50"), "1: Invalide parameter in \"migrate count\"!\n");
    EXPECT_EQ(start("-p 3 -e 0", "RAID=raid5"), "1: Invalid parameters for \"ctrl\"!\n");
    EXPECT_EQ(start("-p 3 -e 0", "raid"), "1: Invalide parameter in \"migrate\"!\n");
    EXPECT_EQ(start("", "raid=jbod"),
              "1: Error: migrate only support from low level raid to high level raid\n");
    EXPECT_EQ(s.worldWithoutRefusals(), before);
    failDrive(1);
    EXPECT_EQ(start("-p 3 -e 0", "raid=raid5"), "8: Migration is failed to start on Array 0.\n");
}
