// Creation of arrays of every level on drives of 800 MB: the arrays, their drives, and refused requests.
#include "tests/e2e/array_session.h"

namespace {
struct Level {
    const char* name;
    const char* drives;
    const char* text;
    const char* row;
    const char* lastLines; // of its block, for levels that differ
    bool synchronizes;
};

class ArrayLevels : public Arrays, public testing::WithParamInterface<Level> {};
using Creation = Arrays;
} // namespace

static const Level kLevels[] = {
    {"Raid0", "1 2", "name=zero,raid=raid0,capacity=1600",
     " 0   RAID0     2      64    1600.00           (1,2) zero\n", "", false},
    {"Raid0OfOne", "8", "name=zero,raid=raid0,capacity=800,stripe=32",
     " 0   RAID0     1      32     800.00             (8) zero\n", "", false},
    {"Raid1", "3,4", "name=one,raid=raid1,capacity=800",
     " 0   RAID1     2      64     800.00           (3,4) one\n", "", true},
    {"Raid5", "1 2 3", "name=five,raid=raid5,capacity=1600,stripe=128",
     " 0   RAID5     3     128    1600.00         (1,2,3) five\n", "", true},
    {"Raid10", "4 3 2 1", "name=ten,raid=raid10,capacity=1600",
     " 0  RAID10     4      64    1600.00       (4,3,2,1) ten\n", "", true},
    {"Raid50", "1 2 3 4 5 6", "name=fifty,raid=raid50,capacity=3200",
     " 0  RAID50     6      64    3200.00   (1,2,3,4,5,6) fifty\n", "Array sub array count:2\n", true},
    {"RaidMf", "1 2 3 4 5", "name=many,raid=raidmf,capacity=2400,symmetric=1,shift=-1",
     " 0  RAIDMF     5      64    2400.00     (1,2,3,4,5) many\n",
     "Array parity count:2\nArray Symmetric:1\nArray Shift:-1\n", true},
    {"RaidMfOfThreeParities", "1 2 3 4 5", "name=many,raid=raidmf,capacity=1600,paritycnt=3",
     " 0  RAIDMF     5      64    1600.00     (1,2,3,4,5) many\n",
     "Array parity count:3\nArray Symmetric:0\nArray Shift:0\n", true},
    {"Jbod", "6", "raid=jbod", " 0    JBOD     1      64     800.00             (6) \n", "", false},
};

static std::string nameOf(const testing::TestParamInfo<Level>& info) {
    return info.param.name;
}
INSTANTIATE_TEST_SUITE_P(Of, ArrayLevels, testing::ValuesIn(kLevels), nameOf);

TEST_P(ArrayLevels, SynchronizeIfRedundant) {
    EXPECT_EQ(add(GetParam().drives, GetParam().text), "0: ");
    EXPECT_EQ(row(0), GetParam().row);
    EXPECT_TRUE(s.run({"logdrv", "-v"}).out.ends_with(GetParam().lastLines));
    const std::string none = "0: No activity for synchronization!\n";
    if (GetParam().synchronizes) {
        advanceClockTo(50);
        EXPECT_EQ(bga(0),
                  "0: Array activity status : Synchronizing\nArray synchronization progress : 50 %\n");
        advanceClockTo(99);
        EXPECT_EQ(state(0), "Array activity status : Synchronizing\nArray synchronization progress : 99 %\n" +
                                kOnlineLine);
        EXPECT_EQ(outcomeOf("sync"),
                  "0: Synchronization is in progress 99% in logical drive with ID 0 on controller #0!\n");
        advanceClockTo(100);
    }
    EXPECT_EQ(outcomeOf("sync -a list"), none);
    EXPECT_EQ(state(0), kIdleLine + kOnlineLine);
}

