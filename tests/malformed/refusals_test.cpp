// An adapter whose every operation fails, with result codes of either sign: the output and result code of
// commands that find nothing, or find a drive that they must not change.
#include <fstream>
#include <iterator>

#include "tests/malformed/malformed_test.h"

namespace {
struct Refusal {
    std::string line;
    int result;
    std::string output;
};
} // namespace

static void expectRefusals(const std::vector<Refusal>& rows) {
    for (const Refusal& row : rows)
        for (const int result : kFailures) {
            SCOPED_TRACE(row.line + ", result " + std::to_string(result));
            malformedReply.result = result;
            expectOutcome(command(row.line), row.result, row.output);
        }
}

// Without replies nothing exists.
TEST_F(Malformed, ListingsOfFailingAdapterFindNothing) {
    expectRefusals({
        {"ctrl", 0,
         "ID      MemType  MemSize Disks Arrays Enclosures     BIOS Ver   Driver Ver\n"
         " 0      Non-ECC     0 MB    0      0          0      0.0.0.0      0.0.0.0\n"},
        {"ctrl -v", 0,
         "******************************\nController ID : 0\nBIOs Version : 0.0.0.0\n"
         "Driver Version : 0.0.0.0\nIRQ : 0\nLogical slot number : 0\nBus master base : 0\n"
         "BIOs memory start : 0\nBIOs memory range : 0\nBase address ATA : 0x0\nBase address XOR : 0x0\n"
         "Base address SEQ : 0x0\nBase address MMIO : 0x0\nBase address SDRAM : 0x0\n"
         "Memory type : Non-ECC\nMemory size : 0 MB\nMaximum extents supported in each disk : 0\n"
         "Number of disks : 0\nNumber of arrays : 0\nNumber of enclosure : 0\nBattery installed : No\n"
         "Rebuild rate : 0\nSynchronization rate : 0\nMigration rate : 0\nInitialization rate : 0\n"
         "Media patrol rate : 0\nSmart check polling interval : 0\nEnclosure polling interval : 0\n"
         "Smart check : Disable\nAuto rebuild : Disable\nRebuild policy : Disable\n"
         "Max port supported in each controller : 0\nFirmware version : 0.0.0.0\n"},
        {"phydrv", 5, "Disk with ID 0 in controller #0 is not existed\n"},
        {"phydrv -v", 5, "Disk with ID 0 in controller #0 is not existed\n"},
        {"extent", 5, "Disk with ID 0 is not existed!\n"},
        {"extent -v", 5, "Disk with ID 0 is not existed!\n"},
        {"logdrv", 0, "No array with ID 0 in controller #0 is existed\n"},
        {"logdrv -v", 0, "No array with ID 0 in controller #0 is existed\n"},
        {"enclosure", 0, "no enclosure with ID 0 in controller #0 is present!\n"},
        {"battery", 5, "No battery exists in controller with ID 0!\n"},
        {"buzz", 0,
         "CtrlId    Status\n     0   Unknown\n     1   Unknown\n     2   Unknown\n     3   Unknown\n"},
        {"event", 0, "No event!\n"},
        {"event -v", 0, "No event!\n"},
        {"bga", 5, "No array with ID 0 in controller #0 is existed\n"},
        {"init", 5, "No logical drive with ID 0 is existed!\n"},
        {"sync -a list", 5, "No logical drive with ID 0 is existed!\n"},
        {"rc", 5, "No logical drive with ID 0 is existed!\n"},
        {"rb", 5, "No logical drive with ID 0 is existed!\n"},
        {"migrate", 5, "No logical drive with ID 0 in controller #0 is existed!\n"},
        {"mp -a list -p 1 -i 0", 5, "Disk with ID 0 in controller #0 is not existed\n"},
        {"phydrv -a list3G -p 1", 8, "Disk 0 is not existed!\n"},
    });
}

