// The logical drive block of the configuration file.
#include "config/logdrv_block.h"

#include "adapter/reply.h"
#include "commands/vocabulary.h"
#include "config/block.h"
#include "config/display.h"
#include "util/idlist.h"
#include "util/utils.h"

namespace {
struct LogDrvSource {
    int controller;
    const LogDrvInfo* drive;
    const LogDrvSettings* settings;
    const std::uint8_t* extents;
};
} // namespace

using Record = LogDrvConfigRecord;
using Source = LogDrvSource;

static void writeMembers(BlockText* text, const Source& s) {
    LogDrvInfo copy = *s.drive; // BlockIDsString() adds 1 to the IDs in place
    append(text, "%s", BlockIDsString(boundedMemberCount(copy), copy.memberIds));
}

static void writeExtents(BlockText* text, const Source& s) {
    append(text, "%s", BlockExtentIDsString(boundedMemberCount(*s.drive), s.extents));
}

// Reads a list into the first entries of numbers. Its length is ignored: the number of members has a
// separate key.
static void readList(std::FILE* file, int (&numbers)[kConfigMembers]) {
    Token token;
    if (!readToken(file, &token))
        return;
    std::uint32_t values[kMaxListItems];
    for (int i = 0; i < kMaxListItems; ++i)
        values[i] = static_cast<std::uint32_t>(numbers[i]);
    int count = 0;
    BlockIDStr2Int(&count, values, token.text);
    for (int i = 0; i < kMaxListItems; ++i)
        numbers[i] = static_cast<int>(values[i]);
}

// Names and cache modes contain blanks: the rest of the line is read, including the blank after the key.
// False when the file ends after the key.
static bool readLine(std::FILE* file, char (&text)[128]) {
    if (std::feof(file))
        return false;
    GetStrFromFileUpTo(file, text, sizeof text, "\n\t\r");
    return true;
}

static void readName(std::FILE* file, Record* record) {
    char name[128] = {};
    if (readLine(file, name))
        std::memcpy(record->name, name, sizeof name);
}

static void readCacheMode(std::FILE* file, Record* record) {
    char mode[128] = {};
    if (readLine(file, mode))
        record->writeMode = TranslateWriteMode(mode);
}

static void readSectorCount(std::FILE* file, Record* record) {
    unsigned long long count = record->sectorCount;
    static_cast<void>(std::fscanf(file, "%llu", &count) == 1);
    record->sectorCount = count;
}

static void readSize(std::FILE* file, Record* record) {
    static_cast<void>(std::fscanf(file, "%lf", &record->sizeMB) == 1);
}

static void readRaidMode(std::FILE* file, Record* record) {
    Token token;
    if (readToken(file, &token))
        record->raidLevel = TranslateRaidLevel(token.text);
}

static void readInitMode(std::FILE* file, Record* record) {
    Token token;
    if (readToken(file, &token))
        record->initMode = TranslateInitialization(token.text);
}

static bool isRaidMf(const Source& s) {
    return s.drive->raidLevel == kRaidMf;
}
static bool isRaid50(const Source& s) {
    return s.drive->raidLevel == kRaid50;
}