TEST_F(Creation, AllocatesRequiredSpace) {
    EXPECT_EQ(add("1 2", "name=small,raid=raid1,capacity=100"), "0: ");
    const std::string head = "DiskID Index AryID Size     StartLBA\n";
    const std::string first = "     1     0     0   100.00     0.00\n";
    EXPECT_EQ(outcomeOf("extent -p 1"), "0: " + head + first + "     1     1    -1   700.00   100.00\n");
    EXPECT_EQ(outcomeOf({"logdrv", "-a", "add", "-p", "1 2", "-e", "1 1", "-z", "name=rest,raid=raid0"}),
              "0: ");
    EXPECT_EQ(outcomeOf("extent -p 1"), "0: " + head + first + "     1     1     1   700.00   100.00\n");
    EXPECT_EQ(outcomeOf("logdrv"), "0: ID    RAID Disks Sectors   Size(MB)          DiskID Name\n"
                                   " 0   RAID1     2      64     100.00           (1,2) small\n"
                                   " 1   RAID0     2      64    1400.00           (1,2) rest\n");
    EXPECT_NE(outcomeOf("ctrl -v").find("\nNumber of disks : 8\nNumber of arrays : 2\n"), std::string::npos);
    EXPECT_EQ(outcomeOf("logdrv -a del -l 0"), "0: ");
    EXPECT_EQ(outcomeOf("logdrv -a del -l 1"), "0: ");
    EXPECT_NE(outcomeOf("ctrl -v").find("\nNumber of arrays : 0\n"), std::string::npos);
    EXPECT_EQ(add("1 2", "name=again,raid=raid0,capacity=1400"), "0: ");
}

TEST_F(Creation, RoundsToWholeBillionsOfBytes) {
    EXPECT_EQ(add("1 2", "name=a,raid=raid0,capacity=1600,rounding=gbb"), "0: ");
    EXPECT_EQ(row(0), " 0   RAID0     2      64     953.67           (1,2) a\n");
}

TEST_F(Creation, StartsRequestedInitialization) {
    EXPECT_EQ(add("1 2", "name=a,raid=raid1,capacity=800,init=back"), "0: ");
    EXPECT_EQ(add("3 4", "name=b,raid=raid1,capacity=800,init=quick"), "0: ");
    advanceClockTo(1);
    EXPECT_EQ(bga(0), "0: Array activity status : Initializing\nArray initialization progress : 1 %\n");
    EXPECT_EQ(bga(1), "0: Array activity status : Initializing\nArray initialization progress : 50 %\n");
    advanceClockTo(12); // quick initialization of 16 MB is done, synchronization has run for ten seconds
    EXPECT_EQ(bga(1), "0: Array activity status : Synchronizing\nArray synchronization progress : 10 %\n");
    advanceClockTo(100);
    EXPECT_EQ(bga(0), kIdleOutcome);
}

TEST_F(Creation, ChangesNothingWhenRefused) {
    EXPECT_EQ(add("7", "name=there,raid=raid0,capacity=100"), "0: ");
    const std::string before = s.worldWithoutRefusals();
    const char* creations[][2] = {
        {"1 2", "name=a,raid=raid5,capacity=100"},
        {"1", "name=a,raid=raid1,capacity=100"},
        {"1 2 3", "name=a,raid=raid1,capacity=100"},
        {"1 2", "name=a,raid=raid10,capacity=100"},
        {"1 2 3 4 5", "name=a,raid=raid10,capacity=100"},
        {"1 2 3 4 5", "name=a,raid=raid50,capacity=100"},
        {"1 2 3 4 5 6 8", "name=a,raid=raid50,capacity=100"},
        {"1 2", "name=a,raid=raidmf,capacity=100"},
        {"1 2 3", "name=a,raid=raidmf,capacity=100,paritycnt=3"},
        {"1 2", "raid=jbod"},
        {"1 1", "name=a,raid=raid0,capacity=100"},
        {"9", "name=a,raid=raid0,capacity=100"},
        {"0", "name=a,raid=raid0,capacity=100"},
        {"1 2", "name=a,raid=raid0,capacity=1601"},
        {"1 2", "name=a,raid=raid1,capacity=801"},
        {"7", "name=a,raid=raid0,capacity=701"},
        {"1", "name=a,raid=raid0,capacity=-1"},
        {"7", "raid=jbod"},
        {"1", "name=a,raid=raid0,capacity=800,rounding=gbb"},
    };
    for (const auto& creation : creations) {
        EXPECT_EQ(add(creation[0], creation[1]), "8: Failed to create an array specified\n") << creation[1];
        EXPECT_EQ(s.worldWithoutRefusals(), before) << creation[0] << " " << creation[1];
    }
    EXPECT_EQ(outcomeOf({"logdrv", "-a", "add", "-p", "1 2", "-e", "0 1", "-z", "name=a,raid=raid0"}),
              "8: Failed to create an array specified\n");
    EXPECT_EQ(add("1", "name=a,raid=raid0,capacity=5,init=fore"), "8: ");
    EXPECT_EQ(add("1", "name=a,raid=raid0"),
              "8: Error: extent ID or the logical drive size is not defined!\n");
    EXPECT_EQ(s.worldWithoutRefusals(), before);
}
