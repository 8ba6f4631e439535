// Malformed counts: byte counts of replies below, at and beyond their buffers, counts of events and of
// controllers. A listing shows complete records only, and no more than its buffer holds.
#include <fstream>
#include <iterator>

#include "tests/malformed/malformed_test.h"

static const Fill& letters = fills[2];

namespace {
// A listing, and the size and maximum number of its records.
struct Listing {
    std::string line;
    std::uint32_t recordSize, capacity;
    std::string header; // before the records
    std::string record; // printed for each of them
    int noneResult;     // without any record
    std::string noneOutput;
};
} // namespace

static const std::string driveRow = letters.next + " " + letters.u16 + " " + letters.megabytes + "MB " +
                                    full(letters, 22) + " " + full(letters, 24) + " " + full(letters, 38) +
                                    "\n";
static const std::string extentRow = " " + letters.next + " " + letters.u16 + " " + letters.u16 + " " +
                                     letters.megabytes + " " + letters.megabytes + "\n";
static const std::string arrayRow = letters.u16 + " Unknown raid mode " + letters.u16 + " " + letters.u32 +
                                    " " + letters.megabytes + " " + letters.members + " " +
                                    full(letters, 88) + "\n";

class Counts : public Malformed, public testing::WithParamInterface<Listing> {
protected:
    void SetUp() override {
        Malformed::SetUp();
        malformedReply.fill = letters.byte;
    }
};

TEST_P(Counts, DecideHowManyRecordsAreShown) {
    const Listing& listing = GetParam();
    const std::uint32_t size = listing.recordSize, last = 64 + listing.capacity * size;
    const struct {
        std::uint32_t bytesUsed, records;
    } rows[] = {{0, 0},
                {1, 0},
                {63, 0},
                {64, 0},
                {65, 0},
                {64 + size - 1, 0},
                {64 + size, 1},
                {64 + 2 * size - 1, 1},
                {last - 1, listing.capacity - 1},
                {last, listing.capacity},
                {last + 1, listing.capacity},
                {last + size, listing.capacity},
                {INT_MAX, listing.capacity},
                {1U << 31, listing.capacity},
                {UINT32_MAX, listing.capacity}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.bytesUsed);
        malformedReply.bytesUsed = row.bytesUsed;
        if (row.records == 0)
            expectOutcome(command(listing.line), listing.noneResult, listing.noneOutput);
        else
            expectOutcome(command(listing.line), 0, listing.header + times(row.records, listing.record));
    }
}

static const Listing listings[] = {
    {"phydrv", 664, 16, "ID CH         Size                  Model                Serial        F/W\n",
     driveRow, 5, "Disk with ID 0 in controller #0 is not existed\n"},
    {"extent", 664, 16, "DiskID Index AryID Size     StartLBA\n", times(16, extentRow), 5,
     "Disk with ID 0 is not existed!\n"},
    {"logdrv", 208, 128, "ID    RAID Disks Sectors   Size(MB)          DiskID Name\n", arrayRow, 0,
     "No array with ID 0 in controller #0 is existed\n"},
};
INSTANTIATE_TEST_SUITE_P(Listings, Counts, testing::ValuesIn(listings),
                         [](const auto& row) { return row.param.line; });

// One record is requested; there is one or none, regardless of the count.
TEST_F(Malformed, ByteCountsDecideWhetherDriveExists) {
    const struct {
        std::string line;
        std::uint32_t size;
        int foundResult, noneResult;
        std::string found, none;
    } rows[] = {
        {"bga", 208, 0, 5, "Array activity status : Rebuilding\nArray rebuilding progress : 65 %\n",
         "No array with ID 0 in controller #0 is existed\n"},
        {"init", 208, 0, 5, "No activity for initialization!\n", "No logical drive with ID 0 is existed!\n"},
        {"sync -a list", 208, 0, 5, "No activity for synchronization!\n",
         "No logical drive with ID 0 is existed!\n"},
        {"rc", 208, 0, 5, "No activity for redundancy check!\n", "No logical drive with ID 0 is existed!\n"},
        {"migrate", 208, 0, 5, "No activity for migration!\n",
         "No logical drive with ID 0 in controller #0 is existed!\n"},
        {"rb", 208, 0, 5, "Rebuild is in progress 65% in logical drive with ID 0 on controller #0!\n",
         "No logical drive with ID 0 is existed!\n"},
        {"logdrv -a locate -l 0 -d 5", 208, 0, 5, "", "No array with ID 0 in controller #0 is existed\n"},
        {"phydrv -a set3G -p 1 -e 1", 664, 0, 8, "", "Disk 0 is not existed!\n"},
        {"mp -a start -i 0 -p 16706", 664, 0, 5, "", "Disk with ID 16705 in controller #0 is not existed\n"},
    };
    malformedReply.fill = letters.byte;
    for (const auto& row : rows)
        for (const std::uint32_t bytesUsed : {0U, 1U, 63U, 64U, 65U, 64 + row.size - 1, 64 + row.size,
                                              64 + row.size + 1, 64 + 2 * row.size, UINT32_MAX}) {
            SCOPED_TRACE(row.line + ", bytes used " + std::to_string(bytesUsed));
            malformedReply.bytesUsed = bytesUsed;
            const bool found = bytesUsed >= 64 + row.size;
            expectOutcome(command(row.line), found ? row.foundResult : row.noneResult,
                          found ? row.found : row.none);
        }
}