TEST_F(Malformed, ChangesOnFailingAdapterAreRefused) {
    const std::string disk = " disk with ID 0 on controller #0!\n";
    const std::string drive = " physical drive with ID 0 on controller #0!\n";
    expectRefusals({
        {"extent -a spare -p 1 -i 0 -e 2", 0, "Failed to spare an extent #2 in" + disk},
        {"extent -a free -p 1 -i 0 -e 2", 0, "Failed to free an extent #2 in" + disk},
        {"extent -a add -p 1 -i 0 -e 2 -l 0", 0, "Failed to add extent #2 in" + drive},
        {"extent -a split -p 1 -i 0 -e 2 -o 9", 0, "Failed to split extent #2 in" + drive},
        {"extent -a delete -p 1 -i 0 -e 2", 0, "Failed to delete an extent #2 in" + disk},
        {"phydrv -a wipe -p 1 -i 0", 8,
         "Failed to wipe the reserved sector of disk with ID 0 in controller #0!\n"},
        {"phydrv -a locate -p 1 -i 0 -d 9", 0, ""},
        {"phydrv -a mod -p 1 -i 0 -s ncq=enable", 0, ""},
        {"phydrv -a set3G -p 1 -e 1", 8, "Disk 0 is not existed!\n"},
        {"ctrl -a mod -s syncrate=5", 0, ""},
        {"buzz enable", 2, "Invalid numbers of parameter for command \"buzz\"\n"},
        {"buzz -a enable", 0, ""},
        {"buzz -a disable", 0, ""},
        {"enclosure -a locate -e 0", 5, "no enclosure with ID 0 in controller #0 is exist!\n"},
        {"logdrv -a mod -l 0 -s name=x", 5, "The logical drive with ID 0 in controller #0 is not existed!\n"},
        {"logdrv -a locate -l 0 -d 9", 5, "No array with ID 0 in controller #0 is existed\n"},
        {"logdrv -a del -l 0", 8, "Failed to delete an array with ID 0 specified\n"},
        {"logdrv -a add -p 1,2 -z name=x,raid=raid1,capacity=9", 8, "Failed to create an array specified\n"},
        {"mp -a start -p 1 -i 0", 5, "Disk with ID 0 in controller #0 is not existed\n"},
        {"init -a start -l 0 -i 0", 5, "No logical drive with ID 0 is existed!\n"},
        {"sync -l 0 -i 0", 5, "No logical drive with ID 0 on controller #0 is existed!\n"},
        {"rc -a start -l 0 -i 0", 5, "No logical drive with ID 0 on controller #0 is existed!\n"},
        {"rb -a start -l 0 -i 0 -p 1 -e 0", 5, "No logical drive with ID 0 in controller #0 is existed!\n"},
        {"rb -a restart -l 0 -i 0", 5, "No logical drive with ID 0 on controller #0 is existed!\n"},
        {"migrate -a start -l 0 -i 0 -s raid=raid5", 5,
         "No logical drive with ID 0 in controller #0 is existed!\n"},
    });
}

namespace {
// The output of an operation on an existing drive when it fails, and when it succeeds.
struct Control {
    std::string line, failed, done;
};
} // namespace

static void expectControls(std::uint8_t fill, const std::vector<Control>& rows) {
    malformedReply.fill = fill;
    for (const Control& row : rows)
        for (const int result : kResults) {
            SCOPED_TRACE(row.line + ", result " + std::to_string(result));
            malformedReply.result = result;
            expectOutcome(command(row.line), result == 0 ? 0 : 8, result == 0 ? row.done : row.failed);
        }
}

// Filled with 0x80 a logical drive exists, is idle, and its level may be migrated to any other.
TEST_F(Malformed, StartsReturnResultOfOperation) {
    expectControls(0x80,
                   {
                       {"init -a start -l 0 -i 0", "Initialization is failed to start on Array 0 Type 4\n",
                        "Initialization started on Array 0 Type 4\n"},
                       {"sync -l 0 -i 0", "Synchronization failed to start on Array 0!\n",
                        "Synchronization started on Array 0!\n"},
                       {"rc -a start -l 0 -i 0", "Redundancy check failed to start on Array 0!\n",
                        "Redundancy check started on Array 0!\n"},
                       {"rb -a start -l 0 -i 0 -p 1 -e 0", "Rebuild is failed to start on Array 0.\n",
                        "Rebuild is started on Array 0.\n"},
                       {"migrate -a start -l 0 -i 0 -s raid=raid5",
                        "Migration is failed to start on Array 0.\n", "Migration is started on Array 0.\n"},
                       {"logdrv -a locate -l 0 -d 9",
                        "Failed to locate the logical drive with ID 0 in controller #0!\n", ""},
                   });
}

