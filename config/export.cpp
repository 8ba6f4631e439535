// The export command: reads all settings from the adapters and writes them block by block.
// Compatibility: after a failed call, zeroes are written.
#include "config/export.h"

#include <cstring>

#include "adapter/battery.h"
#include "adapter/reply.h"
#include "adapter/session.h"
#include "commands/options.h"
#include "config/block.h"
#include "config/ctrl_block.h"
#include "config/logdrv_block.h"
#include "config/phydrv_block.h"
#include "util/atomic_file.h"

static void writeSection(std::FILE* stream, const char* marker, int index, const char* text) {
    std::fprintf(stream, "%s %d\n", marker, index);
    std::fputs(text, stream);
}

static int countGlobalSpares(const PhyDrvInfo& drive) {
    int count = 0;
    for (const ExtentEntry& extent : extents(drive))
        count += (extent.assignment & kExtentGlobalSpare) != 0;
    return count;
}

// Compatibility: the spares of the first drive, times the number of drives.
int GetSpareInfo(std::uint32_t controller, int countGlobal, int* count) {
    const PhyDrvQuery query = {0, kMaxDrives, kAllDrives, {}};
    Reply<PhyDrvInfo, kMaxDrives> reply = {};
    q5_getPhyDrvInfo(hbaAddress(controller), 0, &query, &reply, sizeof reply);
    const int drives = static_cast<int>(records(reply).size());
    *count = countGlobal != 0 ? drives * countGlobalSpares(reply.record[0]) : 0;
    return 0;
}

int WriteCtrlSettings(std::uint32_t hbaCount, std::FILE* stream) {
    for (std::uint32_t controller = 0; controller < hbaCount; ++controller) {
        const ControllerQuery query = {controller, 1, kGeneralInfo, {}};
        ControllerSettings settings = {};
        q5_getControllerSettings(hbaAddress(controller), 0, &query, &settings, sizeof settings);
        std::uint8_t buzzer = 0;
        q5_getBuzzerStatus(hbaAddress(controller), 0, &buzzer, sizeof buzzer);
        int spares = 0;
        GetSpareInfo(controller, 1, &spares);

        char text[kBlockTextSize];
        CtrlSettingsToBuffer(&settings, buzzer, spares, text);
        writeSection(stream, kCtrlMarker, static_cast<int>(controller), text);
    }
    return 0;
}

int WritePDSettings(std::uint32_t hbaCount, std::FILE* stream) {
    int index = 0; // over all controllers
    for (std::uint32_t controller = 0; controller < hbaCount; ++controller) {
        const PhyDrvSelector all = {0, kMaxDrives, 1, {}};
        Reply<PhyDrvSettings, kMaxDrives> reply = {};
        q5_getPhyDrvSettings(hbaAddress(controller), 0, &all, &reply, sizeof reply);
        for (const PhyDrvSettings& settings : records(reply)) {
            char text[kBlockTextSize];
            PDSettingsToBuffer(static_cast<int>(controller), &settings, text);
            writeSection(stream, kPhyDrvMarker, index++, text);
        }
    }
    return 0;
}

// The drive's first extent that belongs to the array; null when none does.
static const ExtentEntry* findExtent(const PhyDrvInfo& drive, std::uint16_t arrayId) {
    for (const ExtentEntry& extent : extents(drive))
        if (extent.arrayId == arrayId)
            return &extent;
    return nullptr;
}

// Lists, for each member, the index of its extent that belongs to the array. Compatibility: a member
// without one adds no entry, so that the end of the list is left over from an earlier array.
static void listExtents(std::uint32_t controller, const LogDrvInfo& array, std::uint8_t* list) {
    int count = 0;
    for (int i = 0; i < boundedMemberCount(array); ++i) {
        const PhyDrvQuery query = {array.memberIds[i], 1, kAllDrives, {}};
        Reply<PhyDrvInfo, 1> reply = {};
        q5_getPhyDrvInfo(hbaAddress(controller), 0, &query, &reply, sizeof reply);
        if (const ExtentEntry* extent = findExtent(reply.record[0], array.arrayId))
            list[count++] = static_cast<std::uint8_t>(extent->index);
    }
}

