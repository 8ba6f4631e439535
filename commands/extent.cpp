// The extent command: lists the pieces of the drives' space and changes single ones.
#include "commands/extent.h"

#include <cstdio>

#include "adapter/extent.h"
#include "adapter/phydrv.h"
#include "commands/options.h"
#include "commands/phydrv_query.h"
#include "commands/vocabulary.h"

static void printRow(int driveId, const ExtentEntry& extent) {
    std::printf("%6d %5d %5d %8.2f %8.2f\n", driveId, extent.index,
                extent.arrayId == kNoArray ? -1 : extent.arrayId, SectorCount2MB(extent.size),
                SectorCount2MB(extent.start));
}

static const char* maintenanceLine(const ExtentEntry& extent) {
    if (extent.state & kExtentRebuilding)
        return "Maintenance status : Rebuilding";
    if (extent.maintenance & kExtentSynchronizing)
        return "Maintenance status : Synchronizing";
    if (extent.maintenance & kExtentMigrating)
        return "Maintenance status : Migrating";
    if (extent.maintenance & kExtentInitializing)
        return "Maintenance status : Initializing";
    return "Maintenance status : Idle";
}

static const char* assignmentLine(const ExtentEntry& extent) {
    if (!(extent.access & kExtentAccessible))
        return "Assignment status : no access";
    if (extent.assignment & kExtentAssigned)
        return "Assignment status : assigned";
    if (extent.assignment & kExtentGlobalSpare)
        return "Assignment status : global spare";
    if (extent.assignment & kExtentDedicatedSpare)
        return "Assignment status : dedicated spare";
    if (extent.access & kExtentFree)
        return "Assignment status : free";
    return "Assignment status : Unknown";
}

static void printExtent(int position, const ExtentEntry& extent) {
    std::printf("Extent Index : %d\n", position);
    if (extent.arrayId != kNoArray)
        std::printf("Extent's array ID : %d\n", extent.arrayId);
    std::printf("Extent's start LBA : %.2f\n", SectorCount2MB(extent.start)); // in MB all the same
    std::printf("Extent's size : %.2f MB\n", SectorCount2MB(extent.size));
    std::puts(maintenanceLine(extent));
    std::puts(extent.state & kExtentOnline ? "Functional status : Online" : "Functional status : Offline");
    std::puts(assignmentLine(extent));
    std::puts(extent.access & kExtentSmartFailed ? "Smart status : Failed" : "Smart status : OK");
}

static void printDriveRows(const PhyDrvInfo& drive) {
    for (const ExtentEntry& extent : extents(drive))
        printRow(drive.driveId + 1, extent);
}

static void printDriveBlock(const PhyDrvInfo& drive) {
    std::puts("*********************************");
    std::printf("Disk ID : %d\n", drive.driveId + 1);
    int position = 0;
    for (const ExtentEntry& extent : extents(drive))
        printExtent(position++, extent);
}

int ListExtentInfo(int wordCount, char** words) {
    DriveListing listing;
    if (const int result = readDriveListing(wordCount, words, &listing))
        return result;
    DriveReply reply;
    if (!findDrives(listing, &reply)) {
        std::printf("Disk with ID %d is not existed!\n", static_cast<int>(listing.first));
        return Result::notFound;
    }
    if (!listing.verbose)
        std::printf("%6s %5s %5s %-8s %8s\n", "DiskID", "Index", "AryID", "Size", "StartLBA");
    for (const PhyDrvInfo& drive : records(reply))
        (listing.verbose ? printDriveBlock : printDriveRows)(drive);
    return Result::done;
}

namespace {
// What the words of a change name; drive counts from 0.
struct ExtentArgs {
    std::uint32_t controller = 0;
    std::uint32_t drive = 0;
    std::uint32_t extent = 0;
};
} // namespace

// Reads the options every change takes and the one more that some have.
static int parseExtentArgs(int wordCount, char** words, ExtentArgs* read, const Option& more = {}) {
    const Option options[] = {
        driveOption("-p", "physical drive ID", &read->drive),
        numberOption("-i", "controller ID", &read->controller, Result::badId),
        numberOption("-e", "extent ID", &read->extent, Result::badId),
        more,
    };
    const std::span<const Option> taken(options, more.letter != nullptr ? 4 : 3);
    return readOptions(wordCount, words, 3, taken, "Invalid parameters defined");
}

