// The 3 Gb/s option of phydrv. Its IDs are single bytes, read as atoi does.
#include <algorithm>

#include "adapter/phydrv.h"
#include "commands/phydrv.h"
#include "tests/mock_adapter.h"

using PhyDrvSpeed = MockAdapterTest;

static const std::uint32_t kZero = 0;
static const std::uint32_t kSettingSize = 4;

static Bytes text(const std::string& characters) {
    Bytes bytes(characters.begin(), characters.end());
    bytes.push_back(0);
    return bytes;
}

// Expects the lookup of a drive. The reply has another ID, and a pattern around the texts.
static void expectLookup(std::uint32_t controller, std::uint32_t drive, const std::string& model = "ST-1",
                         const std::string& firmware = "3.A") {
    PhyDrvInfo entry;
    std::memset(&entry, 0xA5, sizeof entry);
    std::memcpy(entry.model, model.c_str(), std::min(sizeof entry.model, model.size() + 1));
    std::memcpy(entry.firmware, firmware.c_str(), std::min(sizeof entry.firmware, firmware.size() + 1));
    expectCall("q5_getPhyDrvInfo", queryFor(controller, PhyDrvQuery{drive, 1, 255, {}}, 728),
               listReply<PhyDrvInfo>({entry}), -1);
}

static void expectNoDrive(std::uint32_t controller, std::uint32_t drive) {
    expectCall("q5_getPhyDrvInfo", queryFor(controller, PhyDrvQuery{drive, 1, 255, {}}, 728));
}

static Bytes setArguments(int setting) {
    return concat({bytesOf(hbaAddress(1), kZero), text("ST-1"), text("3.A"),
                   bytesOf(std::int32_t{setting}, kSettingSize)});
}

static Bytes speedQuery(const std::string& model, const std::string& firmware) {
    return concat({bytesOf(hbaAddress(1), kZero), text(model), text(firmware), bytesOf(kSettingSize)});
}

TEST_F(PhyDrvSpeed, SetsTheOptionForTheDrivesModelAndFirmware) {
    const std::pair<const char*, int> settings[] = {
        {"1", 1},    {"0", 0},  {"-5", -5}, {"4x", 4},
        {"+007", 7}, {"on", 0}, {"", 0},    {"2147483647", 2147483647},
        {"0x10", 0}};
    for (const auto& [input, setting] : settings) {
        expectLookup(1, 2);
        expectCall("q5_setDataTransferSpeed", setArguments(setting));
        const CommandOutcome outcome =
            run(Set3GSpeed, {"phydrv", "-a", "set3G", "-p", "3", "-i", "1", "-e", input});
        EXPECT_EQ(outcome.result, 0) << input;
        EXPECT_EQ(outcome.output, "") << input;
    }
}

TEST_F(PhyDrvSpeed, AcceptsOptionsInAnyOrderAndDefaultsToZero) {
    expectLookup(1, 2);
    expectCall("q5_setDataTransferSpeed", setArguments(1));
    EXPECT_EQ(outcomeOf(Set3GSpeed, "phydrv -a set3G -E 1 -I 1 -P 3"), "0: ");
    expectLookup(1, 0);
    expectCall("q5_setDataTransferSpeed", setArguments(0));
    EXPECT_EQ(outcomeOf(Set3GSpeed, "phydrv -a set3G -i 9 -i 1"), "0: ");
}

TEST_F(PhyDrvSpeed, ReportsDriveThatCouldNotBeSet) {
    for (const int result : {1, -1}) {
        expectLookup(1, 2);
        expectCall("q5_setDataTransferSpeed", setArguments(1), {}, result);
        EXPECT_EQ(outcomeOf(Set3GSpeed, "phydrv -a set3G -p 3 -i 1 -e 1"),
                  "8: Failed to set the 3G setting for control 1 disk 2\n");
    }
}

TEST_F(PhyDrvSpeed, ShowsWhetherTheOptionIsOn) {
    for (const int setting : {1, -1, 256}) {
        expectLookup(1, 2);
        expectCall("q5_getDataTransferSpeed", speedQuery("ST-1", "3.A"), bytesOf(setting));
        EXPECT_EQ(outcomeOf(List3GSpeed, "phydrv -a list3G -p 3 -i 1"),
                  "0: 3G option in control 1 disk 2 ST-1 is on.\n");
    }
    expectLookup(1, 2);
    expectCall("q5_getDataTransferSpeed", speedQuery("ST-1", "3.A"));
    EXPECT_EQ(outcomeOf(List3GSpeed, "phydrv -a list3G -I 1 -P 3"),
              "0: 3G option in control 1 disk 2 ST-1 is off.\n");
}

TEST_F(PhyDrvSpeed, ReportsDriveThatCouldNotBeRead) {
    for (const int result : {1, -1}) {
        expectLookup(1, 2);
        expectCall("q5_getDataTransferSpeed", speedQuery("ST-1", "3.A"), bytesOf(1), result);
        EXPECT_EQ(outcomeOf(List3GSpeed, "phydrv -a list3G -p 3 -i 1"),
                  "8: Failed to get the 3G setting for control 1 disk 2\n");
    }
}

namespace {
// A drive ID and a controller ID as words and as the bytes they are truncated to.
struct IdCase {
    const char* drive;
    std::uint32_t driveId;
    const char* controller;
    std::uint32_t controllerId;
};
} // namespace

static const IdCase kIdCases[] = {
    {"1", 0, "0", 0},       {"256", 255, "255", 255}, {"257", 0, "256", 0}, {"0", 255, "257", 1},
    {"-1", 254, "-1", 255}, {"x", 255, "y", 0},       {"3x", 2, "1.9", 1},  {"514", 1, "65537", 1},
};