// Filled with 0xFF all activities run, and none of them is paused.
TEST_F(Malformed, ControlsOfRunningActivitiesReturnResultOfOperation) {
    const std::string stop = " is failed to stop on Array 0.\n";
    expectControls(
        0xFF,
        {
            {"init -a pause -l 0 -i 0", "Initialization is failed to pause on Array 0.\n",
             "Initialization paused on Array 0.\n"},
            {"init -a stop -l 0 -i 0", "Initialization" + stop, "Initialization stopped on Array 0.\n"},
            {"rc -a pause -l 0 -i 0", "Redundancy check is failed to pause on Array 0.\n",
             "Redundancy check paused on Array 0.\n"},
            {"rc -a stop -l 0 -i 0", "Redundancy check" + stop, "Redundancy check stopped on Array 0.\n"},
            {"migrate -a pause -l 0 -i 0", "Migration is failed to pause on Array 0.\n",
             "Migration paused on Array 0.\n"},
            {"rb -a pause -l 0 -i 0", "Rebuild is failed to pause on Array 0.\n",
             "Rebuild paused on Array 0.\n"},
            {"rb -a abort -l 0 -i 0", "Rebuild is failed to abort on Array 0.\n",
             "Rebuild aborted on Array 0.\n"},
            {"rb -a restart -l 0 -i 0", "Rebuild is failed to restart on Array 0.\n",
             "Rebuild is restarted on Array 0.\n"},
            {"mp -a pause -i 0 -p 65536", "Failed to pause media patrol operation on disk with ID 65535!\n",
             ""},
        });
}

// Starting an activity on a busy drive and resuming one that is not paused: done, without output.
TEST_F(Malformed, BusyDrivesAreNotChanged) {
    malformedReply.fill = 0xFF;
    for (const int result : kResults)
        for (const char* line :
             {"init -a start -l 0 -i 0", "init -a resume -l 0 -i 0", "sync -l 0 -i 0",
              "rc -a start -l 0 -i 0", "rc -a resume -l 0 -i 0", "rb -a start -l 0 -i 0 -p 1 -e 0",
              "rb -a resume -l 0 -i 0", "migrate -a start -l 0 -i 0 -s raid=raidmf,count=2",
              "migrate -a resume -l 0 -i 0"}) {
            malformedReply.result = result;
            SCOPED_TRACE(line);
            expectOutcome(command(line), 0, "");
        }
    for (const char* operation : {"q5_startLogDrvInit", "q5_startRedundancyCheck", "q5_migrateHBAArray",
                                  "q5_startHBARebuildExtent", "q5_resumeRebuild", "q5_ResumeMigration"})
        EXPECT_EQ(malformedReply.calls[operation], 0) << operation;
}

// Filled with 3 two activities run and are paused: rebuild and initialization.
TEST_F(Malformed, ResumesReturnResultOfOperation) {
    expectControls(3, {
                          {"init -a resume -l 0 -i 0", "Initialization is failed to resume on Array 0.\n",
                           "Initialization resumed on Array 0.\n"},
                          {"rb -a resume -l 0 -i 0", "Rebuild is failed to resume on Array 0.\n",
                           "Rebuild resumed on Array 0.\n"},
                      });
    for (const char* line : {"init -a pause -l 0 -i 0", "rb -a pause -l 0 -i 0", "rc -a resume -l 0 -i 0"})
        expectOutcome(command(line), 0, "");
    expectOutcome(command("bga"), 0,
                  "Array activity status : Rebuild Paused\nArray initialization progress : 3 %\n");
    expectOutcome(command("init"), 0, "Initialization is paused!\n");
}

static std::string contents(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// Values without a reply are written as zeroes; drives that were not found are not written.
TEST_F(Malformed, ExportsOfFailingAdapterContainZeroes) {
    for (const int result : kFailures) {
        malformedReply.result = result;
        expectOutcome(command("export -t 0 -f " + file()), 0, "");
        EXPECT_EQ(contents(file()),
                  "[CrtlSetIndex] 0\n<AutoRebuild> Disable\n<SyncRate> 0\n<InitRate> 0\n<MPRate> 0\n"
                  "<MigrateRate> 0\n<RebuildRate> 0\n<SmartCEnable> Disable\n<SmartPollInt> 0\n"
                  "<EncPollInt> 0\n<RebuildPolicy> 0\n<BuzzerEnable> Off\n<GlobalSpare> 0\n[End] \n");
    }
}

// Without a reply a controller has no drives, so that any drive of the file is one too many.
TEST_F(Malformed, ImportsIntoFailingAdapterFindNoDrives) {
    std::ofstream(file()) << "[PhyDrvSetIndex] 0\n<PhyDrvCtrlID> 0\n<PhyDrvID> 1\n[End]\n";
    for (const int result : kFailures) {
        malformedReply.result = result;
        expectOutcome(command("import -a -f " + file()), 16,
                      "The physical drive number specified is greater than the one in the controller\n");
        EXPECT_EQ(malformedReply.calls["q5_setPhyDrvSettings"], 0);
    }
}

TEST_F(Malformed, ImportsWithoutControllerAreRefused) {
    std::ofstream(file()) << "[CrtlSetIndex] 0\n[End]\n";
    malformedReply.controllers = 0;
    expectOutcome(command("import -a -f " + file()), 5,
                  "The number of controller in the system is less than the number of controller "
                  "specified!\n");
}