static ExtentPlacement placementOf(const ExtentArgs& read, std::uint32_t logDrvId) {
    return {static_cast<std::uint16_t>(read.extent), static_cast<std::uint16_t>(read.drive),
            static_cast<std::uint8_t>(logDrvId), 0};
}

// A refused change says so and counts as done.
static int report(int adapterResult, const char* failure, const ExtentArgs& read) {
    if (adapterResult != 0)
        std::printf(failure, static_cast<int>(read.extent), static_cast<int>(read.drive),
                    static_cast<int>(read.controller));
    return Result::done;
}

int SpareExtent(int wordCount, char** words) {
    if (wordCount < 9)
        return fail(Result::badCount, "Invalid number of parameters for \"extent -a spare\" defined");
    ExtentArgs read;
    std::uint32_t logDrv = kNoArray;
    if (const int result = parseExtentArgs(wordCount, words, &read,
                                           numberOption("-l", "logical drive ID", &logDrv, Result::badId)))
        return result;
    const ExtentPlacement placement = placementOf(read, logDrv);
    return report(q5_spareHBAExtent(hbaAddress(read.controller), 0, &placement),
                  "Failed to spare an extent #%d in disk with ID %d on controller #%d!\n", read);
}

int FreeExtent(int wordCount, char** words) {
    if (wordCount != 9)
        return fail(Result::badCount, "Invalid number of parameters for \"extent -a free\" defined");
    ExtentArgs read;
    if (const int result = parseExtentArgs(wordCount, words, &read))
        return result;
    const ExtentRef extent = {read.extent, read.drive};
    return report(q5_freeHBAExtent(hbaAddress(read.controller), 0, &extent),
                  "Failed to free an extent #%d in disk with ID %d on controller #%d!\n", read);
}

int AddExtent(int wordCount, char** words) {
    if (wordCount != 11)
        return fail(Result::badCount, "Invalid number of parameters for \"extent -a add\" defined");
    ExtentArgs read;
    std::uint32_t logDrv = 0;
    bool logDrvGiven = false;
    if (const int result =
            parseExtentArgs(wordCount, words, &read,
                            numberOption("-l", "logical drive ID", &logDrv, Result::badId, &logDrvGiven)))
        return result;
    if (!logDrvGiven)
        return fail(Result::badId, "Invalid logical drive ID defined!");
    const ExtentPlacement placement = placementOf(read, logDrv);
    return report(q5_addHBAExtentToArray(hbaAddress(read.controller), 0, &placement),
                  "Failed to add extent #%d in physical drive with ID %d on controller #%d!\n", read);
}

int SplitExtent(int wordCount, char** words) {
    if (wordCount != 11)
        return fail(Result::badCount, "Invalid number of parameters for \"extent -a split\" defined");
    ExtentArgs read;
    std::uint32_t offset = 0;
    if (const int result =
            parseExtentArgs(wordCount, words, &read, numberOption("-o", "offset", &offset, Result::badId)))
        return result;
    if (offset == 0) {
        std::printf("Incorrect offset %d is defined!\n", 0);
        return Result::badOffset;
    }
    const ExtentRef extent = {read.extent, read.drive};
    return report(q5_splitHBAExtent(hbaAddress(read.controller), 0, &extent, offset),
                  "Failed to split extent #%d in physical drive with ID %d on controller #%d!\n", read);
}

int DeleteExtent(int wordCount, char** words) {
    if (wordCount != 9)
        return fail(Result::badCount, "Invalid number of parameters for \"extent -a delete\" defined");
    ExtentArgs read;
    if (const int result = parseExtentArgs(wordCount, words, &read))
        return result;
    const ExtentRef extent = {read.extent, read.drive};
    return report(q5_deleteHBAExtent(hbaAddress(read.controller), 0, &extent),
                  "Failed to delete an extent #%d in disk with ID %d on controller #%d!\n", read);
}