TEST_F(PhyDrvSpeed, TruncatesIdsToOneByte) {
    for (const IdCase& row : kIdCases) {
        const std::string options = std::string(" -p ") + row.drive + " -i " + row.controller;
        const std::string missing = "8: Disk " + std::to_string(row.driveId) + " is not existed!\n";
        expectNoDrive(row.controllerId, row.driveId);
        EXPECT_EQ(outcomeOf(Set3GSpeed, "phydrv -a set3G" + options), missing) << options;
        expectNoDrive(row.controllerId, row.driveId);
        EXPECT_EQ(outcomeOf(List3GSpeed, "phydrv -a list3G" + options), missing) << options;
    }
}

TEST_F(PhyDrvSpeed, PrintsTheTruncatedIds) {
    expectLookup(255, 255);
    expectCall("q5_getDataTransferSpeed",
               concat({bytesOf(hbaAddress(255), kZero), text("ST-1"), text("3.A"), bytesOf(kSettingSize)}),
               {}, 1);
    EXPECT_EQ(outcomeOf(List3GSpeed, "phydrv -a list3G -p 0 -i -1"),
              "8: Failed to get the 3G setting for control 255 disk 255\n");
    expectLookup(1, 255);
    expectCall("q5_setDataTransferSpeed", setArguments(0), {}, 1);
    EXPECT_EQ(outcomeOf(Set3GSpeed, "phydrv -a set3G -p 0 -i 257"),
              "8: Failed to set the 3G setting for control 1 disk 255\n");
}

TEST_F(PhyDrvSpeed, PassesUnterminatedTextsUpToTheEndOfTheirFields) {
    const std::string model(22, 'M'), firmware(38, 'F');
    expectLookup(1, 0, model, firmware);
    expectCall("q5_getDataTransferSpeed", speedQuery(model, firmware));
    EXPECT_EQ(outcomeOf(List3GSpeed, "phydrv -a list3G -i 1"),
              "0: 3G option in control 1 disk 0 " + model + " is off.\n");
    expectLookup(1, 0, model, firmware);
    expectCall("q5_setDataTransferSpeed", concat({bytesOf(hbaAddress(1), kZero), text(model), text(firmware),
                                                  bytesOf(std::int32_t{2}, kSettingSize)}));
    EXPECT_EQ(outcomeOf(Set3GSpeed, "phydrv -a set3G -i 1 -e 2"), "0: ");
}

TEST_F(PhyDrvSpeed, ReportsMissingDriveForIncompleteReply) {
    for (const std::size_t used : {0u, 63u, 64u, 727u}) {
        expectCall("q5_getPhyDrvInfo", queryFor(0, PhyDrvQuery{0, 1, 255, {}}, 728),
                   bytesOf(replyHeader(used), PhyDrvInfo{}));
        EXPECT_EQ(outcomeOf(List3GSpeed, "phydrv -a list3G -i 0"), "8: Disk 0 is not existed!\n");
    }
}

TEST_F(PhyDrvSpeed, ChecksTheWordCount) {
    const std::string set = "2: Invalid number of parameters for \"phydrv -a set3G\" defined\n";
    EXPECT_EQ(outcomeOf(Set3GSpeed, "phydrv -a set3G -p 3 -z"), set);
    EXPECT_EQ(outcomeOf(Set3GSpeed, "phydrv -a set3G"), set);
    EXPECT_EQ(outcomeOf(Set3GSpeed, "phydrv"), set);
    const std::string list = "2: Invalid number of parameters for \"phydrv -a list3G\" defined\n";
    EXPECT_EQ(outcomeOf(List3GSpeed, "phydrv -a list3G -z"), list);
    EXPECT_EQ(outcomeOf(List3GSpeed, "phydrv -a list3G"), list);
    EXPECT_EQ(outcomeOf(List3GSpeed, "phydrv"), list);
    expectNoDrive(0, 2);
    EXPECT_EQ(outcomeOf(List3GSpeed, "phydrv -a list3G -p 3"), "8: Disk 2 is not existed!\n");
}

TEST_F(PhyDrvSpeed, RejectsUnknownOptionsBeforeAnyCall) {
    const std::string set = "1: Invalid subcommand for \"phydrv -a set3G\" defined\n";
    EXPECT_EQ(outcomeOf(Set3GSpeed, "phydrv -a set3G -p 3 -m 1"), set);
    EXPECT_EQ(outcomeOf(Set3GSpeed, "phydrv -a set3G -p 3 -i 1 -f"), set);
    const std::string list = "1: Invalid subcommand for \"phydrv -a list3G\" defined\n";
    EXPECT_EQ(outcomeOf(List3GSpeed, "phydrv -a list3G -p 3 -e 1"), list);
    EXPECT_EQ(outcomeOf(List3GSpeed, "phydrv -a list3G p 3"), list);
}

TEST_F(PhyDrvSpeed, ReadsMissingValueFromAStaleSlotButNotPastTheTable) {
    expectNoDrive(7, 2);
    EXPECT_EQ(run(Set3GSpeed, splitWords("phydrv -a set3G -p 3 -e 1 -i"), {"7"}).result, 8);
    expectNoDrive(0, 8);
    EXPECT_EQ(run(List3GSpeed, splitWords("phydrv -a list3G -i 0 -p"), {"9"}).output,
              "Disk 8 is not existed!\n");
    std::vector<std::string> words = splitWords("phydrv -a list3G");
    words.resize(16, "-p");
    expectNoDrive(0, 255);
    EXPECT_EQ(run(List3GSpeed, words).output, "Disk 255 is not existed!\n");
}
