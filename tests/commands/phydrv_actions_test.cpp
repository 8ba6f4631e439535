// The phydrv actions on single drives: changing settings, locating and wiping.
#include "adapter/phydrv.h"
#include "commands/phydrv.h"
#include "tests/mock_adapter.h"

using PhyDrvAction = MockAdapterTest;

// A settings record after a header filled with a pattern.
static Bytes settingsReply(const PhyDrvSettings& settings) {
    return concat({Bytes(64, 0xA5), bytesOf(settings)});
}

// A settings record filled with a pattern except for the fields that a change may write.
static PhyDrvSettings patternFilledSettings(std::uint8_t writeCache, std::uint8_t tcq, std::uint8_t ncq) {
    PhyDrvSettings settings;
    std::memset(&settings, 0xA5, sizeof settings);
    settings.writeCache = writeCache;
    settings.tcqEnabled = tcq;
    settings.ncqEnabled = ncq;
    return settings;
}

static void expectRead(const PhyDrvSettings& settings) {
    expectCall("q5_getPhyDrvSettings", queryFor(1, PhyDrvSelector{2, 1, 1, {}}, 80), settingsReply(settings),
               5);
}

static CommandOutcome mod(const std::string& settings) {
    return run(SetPhyDrvSettings, {"phydrv", "-a", "mod", "-p", "3", "-i", "1", "-s", settings});
}

namespace {
struct Change {
    const char* text;
    std::uint8_t writeCache, tcq, ncq;
};
} // namespace

TEST_F(PhyDrvAction, ChangesOneFieldPerItemAndWritesTheRecordBack) {
    const Change changes[] = {{"writecache=enable", 1, 7, 7},
                              {"WriteCache = Disable", 0, 7, 7},
                              {"NCQ=ENABLE", 7, 7, 1},
                              {"tcq=disable", 7, 0, 7},
                              {"writecache=disable, ncq=enable,tcq=enabled", 0, 1, 1},
                              {"ncq=enable,ncq=disable", 7, 7, 0},
                              {"ncq writecache enable", 1, 7, 7}, // the first matching keyword
                              {"tcqncq:disable/enable", 7, 7, 1}};
    ReplyHeader header;
    std::memset(&header, 0xA5, sizeof header);
    for (const Change& change : changes) {
        const PhyDrvSettings expected = patternFilledSettings(change.writeCache, change.tcq, change.ncq);
        expectRead(patternFilledSettings(7, 7, 7));
        expectCall("q5_setPhyDrvSettings",
                   bytesOf(hbaAddress(1), std::uint32_t{0}, PhyDrvSelector{2, 1, 1, {}}, header, expected,
                           std::uint32_t{80}),
                   {}, 8);
        const CommandOutcome outcome = mod(change.text);
        EXPECT_EQ(outcome.result, 0) << change.text;
        EXPECT_EQ(outcome.output, "") << change.text;
    }
}

TEST_F(PhyDrvAction, WritesNothingUnlessEveryItemIsValid) {
    const std::string unknown = "Invalid parameters for \"phydrv\"!\n", bad = "Incorrect parameters!\n";
    const std::pair<const char*, std::string> texts[] = {
        {"", unknown},
        {",ncq=enable", unknown},
        {"ncq=enable,", unknown},
        {"ncq=enable,,tcq=enable", unknown},
        {"ncq=enable,smart=enable", unknown},
        {"writecache=on,cache=enable", unknown},
        {"writecache", bad},
        {"writecache=1", bad},
        {"tcq=maybe,ncq=enable", bad},
        {"ncq=enable,tcq=en able", bad},
    };
    for (const auto& [text, message] : texts) {
        expectRead({});
        const CommandOutcome outcome = mod(text);
        EXPECT_EQ(outcome.result, 1) << text;
        EXPECT_EQ(outcome.output, message) << text;
    }
}

TEST_F(PhyDrvAction, AcceptsTextOfMaximumLength) {
    expectRead({});
    EXPECT_EQ(mod(std::string(256, 'x')).output, "Invalid parameters for \"phydrv\"!\n");
    expectRead({});
    EXPECT_EQ(mod("ncq" + std::string(253, '.')).output, "Incorrect parameters!\n");
}

TEST_F(PhyDrvAction, UsesTheNinthWordAsTheText) {
    expectCall("q5_getPhyDrvSettings", queryFor(0, PhyDrvSelector{4, 1, 1, {}}, 80));
    EXPECT_EQ(outcomeOf(SetPhyDrvSettings, "phydrv -a mod -i 0 -s ncq=enable -p 5"),
              "1: Invalid parameters for \"phydrv\"!\n");
    expectCall("q5_getPhyDrvSettings", queryFor(0, PhyDrvSelector{0, 1, 1, {}}, 80));
    EXPECT_EQ(outcomeOf(SetPhyDrvSettings, "phydrv -a mod -s x -s y -S tcq=no"),
              "1: Incorrect parameters!\n");
}

TEST_F(PhyDrvAction, RejectsInvalidChangeBeforeAnyCall) {
    const std::string count = "2: Invalid number of parameters for \"phydrv -a mod\" defined\n";
    EXPECT_EQ(outcomeOf(SetPhyDrvSettings, "phydrv -a mod -p x -i 0 -s"), count);
    EXPECT_EQ(outcomeOf(SetPhyDrvSettings, "phydrv -a mod -p x -i 0 -s ncq=enable more"), count);
    EXPECT_EQ(outcomeOf(SetPhyDrvSettings, "phydrv"), count);
    EXPECT_EQ(outcomeOf(SetPhyDrvSettings, "phydrv -a mod -p x -z 0 -s z"),
              "6: Invalid physical drive ID 'x' specified\n");
    EXPECT_EQ(outcomeOf(SetPhyDrvSettings, "phydrv -a mod -s z -i y -p 1"),
              "6: Invalid controller ID 'y' specified\n");
    EXPECT_EQ(outcomeOf(SetPhyDrvSettings, "phydrv -a mod -d 0 -p x -s z"),
              "1: Invalid parameters defined\n");
}

