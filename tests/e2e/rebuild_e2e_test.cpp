// Lost members and rebuilds: the state of each level after each loss, and a rebuild from start to end.
#include "tests/e2e/array_session.h"

static const std::string kNoRebuild = "0: No activity for rebuild!\n";
static const std::string kStarted = "0: Rebuild is started on Array 0.\n";
static const std::string kStartFailed = "8: Rebuild is failed to start on Array 0.\n";

static std::string lost(const std::string& ids, const std::string& activity, const std::string& functional) {
    return "Set down disk members with ID in array : " + ids + "\n" + activity +
           "Array functional status : " + functional + "\n";
}

namespace {
struct Loss {
    const char* drives;
    const char* text;
    std::vector<int> failing;         // drives in the order in which they fail
    std::vector<const char*> lostIds; // lost members listed after each
    std::vector<const char*> functional;
};

struct Rebuild : Arrays {
    // Creates the logical drive in a new world, and checks its state after each failure.
    void expectStates(const Loss& loss);
};
} // namespace

void Rebuild::expectStates(const Loss& loss) {
    s.useWorld(fixtureWorld("eight_drives"));
    advanceClockTo(0);
    EXPECT_EQ(add(loss.drives, loss.text), "0: ");
    advanceClockTo(100);
    EXPECT_EQ(state(0), kIdleLine + kOnlineLine);
    for (std::size_t i = 0; i < loss.failing.size(); ++i) {
        failDrive(loss.failing[i]);
        const std::string expected = loss.lostIds[i][0] == '\0'
                                         ? kIdleLine + kOnlineLine
                                         : lost(loss.lostIds[i], kIdleLine, loss.functional[i]);
        EXPECT_EQ(state(0), expected) << loss.text << " after drive " << loss.failing[i];
    }
}

TEST_F(Rebuild, ShowsEachLossInState) {
    const Loss losses[] = {
        {"1 2", "name=a,raid=raid0,capacity=1600", {2}, {"1"}, {"Offline"}},
        {"3", "raid=jbod", {3}, {"2"}, {"Offline"}},
        {"1 2", "name=a,raid=raid1,capacity=800", {1, 2}, {"0", "1,0"}, {"Critical", "Offline"}},
        {"1 2 3", "name=a,raid=raid5,capacity=1600", {2, 3}, {"1", "2,1"}, {"Critical", "Offline"}},
        {"1 2 3 4",
         "name=a,raid=raid10,capacity=1600",
         {1, 3, 4},
         {"0", "2,0", "3,2,0"},
         {"Degrade", "Critical", "Offline"}},
        {"1 2 3 4 5 6",
         "name=a,raid=raid50,capacity=3200",
         {6, 1, 2},
         {"5", "5,0", "5,1,0"},
         {"Degrade", "Critical", "Offline"}},
        {"1 2 3 4 5",
         "name=a,raid=raidmf,capacity=2400",
         {8, 5, 4, 3},
         {"", "4", "4,3", "4,3,2"},
         {"Online", "Degrade", "Critical", "Offline"}},
    };
    for (const Loss& loss : losses)
        expectStates(loss);
}

// A RAID5 on drives 1 to 3 that has lost drive 2, at second 200.
struct LostMember : Arrays {
    LostMember() {
        addRaid5();
        EXPECT_EQ(bga(0), kIdleOutcome);
        advanceClockTo(200);
        failDrive(2);
        EXPECT_EQ(state(0), lost("1", kIdleLine, "Critical"));
    }
    std::string start(const std::string& drives, const std::string& extents) {
        return outcomeOf({"rb", "-a", "start", "-l", "0", "-i", "0", "-p", drives, "-e", extents});
    }
    std::string control(const std::string& action) { return outcomeOf("rb -a " + action + " -l 0 -i 0"); }
};

TEST_F(LostMember, IsRebuiltOntoAnotherDrive) {
    EXPECT_EQ(outcomeOf("rb"), kNoRebuild);
    EXPECT_EQ(start("4", "0"), kStarted);
    advanceClockTo(230);
    EXPECT_EQ(outcomeOf("rb"),
              "0: Rebuild is in progress 30% in logical drive with ID 0 on controller #0!\n");
    EXPECT_EQ(bga(0), "0: Array activity status : Rebuilding\nArray rebuilding progress : 30 %\n");
    EXPECT_EQ(start("5", "0"), "0: ");
    EXPECT_EQ(control("resume"), "0: ");
    EXPECT_EQ(control("pause"), "0: Rebuild paused on Array 0.\n");
    advanceClockTo(500);
    EXPECT_EQ(outcomeOf("rb"), "0: Rebuild is paused in logical drive with ID 0 on controller #0!\n");
    EXPECT_EQ(
        state(0),
        lost("1", "Array activity status : Rebuild Paused\nArray rebuilding progress : 30 %\n", "Critical"));
    EXPECT_EQ(control("pause"), "0: ");
    EXPECT_EQ(control("resume"), "0: Rebuild resumed on Array 0.\n");
    advanceClockTo(569);
    EXPECT_EQ(bga(0), "0: Array activity status : Rebuilding\nArray rebuilding progress : 99 %\n");
    advanceClockTo(570);
    EXPECT_EQ(bga(0), kIdleOutcome);
    EXPECT_EQ(outcomeOf("rb -a list -l 0"), kNoRebuild);
    EXPECT_EQ(state(0), kIdleLine + kOnlineLine);
    EXPECT_EQ(row(0), " 0   RAID5     3      64    1600.00         (1,4,3) five\n");
    EXPECT_NE(outcomeOf("extent -p 4").find("     4     0     0   800.00     0.00\n"), std::string::npos);
    EXPECT_NE(events().find("Event Desciption: Logical drive 0: rebuild ended\n"), std::string::npos);
}

