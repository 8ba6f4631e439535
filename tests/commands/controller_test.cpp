// The ctrl command's listing: the calls it makes, the row and the block of a controller, and its
// options. Changing settings is in controller_settings_test.cpp.
#include "commands/controller.h"

#include <string>

#include "tests/commands/controller_fixture.h"

using ControllerListing = MockAdapterTest;

static const VersionNumber driver2_0_0_15 = {2, 0, 0, 15};

static const char header[] = "ID      MemType  MemSize Disks Arrays Enclosures     BIOS Ver   Driver Ver\n";
static const char zeroRow1[] = " 1      Non-ECC     0 MB    0      0          0      0.0.0.0     2.0.0.15\n";

static ControllerReplies busyController() {
    ControllerReplies replies = {};
    replies.info.biosVersion = {1, 2, 3, 4};
    replies.info.memoryType = 1;
    replies.info.memorySize = 256;
    replies.info.diskCount = 8;
    replies.info.arrayCount = 2;
    replies.enclosureType[0] = 1;
    replies.enclosureType[15] = 200; // unknown type, but present
    return replies;
}
static const char busyRow[] = "          ECC   256 MB    8      2          2      1.2.3.4     2.0.0.15\n";

static std::string rowOf(const char* id, const char* rest) {
    return std::string(id) + rest;
}

// Two controllers: one with values in all fields, one that replies with zeros.
static void expectBothListed(const std::string& line) {
    expectControllerCount(2);
    expectDriverInfo(0, driver2_0_0_15);
    expectController(0, busyController());
    expectController(1, {});
    expectOutcome(run(ListControllerInfo, splitWords(line)), 0,
                  std::string(header) + rowOf(" 0", busyRow) + zeroRow1);
}

static void expectOneListed(const std::string& line) {
    expectControllerCount(2);
    expectDriverInfo(0, driver2_0_0_15);
    expectController(0, busyController());
    expectOutcome(run(ListControllerInfo, splitWords(line)), 0, std::string(header) + rowOf(" 0", busyRow));
}

static void expectRefused(const std::string& line, int result, const std::string& output) {
    expectControllerCount(2);
    expectOutcome(run(ListControllerInfo, splitWords(line)), result, output);
}

TEST_F(ControllerListing, ListsAllControllersByDefault) {
    expectBothListed("ctrl");
}

TEST_F(ControllerListing, ReadsNoOptionsFromTheAction) {
    expectBothListed("ctrl -a list");
    expectBothListed("ctrl -A -v");
}

TEST_F(ControllerListing, ListsAllForACountThatIsNotBelowTheirNumber) {
    for (const char* line :
         {"ctrl -c 0", "ctrl -c 2", "ctrl -c 99", "ctrl -c 4294967295", "ctrl -a list -c 0"})
        expectBothListed(line);
}

TEST_F(ControllerListing, ListsTheRequestedNumber) {
    for (const char* line : {"ctrl -c 1", "ctrl -a list -c 1", "ctrl -C 1 -I 0", "ctrl -c 1 -c 2"})
        expectOneListed(line);
}

TEST_F(ControllerListing, ContinuesPastTheLastController) {
    expectControllerCount(2);
    expectDriverInfo(1, driver2_0_0_15);
    expectController(1, busyController());
    expectController(2, {});
    expectOutcome(run(ListControllerInfo, splitWords("ctrl -i 1")), 0,
                  std::string(header) + rowOf(" 1", busyRow) +
                      " 2      Non-ECC     0 MB    0      0          0      0.0.0.0     2.0.0.15\n");
}

TEST_F(ControllerListing, ShowsWideAndNegativeNumbersInFull) {
    ControllerReplies replies = {};
    replies.info.biosVersion = {-2147483648, 2147483647, -1, 0};
    replies.info.memoryType = 2;
    replies.info.memorySize = 1048576;
    replies.info.diskCount = 65535;
    replies.info.arrayCount = 65535;
    expectControllerCount(1);
    expectDriverInfo(0, {10, 20, 30, -40});
    expectController(0, replies);
    expectOutcome(run(ListControllerInfo, {"ctrl"}), 0,
                  std::string(header) + " 0      Non-ECC 1048576 MB 65535  65535          0 "
                                        "-2147483648.2147483647.-1.0 10.20.30.-40\n");
}

TEST_F(ControllerListing, UsesRepliesAndNotResults) {
    expectCall("q5_getNumberOfHBA", {}, bytesOf(std::uint32_t{1}), 1);
    expectCall("q5_getDriverInfo", bytesOf(hbaAddress(0), std::uint32_t{0}), bytesOf(driver2_0_0_15), 1);
    expectController(0, busyController(), 1);
    expectOutcome(run(ListControllerInfo, {"ctrl"}), 0, std::string(header) + rowOf(" 0", busyRow));
}