// Writes the blocks of one controller's logical drives. *index and the extent list continue over all
// controllers.
static void writeLogDrvs(std::uint32_t controller, std::FILE* stream, int* index, std::uint8_t* extentList) {
    const LogDrvQuery all = {0, kMaxLogDrvs};
    Reply<LogDrvInfo, kMaxLogDrvs> drives = {};
    q5_getLogDrvInfo(hbaAddress(controller), 0, &all, &drives, sizeof drives);
    if (records(drives).empty())
        return;
    Reply<LogDrvSettings, kMaxLogDrvs> settings = {};
    const LogDrvQuery settingsOfAll = {0, kMaxLogDrvs};
    q5_getLogDrvSettings(hbaAddress(controller), 0, &settingsOfAll, &settings, sizeof settings);
    const LogDrvSettings* paired = settings.record;
    for (const LogDrvInfo& drive : records(drives)) {
        listExtents(controller, drive, extentList);
        char text[kBlockTextSize];
        LDSettingsToBuffer(static_cast<int>(controller), &drive, paired++, extentList, text);
        writeSection(stream, kLogDrvMarker, (*index)++, text);
    }
}

int WriteLDSettings(std::uint32_t hbaCount, std::FILE* stream) {
    std::uint8_t extentList[kMaxArrayMembers];
    std::memset(extentList, kNoIdItem, sizeof extentList);
    int index = 0; // over all controllers
    for (std::uint32_t controller = 0; controller < hbaCount; ++controller)
        writeLogDrvs(controller, stream, &index, extentList);
    return 0;
}

enum ExportType : std::uint32_t {
    kExportAll = 0,
    kExportControllers = 1,
    kExportPhyDrvs = 2,
    kExportLogDrvs = 3,
};

// Compatibility: other types are ignored without a message.
static void writeType(std::uint32_t type, std::uint32_t hbaCount, std::FILE* stream) {
    if (type == kExportAll || type == kExportControllers)
        WriteCtrlSettings(hbaCount, stream);
    if (type == kExportAll || type == kExportPhyDrvs)
        WritePDSettings(hbaCount, stream);
    if (type == kExportAll || type == kExportLogDrvs)
        WriteLDSettings(hbaCount, stream);
}

// Writes the types in the order given; kExportAll anywhere in the list replaces the whole list.
static void writeTypes(const IdList<>& types, std::uint32_t hbaCount, std::FILE* stream) {
    if (SearchItemIntList(types.id, types.count, kExportAll)) {
        writeType(kExportAll, hbaCount, stream);
        return;
    }
    for (int i = 0; i < types.count; ++i)
        writeType(types.id[i], hbaCount, stream);
}

static int failFile(const char* name) {
    std::printf("Unable to create or open the specified configuration file \"%s\"\n", name);
    return Result::noFile;
}

int ExportFile(int wordCount, char** words) {
    IdList<> types = {};
    const char* name = "";
    const Option options[] = {listOption("-t", &types), textOption("-f", &name)};
    if (const int result = readOptions(wordCount, words, 1, options, "Invalid parameters defined"))
        return result;

    FileReplacement file;
    if (!openReplacement(&file, name))
        return failFile(name);
    std::uint32_t hbaCount = 0;
    q5_getNumberOfHBA(&hbaCount);
    if (hbaCount == 0) {
        commitReplacement(&file); // leaves an empty file
        return fail(Result::notFound, "No controller is existed");
    }
    writeTypes(types, hbaCount, file.stream);
    // An incomplete file is useless as a backup: a full file system is reported like a file that cannot be
    // created.
    return commitReplacement(&file) ? Result::done : failFile(name);
}