TEST_F(LostMember, RebuildIsRestartedAndAborted) {
    EXPECT_EQ(control("restart"), "8: Rebuild is failed to restart on Array 0.\n");
    EXPECT_EQ(control("abort"), "0: ");
    EXPECT_EQ(start("4", "0"), kStarted);
    advanceClockTo(240);
    EXPECT_EQ(control("restart"), "0: Rebuild is restarted on Array 0.\n");
    EXPECT_EQ(bga(0), "0: Array activity status : Rebuilding\nArray rebuilding progress : 0 %\n");
    advanceClockTo(250);
    EXPECT_EQ(bga(0), "0: Array activity status : Rebuilding\nArray rebuilding progress : 10 %\n");
    EXPECT_EQ(control("abort"), "0: Rebuild aborted on Array 0.\n");
    EXPECT_EQ(state(0), lost("1", kIdleLine, "Critical"));
    EXPECT_NE(outcomeOf("extent -p 4").find("     4     0    -1   800.00     0.00\n"), std::string::npos);
    EXPECT_EQ(start("4", "0"), kStarted);
}

TEST_F(LostMember, RejectsInvalidTargets) {
    EXPECT_EQ(add("5", "name=most,raid=raid0,capacity=100"), "0: ");
    const std::string before = s.worldWithoutRefusals();
    EXPECT_EQ(start("1", "0"), kStartFailed);     // a member
    EXPECT_EQ(start("2", "0"), kStartFailed);     // failed
    EXPECT_EQ(start("5", "0"), kStartFailed);     // of another array
    EXPECT_EQ(start("5", "1"), kStartFailed);     // too small
    EXPECT_EQ(start("4", "1"), kStartFailed);     // no such extent
    EXPECT_EQ(start("9", "0"), kStartFailed);     // no such drive
    EXPECT_EQ(start("4 6", "0 0"), kStartFailed); // more than are lost
    EXPECT_EQ(start("", ""), kStartFailed);       // none
    EXPECT_EQ(outcomeOf("init -a start -l 0 -i 0"),
              "8: Initialization is failed to start on Array 0 Type 4\n");
    EXPECT_EQ(outcomeOf("rc -a start -l 0 -i 0"), "8: Redundancy check failed to start on Array 0!\n");
    EXPECT_EQ(s.worldWithoutRefusals(), before);
}

TEST_F(LostMember, IsRebuiltOntoReplacementDrive) {
    replaceDrive(2);
    EXPECT_EQ(state(0), lost("1", kIdleLine, "Critical"));
    EXPECT_EQ(start("2", "0"), kStarted);
    advanceClockTo(300);
    EXPECT_EQ(state(0), kIdleLine + kOnlineLine);
    EXPECT_EQ(row(0), " 0   RAID5     3      64    1600.00         (1,2,3) five\n");
}

TEST_F(LostMember, CanBeLostAgainAfterRebuild) {
    EXPECT_EQ(start("4", "0"), kStarted);
    advanceClockTo(250);
    failDrive(4);
    EXPECT_EQ(state(0), lost("1", kIdleLine, "Critical"));
    EXPECT_EQ(outcomeOf("rb"), kNoRebuild);
}

TEST_F(Rebuild, UsesSpareAutomatically) {
    addRaid5();
    EXPECT_EQ(outcomeOf("extent -a spare -p 7 -e 0 -i 0"), "0: ");
    EXPECT_EQ(outcomeOf("ctrl -a mod -s autorebuild=enable"), "0: ");
    advanceClockTo(200);
    failDrive(3);
    EXPECT_EQ(state(0),
              lost("2", "Array activity status : Rebuilding\nArray rebuilding progress : 0 %\n", "Critical"));
    advanceClockTo(260);
    EXPECT_EQ(outcomeOf("rb"),
              "0: Rebuild is in progress 60% in logical drive with ID 0 on controller #0!\n");
    advanceClockTo(300);
    EXPECT_EQ(state(0), kIdleLine + kOnlineLine);
    EXPECT_EQ(row(0), " 0   RAID5     3      64    1600.00         (1,2,7) five\n");
}

TEST_F(Rebuild, RebuildsTwoMembersAtOnce) {
    EXPECT_EQ(add("1 2 3 4 5", "name=a,raid=raidmf,capacity=2400"), "0: ");
    advanceClockTo(100);
    EXPECT_EQ(bga(0), kIdleOutcome);
    failDrive(2);
    failDrive(5);
    EXPECT_EQ(state(0), lost("4,1", kIdleLine, "Critical"));
    EXPECT_EQ(outcomeOf({"rb", "-a", "start", "-l", "0", "-i", "0", "-p", "7 8", "-e", "0 0"}), kStarted);
    advanceClockTo(200);
    EXPECT_EQ(state(0), kIdleLine + kOnlineLine);
    EXPECT_EQ(row(0), " 0  RAIDMF     5      64    2400.00     (1,7,3,4,8) a\n");
}