// The search runs once for each drive counted. Every search matches here and continues at the next of the 64
// entries of the reply.
TEST_F(Malformed, LocatingEnclosureStaysInReply) {
    malformedReply.fill = letters.byte;
    for (const auto& [bytesUsed, drives] : {std::pair<std::uint32_t, int>{63, 0},
                                            {64 + 664, 1},
                                            {64 + 16 * 664, 16},
                                            {64 + 64 * 664, 64},
                                            {64 + 65 * 664, 64},
                                            {UINT32_MAX, 64}}) {
        malformedReply.bytesUsed = bytesUsed;
        malformedReply.calls.clear();
        expectOutcome(command("enclosure -a locate -e 16705 -s 9"), 0, "");
        expectOutcome(command("enclosure -a locate -e 16705"), 0, "");
        EXPECT_EQ(malformedReply.calls["q5_locatePhyDrv"], drives) << bytesUsed;
        EXPECT_EQ(malformedReply.calls["q5_stopLocatePhyDrv"], drives) << bytesUsed;
    }
    malformedReply.calls.clear();
    expectOutcome(command("enclosure -a locate -e 1"), 0, ""); // no search matches
    EXPECT_EQ(malformedReply.calls["q5_stopLocatePhyDrv"], 0);
}

// The buffer holds at most 50 of the delivered events, and no more are shown than requested.
TEST_F(Malformed, EventCountsAreBounded) {
    const struct {
        std::uint32_t delivered;
        int wanted, shown;
    } rows[] = {{1, 1, 1},      {51, 1, 1},          {UINT32_MAX, 1, 1},   {0, 100, 0},   {1, 100, 1},
                {49, 100, 49},  {50, 100, 50},       {51, 100, 50},        {52, 100, 50}, {100, 100, 50},
                {101, 100, 50}, {1U << 31, 100, 50}, {UINT32_MAX, 100, 50}};
    malformedReply.fill = letters.byte;
    for (const auto& row : rows) {
        g_EventBuffer = {};
        malformedReply.eventsDelivered = row.delivered;
        const CommandOutcome outcome = command("event -c " + std::to_string(row.wanted));
        EXPECT_EQ(outcome.result, 0);
        EXPECT_EQ(std::count(outcome.output.begin(), outcome.output.end(), '\n'), 1 + row.shown)
            << row.delivered << "\n"
            << outcome.output;
        EXPECT_EQ(outcome.output.substr(0, 9), row.shown == 0 ? "No event!" : "Event_Ind");
    }
}

// Compatibility: the number of controllers is used unchecked; -c limits it.
TEST_F(Malformed, ControllerCountsDecideHowManyAreListed) {
    const std::string header = "ID      MemType  MemSize Disks Arrays Enclosures     BIOS Ver   Driver Ver\n";
    const std::string rest = "      Non-ECC     0 MB    0      0          0      0.0.0.0      0.0.0.0\n";
    malformedReply.controllers = 0;
    expectOutcome(command("ctrl"), 5, "No controller is existed\n");
    malformedReply.controllers = 300;
    std::string rows;
    for (int id = 0; id < 300; ++id)
        rows += right(2, std::to_string(id)) + rest;
    expectOutcome(command("ctrl"), 0, header + rows);
    malformedReply.controllers = UINT32_MAX;
    expectOutcome(command("ctrl -c 2"), 0, header + " 0" + rest + " 1" + rest);
    expectOutcome(command("ctrl -i 2 -c 2"), 5, "No controller with ID #2 is existed!\n");
}