TEST_F(ControllerListing, ReportsNoControllerBeforeParsingOptions) {
    for (const char* line : {"ctrl", "ctrl -x", "ctrl -i x"}) {
        expectControllerCount(0);
        expectOutcome(run(ListControllerInfo, splitWords(line)), 5, "No controller is existed\n");
    }
}

TEST_F(ControllerListing, TreatsMissingControllerCountAsZero) {
    expectCall("q5_getNumberOfHBA", {}, {}, 1);
    expectOutcome(run(ListControllerInfo, splitWords("ctrl")), 5, "No controller is existed\n");
}

TEST_F(ControllerListing, ComparesTheCountWithTheId) {
    expectRefused("ctrl -i 2", 5, "No controller with ID #2 is existed!\n");
    expectRefused("ctrl -i 1 -c 1", 5, "No controller with ID #1 is existed!\n");
    expectRefused("ctrl -v -i 65536", 5, "No controller with ID #65536 is existed!\n");
    expectRefused("ctrl -i 4294967295", 5, "No controller with ID #-1 is existed!\n");
}

TEST_F(ControllerListing, RejectsUnknownOption) {
    for (const char* line : {"ctrl -x", "ctrl list", "ctrl -v 1", "ctrl -i 0 x", "ctrl -a list x"})
        expectRefused(line, 1, "Invalid parameters defined\n");
}

TEST_F(ControllerListing, RejectsInvalidNumbers) {
    expectRefused("ctrl -i x", 6, "Invalid controller ID 'x' specified\n");
    expectRefused("ctrl -c 1x", 1, "Invalid controller count '1x' specified\n");
    expectRefused("ctrl -c -1", 1, "Invalid controller count '-1' specified\n");
    expectRefused("ctrl -a list -v -i -c", 6, "Invalid controller ID '-c' specified\n");
}

TEST_F(ControllerListing, ReadsMissingValueFromTheNextSlot) {
    expectRefused("ctrl -i", 6, "Invalid controller ID '' specified\n");
    expectControllerCount(2);
    expectOutcome(run(ListControllerInfo, splitWords("ctrl -i"), {"7"}), 5,
                  "No controller with ID #7 is existed!\n");
    expectRefused("ctrl -v -v -v -v -v -v -v -v -v -v -v -v -v -v -c", 1,
                  "Invalid controller count '' specified\n");
}

// Every number is unique, so that no field can be mistaken for another.
static ControllerReplies describedController() {
    ControllerReplies replies = {};
    replies.path.irq = 11;
    replies.path.logicalSlot = 5;
    replies.path.biosMemoryStart = 0xFFFFFF00;
    replies.path.biosMemoryRange = 32768;
    replies.path.busMasterBase = 200;
    replies.path.baseAddressAta = 0xfebc0000;
    replies.path.baseAddressXor = 0x1f0;
    replies.path.baseAddressSeq = 0xabcdef;
    replies.path.baseAddressMmio = 0xffffffff;
    replies.path.baseAddressSdram = 0x10;
    replies.info.biosVersion = {1, 0, 22, 3};
    replies.info.memoryType = 1;
    replies.info.memorySize = 512;
    replies.info.maxExtentsPerDisk = 300;
    replies.info.diskCount = 12;
    replies.info.arrayCount = 4;
    replies.info.rebuildRate = 101;
    replies.info.syncRate = 102;
    replies.info.migrateRate = 103;
    replies.info.initRate = 104;
    replies.info.mpRate = 255;
    replies.info.smartPollInterval = 15;
    replies.info.encPollInterval = 25;
    replies.info.smartCheck = 1;
    replies.info.maxPorts = 16;
    replies.version.firmwareVersion = {7, 8, 9, 10};
    replies.settings.rebuildPolicy = 1;
    replies.settings.rebuildRate = replies.settings.syncRate = replies.settings.mpRate = 77; // not shown
    replies.settings.autoRebuild = 1;                                                        // nor this
    replies.battery.status = 0x80;
    replies.enclosureType[3] = 6;
    return replies;
}