TEST_F(PhyDrvAction, LocatesForADurationAndStopsAtZero) {
    const std::uint32_t zero = 0;
    expectCall("q5_locatePhyDrv", bytesOf(hbaAddress(1), zero, std::uint16_t{2}, std::uint32_t{30}), {}, 1);
    EXPECT_EQ(outcomeOf(LocatePhyDrv, "phydrv -a locate -p 3 -i 1 -d 30"), "0: ");
    expectCall("q5_stopLocatePhyDrv", bytesOf(hbaAddress(1), zero, std::uint16_t{2}), {}, 1);
    EXPECT_EQ(outcomeOf(LocatePhyDrv, "phydrv -a locate -D 0 -I 1 -P 3"), "0: ");
    expectCall("q5_stopLocatePhyDrv", bytesOf(hbaAddress(2), zero, std::uint16_t{0}));
    EXPECT_EQ(outcomeOf(LocatePhyDrv, "phydrv -a locate -i 0 -i 1 -i 2"), "0: ");
    expectCall("q5_locatePhyDrv", bytesOf(hbaAddress(0), zero, std::uint16_t{2}, std::uint32_t{30}));
    EXPECT_EQ(outcomeOf(LocatePhyDrv, "phydrv -a locate -p 3 -d 5 -d 30"), "0: ");
    expectCall("q5_locatePhyDrv", bytesOf(hbaAddress(0), zero, std::uint16_t{0xFFFF}, 0xFFFFFFFFu));
    EXPECT_EQ(outcomeOf(LocatePhyDrv, "phydrv -a locate -p 0 -i 0 -d 4294967295"), "0: ");
}

TEST_F(PhyDrvAction, RejectsInvalidLocate) {
    const std::string count = "2: Invalid number of parameters for \"phydrv -a locate\" defined\n";
    EXPECT_EQ(outcomeOf(LocatePhyDrv, "phydrv -a locate -p 3 -i 1"), count);
    EXPECT_EQ(outcomeOf(LocatePhyDrv, "phydrv -a locate -p 3 -i 1 -d 30 40"), count);
    EXPECT_EQ(outcomeOf(LocatePhyDrv, "phydrv -a locate -p ? -i 1 -d 30"),
              "6: Invalid physical drive ID '?' specified\n");
    EXPECT_EQ(outcomeOf(LocatePhyDrv, "phydrv -a locate -p 3 -i -d -d 30"),
              "6: Invalid controller ID '-d' specified\n");
    EXPECT_EQ(outcomeOf(LocatePhyDrv, "phydrv -a locate -p 3 -i 1 -d 30s"),
              "1: Invalid duration '30s' specified\n");
    EXPECT_EQ(outcomeOf(LocatePhyDrv, "phydrv -a locate -p 3 -s 1 -d x"), "1: Invalid parameters defined\n");
}

TEST_F(PhyDrvAction, WipesADriveOrReportsFailure) {
    expectCall("q5_removeHBADiskMDD", bytesOf(hbaAddress(1), std::uint32_t{0}, DriveSelector{2, 1}));
    EXPECT_EQ(outcomeOf(WipePhyDrvMDD, "phydrv -a wipe -I 1 -P 3"), "0: ");
    for (const int result : {1, -1}) {
        expectCall("q5_removeHBADiskMDD",
                   bytesOf(hbaAddress(0), std::uint32_t{0}, DriveSelector{0xFFFFFFFF, 1}), {}, result);
        EXPECT_EQ(outcomeOf(WipePhyDrvMDD, "phydrv -a wipe -p 0 -i 65536"),
                  "8: Failed to wipe the reserved sector of disk with ID -1 in controller #65536!\n");
    }
    expectCall("q5_removeHBADiskMDD", bytesOf(hbaAddress(2), std::uint32_t{0}, DriveSelector{0, 1}));
    EXPECT_EQ(outcomeOf(WipePhyDrvMDD, "phydrv -a wipe -i 1 -i 2"), "0: ");
    expectCall("q5_removeHBADiskMDD", bytesOf(hbaAddress(0), std::uint32_t{0}, DriveSelector{3, 1}));
    EXPECT_EQ(outcomeOf(WipePhyDrvMDD, "phydrv -a wipe -p 3 -p 4"), "0: ");
}

TEST_F(PhyDrvAction, RejectsInvalidWipe) {
    const std::string count = "2: Invalid number of parameters for \"phydrv -a wipe\" defined\n";
    EXPECT_EQ(outcomeOf(WipePhyDrvMDD, "phydrv -a wipe -p 3"), count);
    EXPECT_EQ(outcomeOf(WipePhyDrvMDD, "phydrv -a wipe -p 3 -i 1 -p"), count);
    EXPECT_EQ(outcomeOf(WipePhyDrvMDD, "phydrv -a wipe -p x -i y"), "6: Invalid disk ID 'x' specified\n");
    EXPECT_EQ(outcomeOf(WipePhyDrvMDD, "phydrv -a wipe -i y -p x"),
              "6: Invalid controller ID 'y' specified\n");
    EXPECT_EQ(outcomeOf(WipePhyDrvMDD, "phydrv -a wipe -d 3 -i y"),
              "1: Invalid subcommand for \"phydrv -a wipe\" defined\n");
}