static std::string contents(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// The blocks of an export: 16 drives and 128 logical drives at most, with 32 members each.
TEST_F(Malformed, ExportsAreBoundedByReply) {
    const char* const spares[] = {"256", "0", "0"}; // 16 drives times the first one's 16 extents
    const char* const modes[] = {"Auto - Write Back", "Write Through", "Write Back"};
    for (std::size_t i = 0; i < std::size(fills); ++i) {
        const Fill& f = fills[i];
        std::string expected = "[CrtlSetIndex] 0\n<AutoRebuild> Enable\n<SyncRate> " + f.u8 +
                               "\n<InitRate> " + f.u8 + "\n<MPRate> " + f.u8 + "\n<MigrateRate> " + f.u8 +
                               "\n<RebuildRate> " + f.u8 + "\n<SmartCEnable> Enable\n<SmartPollInt> " + f.u8 +
                               "\n<EncPollInt> " + f.u8 + "\n<RebuildPolicy> " + f.u8 +
                               "\n<BuzzerEnable> On\n<GlobalSpare> " + spares[i] + "\n[End] \n";
        for (int k = 0; k < 16; ++k)
            expected += "[PhyDrvSetIndex] " + std::to_string(k) + "\n<PhyDrvCtrlID> 0\n<PhyDrvID> " + f.next +
                        "\n<WriteCache> Enable\n<TCQEnable> Enable\n<NCQEnable> Enable\n[End] \n";
        for (int k = 0; k < 128; ++k)
            expected += "[LogDrvSetIndex] " + std::to_string(k) + "\n<LogDrvID> " + f.u16 +
                        "\n<LogyDrvCtrlID> 0\n<LogDrvName> " + full(f, 88) + "\n<LogDrvSize> " + f.thousands +
                        "\n<LogDrvSectorCount> " + f.u64 + "\n<LogDrvSectorSize> " + f.i32 +
                        "\n<LogDrvStripeSize> " + f.i32 +
                        "\n<LogDrvRaidMode> Unknown raid mode\n<LogDrvCacheMode> " + modes[i] +
                        "\n<LogDrvDiskNum> " + f.u16 + "\n<LogDrvDiskMember> " + f.members +
                        "\n<LogDrvDiskExtentIndex> " + f.extents +
                        "\n<LogDrvInitMode> NONE\n<LogDrvLookAheadValue> " + f.u16 +
                        "\n<LogDrvConsolidation> Enable\n[End] \n";
        malformedReply.fill = f.byte;
        for (const int result : kResults) {
            malformedReply.result = result;
            expectOutcome(command("export -t 0 -f " + file()), 0, "");
            EXPECT_EQ(contents(file()), expected);
        }
    }
}

// Every logical drive of the reply is deleted before those of the file are created; the reply holds 128.
TEST_F(Malformed, ImportsDeleteOnlyDrivesWithinReply) {
    std::ofstream(file()) << "[LogDrvSetIndex] 0\n<LogDrvID> 0\n<LogyDrvCtrlID> 0\n<LogDrvName> x\n"
                             "<LogDrvSectorCount> 9\n<LogDrvSectorSize> 512\n<LogDrvStripeSize> 64\n"
                             "<LogDrvRaidMode> RAID1\n<LogDrvDiskNum> 2\n<LogDrvDiskMember> (1,2)\n[End]\n";
    malformedReply.fill = letters.byte;
    for (const auto& [bytesUsed, drives] : {std::pair<std::uint32_t, int>{63, 0},
                                            {64 + 208, 1},
                                            {64 + 128 * 208, 128},
                                            {64 + 129 * 208, 128},
                                            {UINT32_MAX, 128}}) {
        malformedReply.bytesUsed = bytesUsed;
        malformedReply.calls.clear();
        expectOutcome(command("import -c -f " + file()), 0, "");
        EXPECT_EQ(malformedReply.calls["q5_delDiskArray"], drives) << bytesUsed;
        EXPECT_EQ(malformedReply.calls["q5_addHBAArray"], 1) << bytesUsed;
    }
}