static const char describedBlock[] = "******************************\n"
                                     "Controller ID : 0\n"
                                     "BIOs Version : 1.0.22.3\n"
                                     "Driver Version : 2.0.0.15\n"
                                     "IRQ : 11\n"
                                     "Logical slot number : 5\n"
                                     "Bus master base : 200\n"
                                     "BIOs memory start : -256\n"
                                     "BIOs memory range : 32768\n"
                                     "Base address ATA : 0xfebc0000\n"
                                     "Base address XOR : 0x1f0\n"
                                     "Base address SEQ : 0xabcdef\n"
                                     "Base address MMIO : 0xffffffff\n"
                                     "Base address SDRAM : 0x10\n"
                                     "Memory type : ECC\n"
                                     "Memory size : 512 MB\n"
                                     "Maximum extents supported in each disk : 300\n"
                                     "Number of disks : 12\n"
                                     "Number of arrays : 4\n"
                                     "Number of enclosure : 1\n"
                                     "Battery installed : Yes\n"
                                     "Rebuild rate : 101\n"
                                     "Synchronization rate : 102\n"
                                     "Migration rate : 103\n"
                                     "Initialization rate : 104\n"
                                     "Media patrol rate : 255\n"
                                     "Smart check polling interval : 15\n"
                                     "Enclosure polling interval : 25\n"
                                     "Smart check : Enable\n"
                                     "Auto rebuild : Disable\n"
                                     "Rebuild policy : Enable\n"
                                     "Max port supported in each controller : 16\n"
                                     "Firmware version : 7.8.9.10\n";

static const char zeroBlock[] = "******************************\n"
                                "Controller ID : 1\n"
                                "BIOs Version : 0.0.0.0\n"
                                "Driver Version : 2.0.0.15\n"
                                "IRQ : 0\n"
                                "Logical slot number : 0\n"
                                "Bus master base : 0\n"
                                "BIOs memory start : 0\n"
                                "BIOs memory range : 0\n"
                                "Base address ATA : 0x0\n"
                                "Base address XOR : 0x0\n"
                                "Base address SEQ : 0x0\n"
                                "Base address MMIO : 0x0\n"
                                "Base address SDRAM : 0x0\n"
                                "Memory type : Non-ECC\n"
                                "Memory size : 0 MB\n"
                                "Maximum extents supported in each disk : 0\n"
                                "Number of disks : 0\n"
                                "Number of arrays : 0\n"
                                "Number of enclosure : 0\n"
                                "Battery installed : No\n"
                                "Rebuild rate : 0\n"
                                "Synchronization rate : 0\n"
                                "Migration rate : 0\n"
                                "Initialization rate : 0\n"
                                "Media patrol rate : 0\n"
                                "Smart check polling interval : 0\n"
                                "Enclosure polling interval : 0\n"
                                "Smart check : Disable\n"
                                "Auto rebuild : Disable\n"
                                "Rebuild policy : Disable\n"
                                "Max port supported in each controller : 0\n"
                                "Firmware version : 0.0.0.0\n";

TEST_F(ControllerListing, DescribesControllersVerboselyWithoutAHeader) {
    for (const char* line : {"ctrl -v", "ctrl -a list -v", "ctrl -V -c 7"}) {
        expectControllerCount(2);
        expectDriverInfo(0, driver2_0_0_15);
        expectController(0, describedController());
        expectController(1, {});
        expectOutcome(run(ListControllerInfo, splitWords(line)), 0, std::string(describedBlock) + zeroBlock);
    }
}

TEST_F(ControllerListing, ShowsEveryNonZeroFlagAsEnabled) {
    ControllerReplies replies = {};
    replies.info.smartCheck = 2;
    replies.info.autoRebuild = 128;
    replies.settings.rebuildPolicy = 255;
    replies.battery.status = 3;
    expectControllerCount(1);
    expectDriverInfo(0, driver2_0_0_15);
    expectController(0, replies);
    const std::string output = run(ListControllerInfo, splitWords("ctrl -v")).output;
    for (const char* line : {"Smart check : Enable\n", "Auto rebuild : Enable\n", "Rebuild policy : Enable\n",
                             "Battery installed : Yes\n"})
        EXPECT_NE(output.find(line), std::string::npos) << line;
}

TEST_F(ControllerListing, ShowsOnlyMemoryType1AsEcc) {
    for (const auto& [type, text] :
         {std::pair{0, "Non-ECC"}, {1, "    ECC"}, {2, "Non-ECC"}, {255, "Non-ECC"}}) {
        ControllerReplies replies = {};
        replies.info.memoryType = static_cast<std::uint8_t>(type);
        expectControllerCount(1);
        expectDriverInfo(0, driver2_0_0_15);
        expectController(0, replies);
        expectOutcome(run(ListControllerInfo, {"ctrl"}), 0,
                      std::string(header) + " 0      " + text +
                          "     0 MB    0      0          0      0.0.0.0     2.0.0.15\n");
    }
}

TEST_F(ControllerListing, CountsEveryEnclosureWithAType) {
    ControllerReplies replies = {};
    for (std::uint8_t& type : replies.enclosureType)
        type = 1;
    expectControllerCount(1);
    expectDriverInfo(0, driver2_0_0_15);
    expectController(0, replies);
    expectOutcome(run(ListControllerInfo, {"ctrl"}), 0,
                  std::string(header) +
                      " 0      Non-ECC     0 MB    0      0         16      0.0.0.0     2.0.0.15\n");
}