static const Key<Source, Record> keys[] = {
    {"<LogDrvID>", [](BlockText* text, const Source& s) { append(text, "%d", s.drive->logDrvId); },
     readNumber<&Record::logDrvId>},
    {"<LogyDrvCtrlID>", [](BlockText* text, const Source& s) { append(text, "%d", s.controller); },
     readNumber<&Record::controller>},
    {"<LogDrvName>",
     [](BlockText* text, const Source& s) { append(text, "%.*s", FIELD_PRINTF_ARGS(s.drive->name)); },
     readName},
    // Displayed, never applied: a logical drive is created again by its sector count.
    {"<LogDrvSize>",
     [](BlockText* text, const Source& s) {
         append(text, "%.4f", SectorCount2MBBase1000(s.drive->sectorCount));
     },
     readSize},
    {"<LogDrvSectorCount>",
     [](BlockText* text, const Source& s) {
         append(text, "%llu", static_cast<unsigned long long>(s.drive->sectorCount));
     },
     readSectorCount},
    {"<LogDrvSectorSize>",
     [](BlockText* text, const Source& s) { append(text, "%d", static_cast<int>(s.drive->sectorSize)); },
     readNumber<&Record::sectorSize>},
    {"<LogDrvStripeSize>",
     [](BlockText* text, const Source& s) { append(text, "%d", static_cast<int>(s.drive->stripeBlocks)); },
     readNumber<&Record::stripeSize>},
    {"<LogDrvRaidMode>",
     [](BlockText* text, const Source& s) { append(text, "%s", TranslateRaidLevel2Str(s.drive->raidLevel)); },
     readRaidMode},
    // Compatibility: both automatic modes read back as the same code.
    {"<LogDrvCacheMode>",
     [](BlockText* text, const Source& s) {
         append(text, "%s", TranslateWriteMode2Str(static_cast<int>(s.drive->writeCacheMode)));
     },
     readCacheMode},
    {"<LogDrvDiskNum>", [](BlockText* text, const Source& s) { append(text, "%d", s.drive->diskCount); },
     readNumber<&Record::memberCount>},
    {"<LogDrvDiskMember>", writeMembers,
     [](std::FILE* file, Record* record) { readList(file, record->memberIds); }},
    {"<LogDrvDiskExtentIndex>", writeExtents,
     [](std::FILE* file, Record* record) { readList(file, record->extents); }},
    // Always written as "NONE". To initialize a new logical drive, edit the word.
    {"<LogDrvInitMode>", [](BlockText* text, const Source&) { append(text, "NONE"); }, readInitMode},
    {"<LogDrvLookAheadValue>",
     [](BlockText* text, const Source& s) { append(text, "%d", s.settings->lookahead); },
     readNumber<&Record::lookahead>},
    {"<LogDrvConsolidation>",
     [](BlockText* text, const Source& s) { append(text, "%s", enableText(s.settings->consolidation)); },
     readFlag<&Record::consolidation>},
    {"<LogDrvParityCnt>", [](BlockText* text, const Source& s) { append(text, "%d", s.drive->parityCount); },
     readNumber<&Record::parityCount>, isRaidMf},
    {"<LogDrvSymmetric>", [](BlockText* text, const Source& s) { append(text, "%d", s.drive->symmetric); },
     readNumber<&Record::symmetric>, isRaidMf},
    {"<LogDrvShift>", [](BlockText* text, const Source& s) { append(text, "%d", s.drive->shift); },
     readNumber<&Record::shift>, isRaidMf},
    {"<LogDrvSubArrayCount>",
     [](BlockText* text, const Source& s) { append(text, "%d", s.drive->subArrayCount); },
     readNumber<&Record::subArrayCount>, isRaid50},
};

int configMembers(const LogDrvConfigRecord& record) {
    if (record.memberCount < 0)
        return 0;
    return record.memberCount < kConfigMembers ? record.memberCount : kConfigMembers;
}

int LDSettingsToBuffer(int controller, const LogDrvInfo* drive, const LogDrvSettings* settings,
                       const std::uint8_t* extents, char* text) {
    writeBlock<Source, Record>(keys, {controller, drive, settings, extents}, text);
    return 0;
}

int GetLogDrvConfig(std::FILE* file, LogDrvConfigRecord* record) {
    readBlock<Source, Record>(keys, file, record);
    return 0;
}

static void showNumbers(const char* label, const int* numbers, int count) {
    std::printf("%s : ", label);
    for (int i = 0; i < count; ++i)
        std::printf("%d ", numbers[i]);
    std::puts("");
}

void DisplayLogDrvConfig(LogDrvConfigRecord record) {
    openDisplay("Logical drive setting", record.setIndex);
    showWord("Name", record.name);
    std::printf("%s : %.4f MB\n", "Size", record.sizeMB);
    std::printf("%s : %d KB\n", "Stripe size", record.stripeSize);
    std::printf("%s : %d Byte\n", "Sector size", record.sectorSize);
    showWord("Raid mode", TranslateRaidLevel2Str(record.raidLevel));
    showWord("Write cache mode", TranslateWriteMode2Str(record.writeMode));
    showNumber("Disk number", record.memberCount);
    showNumbers("Disk member ID list", record.memberIds, configMembers(record));
    showNumbers("Extent member Index list corresponding to Disk member ID list", record.extents,
                configMembers(record));
    showWord("Initialization mode", TranslateInitialization2Str(record.initMode));
    showNumber("Lookahead value", record.lookahead);
    showWord("Consolidataion", enableText(record.consolidation));
    if ((record.raidLevel & 0xFF) == kRaid50)
        showNumber("SubArrayCount", record.subArrayCount);
    if ((record.raidLevel & 0xFF) == kRaidMf) {
        showNumber("ParityCount", record.parityCount);
        showNumber("Symmetric", record.symmetric);
        showNumber("Shift", record.shift);
    }
    closeDisplay();
}
