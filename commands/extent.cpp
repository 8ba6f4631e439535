// The extent command: lists the extents of the drives and changes single ones.
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
    std::printf("Extent's start LBA : %.2f\n", SectorCount2MB(extent.start)); // Compatibility: in MB
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
    ListingArgs listing;
    if (const int result = parseListingArgs(wordCount, words, &listing))
        return result;
    DriveReply reply;
    if (!queryDrives(listing, &reply)) {
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
// The arguments of the actions that change an extent; drive counts from 0.
struct ExtentArgs {
    std::uint32_t controller = 0;
    std::uint32_t drive = 0;
    std::uint32_t extent = 0;
};
} // namespace

// Parses the options common to these actions and the additional one that some have.
static int parseExtentArgs(int wordCount, char** words, ExtentArgs* args, const Option& extra = {}) {
    const Option options[] = {
        driveOption("-p", "physical drive ID", &args->drive),
        numberOption("-i", "controller ID", &args->controller, Result::badId),
        numberOption("-e", "extent ID", &args->extent, Result::badId),
        extra,
    };
    const std::span<const Option> accepted(options, extra.name != nullptr ? 4 : 3);
    return readOptions(wordCount, words, 3, accepted, "Invalid parameters defined");
}

static ExtentPlacement placementOf(const ExtentArgs& args, std::uint32_t logDrvId) {
    return {static_cast<std::uint16_t>(args.extent), static_cast<std::uint16_t>(args.drive),
            static_cast<std::uint8_t>(logDrvId), 0};
}

// Compatibility: a failure is reported but the exit status is 0.
static int report(int adapterResult, const char* failure, const ExtentArgs& args) {
    if (adapterResult != 0)
        std::printf(failure, static_cast<int>(args.extent), static_cast<int>(args.drive),
                    static_cast<int>(args.controller));
    return Result::done;
}

int SpareExtent(int wordCount, char** words) {
    if (wordCount < 9)
        return fail(Result::badCount, "Invalid number of parameters for \"extent -a spare\" defined");
    ExtentArgs args;
    std::uint32_t logDrv = kNoArray;
    if (const int result = parseExtentArgs(wordCount, words, &args,
                                           numberOption("-l", "logical drive ID", &logDrv, Result::badId)))
        return result;
    const ExtentPlacement placement = placementOf(args, logDrv);
    return report(q5_spareHBAExtent(hbaAddress(args.controller), 0, &placement),
                  "Failed to spare an extent #%d in disk with ID %d on controller #%d!\n", args);
}

int FreeExtent(int wordCount, char** words) {
    if (wordCount != 9)
        return fail(Result::badCount, "Invalid number of parameters for \"extent -a free\" defined");
    ExtentArgs args;
    if (const int result = parseExtentArgs(wordCount, words, &args))
        return result;
    const ExtentRef extent = {args.extent, args.drive};
    return report(q5_freeHBAExtent(hbaAddress(args.controller), 0, &extent),
                  "Failed to free an extent #%d in disk with ID %d on controller #%d!\n", args);
}

int AddExtent(int wordCount, char** words) {
    if (wordCount != 11)
        return fail(Result::badCount, "Invalid number of parameters for \"extent -a add\" defined");
    ExtentArgs args;
    std::uint32_t logDrv = 0;
    bool logDrvGiven = false;
    if (const int result =
            parseExtentArgs(wordCount, words, &args,
                            numberOption("-l", "logical drive ID", &logDrv, Result::badId, &logDrvGiven)))
        return result;
    if (!logDrvGiven)
        return fail(Result::badId, "Invalid logical drive ID defined!");
    const ExtentPlacement placement = placementOf(args, logDrv);
    return report(q5_addHBAExtentToArray(hbaAddress(args.controller), 0, &placement),
                  "Failed to add extent #%d in physical drive with ID %d on controller #%d!\n", args);
}

int SplitExtent(int wordCount, char** words) {
    if (wordCount != 11)
        return fail(Result::badCount, "Invalid number of parameters for \"extent -a split\" defined");
    ExtentArgs args;
    std::uint32_t offset = 0;
    if (const int result =
            parseExtentArgs(wordCount, words, &args, numberOption("-o", "offset", &offset, Result::badId)))
        return result;
    if (offset == 0) {
        std::printf("Incorrect offset %d is defined!\n", 0);
        return Result::badOffset;
    }
    const ExtentRef extent = {args.extent, args.drive};
    return report(q5_splitHBAExtent(hbaAddress(args.controller), 0, &extent, offset),
                  "Failed to split extent #%d in physical drive with ID %d on controller #%d!\n", args);
}

int DeleteExtent(int wordCount, char** words) {
    if (wordCount != 9)
        return fail(Result::badCount, "Invalid number of parameters for \"extent -a delete\" defined");
    ExtentArgs args;
    if (const int result = parseExtentArgs(wordCount, words, &args))
        return result;
    const ExtentRef extent = {args.extent, args.drive};
    return report(q5_deleteHBAExtent(hbaAddress(args.controller), 0, &extent),
                  "Failed to delete an extent #%d in disk with ID %d on controller #%d!\n", args);
}
