// Prints the blocks that an export writes.
#include <cstdio>

#include "adapter/reply.h"
#include "tests/bench/printf_baseline.h"
#include "tests/bench/samples.h"

static void printNumber(const char* key, int value) {
    std::printf("%s ", key);
    std::printf("%d", value);
    std::printf("\n");
}

static void printWord(const char* key, const char* value) {
    std::printf("%s ", key);
    std::printf("%s", value);
    std::printf("\n");
}

static void printExportedDrive(int index, int controller, const PhyDrvSettings& settings) {
    std::printf("%s %d\n", "[PhyDrvSetIndex]", index);
    printNumber("<PhyDrvCtrlID>", controller);
    printNumber("<PhyDrvID>", settings.pdId + 1);
    printWord("<WriteCache>", "Enable");
    printWord("<TCQEnable>", "not supported");
    printWord("<NCQEnable>", "Enable");
    std::printf("%s \n", "[End]");
}

static void printSizes(const LogDrvInfo& drive) {
    std::printf("%s ", "<LogDrvName>");
    std::printf("%.*s", FIELD_PRINTF_ARGS(drive.name));
    std::printf("\n");
    std::printf("%s ", "<LogDrvSize>");
    std::printf("%.4f", static_cast<double>(drive.sectorCount * 512) / 1000000);
    std::printf("\n");
    std::printf("%s ", "<LogDrvSectorCount>");
    std::printf("%llu", static_cast<unsigned long long>(drive.sectorCount));
    std::printf("\n");
}

static void printExportedLogDrv(int index, int controller, const LogDrvInfo& drive) {
    std::printf("%s %d\n", "[LogDrvSetIndex]", index);
    printNumber("<LogDrvID>", drive.logDrvId);
    printNumber("<LogyDrvCtrlID>", controller);
    printSizes(drive);
    printNumber("<LogDrvSectorSize>", static_cast<int>(drive.sectorSize));
    printNumber("<LogDrvStripeSize>", static_cast<int>(drive.stripeBlocks));
    printWord("<LogDrvRaidMode>", "RAID1");
    printWord("<LogDrvCacheMode>", "Write Back");
    printNumber("<LogDrvDiskNum>", drive.diskCount);
    printWord("<LogDrvDiskMember>", sampleMembers(drive.logDrvId));
    printWord("<LogDrvDiskExtentIndex>", sampleExtents(drive.logDrvId));
    printWord("<LogDrvInitMode>", "NONE");
    printNumber("<LogDrvLookAheadValue>", 4);
    printWord("<LogDrvConsolidation>", "Enable");
    std::printf("%s \n", "[End]");
}

void printExportedDrives(int count) {
    static PhyDrvSettings settings[kMaxDrives];
    for (int i = 0; i < static_cast<int>(kMaxDrives); ++i)
        settings[i] = sampleDriveSettings(i);
    for (int i = 0; i < 2 * count; ++i)
        printExportedDrive(i, i / count, settings[i % count]);
}

void printExportedLogDrvs(int count) {
    static LogDrvInfo drives[kMaxLogDrvs];
    for (int i = 0; i < static_cast<int>(kMaxLogDrvs); ++i)
        drives[i] = sampleLogDrv(i);
    for (int i = 0; i < 2 * count; ++i)
        printExportedLogDrv(i, i / count, drives[i % count]);
}
