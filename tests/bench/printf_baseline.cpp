// Prints the output of a listing with the same calls, formats and values, but without parsing, adapter calls
// and decisions, for comparison: printf_baseline LISTING RECORDS
#include "tests/bench/printf_baseline.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "adapter/reply.h"
#include "tests/bench/samples.h"

static double megabytes(std::uint64_t sectors) {
    return static_cast<double>(sectors) * 512 / 1048576;
}

static void printExtent(const ExtentEntry& extent) {
    std::printf("Extent Index : %d\n", extent.index);
    std::printf("Extent's array ID : %d\n", extent.arrayId);
    std::printf("Extent's start LBA : %.2f\n", megabytes(extent.start));
    std::printf("Extent's size : %.2f MB\n", megabytes(extent.size));
    std::puts("Maintenance status : Idle");
    std::puts("Functional status : Online");
    std::puts("Assignment status : assigned");
    std::puts("Smart status : OK");
}

static void printExtents(const PhyDrvInfo& drive) {
    std::puts("*********************************");
    std::printf("Disk ID : %d\n", drive.driveId + 1);
    for (const ExtentEntry& extent : drive.extent)
        printExtent(extent);
}

static void printDrive(const PhyDrvInfo& drive) {
    std::puts("****************************");
    std::printf("Disk ID : %d\n", drive.driveId + 1);
    std::printf("Channel# : %d\n", drive.channel);
    std::printf("Disk name : %.*s\n", FIELD_PRINTF_ARGS(drive.model));
    std::printf("Firmware version : %.*s\n", FIELD_PRINTF_ARGS(drive.firmware));
    std::printf("Disk size : %.2f MB\n", megabytes(drive.capacity));
    std::printf("Number of cylinders : %d\n", drive.cylinders);
    std::printf("Number of heads : %d\n", drive.heads);
    std::printf("Number of sectors : %d\n", drive.sectorsPerTrack);
    std::printf("DMA mode : %d\n", drive.dmaMode);
    std::puts("Media patrol status : idle");
    std::printf("Media patrol loop count : %d\n", 0);
    std::printf("Media patrol error count : %d\n", 0);
    std::puts("Enclosure existed : No");
    std::printf("Number of extents : %d\n", drive.extentCount);
    std::printf("Disk write cache mode : %s\n", "enabled");
    std::printf("Smart check : %s\n", "enabled");
    std::printf("NCQ is %s\n", "enabled");
    std::puts("TCQ feature is not supported");
    std::printf("Current Locate Status : %s\n", "Off");
}

static void printLogDrv(const LogDrvInfo& drive) {
    std::puts("*******************************");
    std::printf("Array ID : %d\n", drive.logDrvId);
    std::printf("Array name : %.*s\n", FIELD_PRINTF_ARGS(drive.name));
    std::printf("Array size : %.2f MB\n", megabytes(drive.sectorCount));
    std::printf("Array stripe size in number of blocks : %d\n", static_cast<int>(drive.stripeBlocks));
    std::printf("Array sector size : %d\n", static_cast<int>(drive.sectorSize));
    std::printf("Array raid mode : %s\n", "RAID1");
    std::printf("Array write cache mode : %s\n", "Write Back");
    std::printf("Number of disks in array : %d\n", drive.diskCount);
    std::printf("Disk members with ID in array : %s\n", sampleMembers(drive.logDrvId));
    std::puts("Array activity status : Idle");
    std::puts("Array functional status : Online");
    std::printf("Driver Cache Mode: %s%s\n", "", "Write Back");
    std::printf("Driver Lookahead threshold: %d\n", 4);
    std::printf("Driver Consolidation: %s\n", "enabled");
}

static void printEvent(const HBAEvent& event) {
    std::printf("EventID: 0x%x \n", event.eventId);
    std::printf("Event Desciption: %.*s\n", FIELD_PRINTF_ARGS(event.description));
}

// All records are created before the first is printed, so that the cost of an additional record is that of
// printing it.
static void printRecords(const char* listing, int count) {
    static PhyDrvInfo drives[kMaxDrives];
    static LogDrvInfo logDrvs[kMaxLogDrvs];
    static HBAEvent events[kSampleEvents];
    for (int i = 0; i < static_cast<int>(kMaxDrives); ++i)
        drives[i] = sampleDrive(i);
    for (int i = 0; i < static_cast<int>(kMaxLogDrvs); ++i)
        logDrvs[i] = sampleLogDrv(i);
    for (int i = 0; i < kSampleEvents; ++i)
        events[i] = sampleEvent(i);
    for (int i = 0; i < count && std::strcmp(listing, "phydrv") == 0; ++i)
        printDrive(drives[i]);
    for (int i = 0; i < count && std::strcmp(listing, "extent") == 0; ++i)
        printExtents(drives[i]);
    for (int i = 0; i < count && std::strcmp(listing, "logdrv") == 0; ++i)
        printLogDrv(logDrvs[i]);
    for (int i = count; i > 0 && std::strcmp(listing, "event") == 0; --i)
        printEvent(events[i - 1]); // newest first
}

int main(int argc, char** argv) {
    if (argc != 3)
        return 2;
    const int count = std::atoi(argv[2]);
    if (std::strcmp(argv[1], "export-phydrv") == 0)
        printExportedDrives(count);
    else if (std::strcmp(argv[1], "export-logdrv") == 0)
        printExportedLogDrvs(count);
    else
        printRecords(argv[1], count);
    return 0;
}
