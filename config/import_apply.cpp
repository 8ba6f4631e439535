// Applies the records of a configuration file. Each one runs the command that a user would type, so that
// the same checks apply.
#include <cstdarg>
#include <initializer_list>

#include "adapter/reply.h"
#include "adapter/session.h"
#include "commands/controller.h"
#include "commands/creation.h"
#include "commands/logdrv.h"
#include "commands/phydrv.h"
#include "commands/vocabulary.h"
#include "config/import_set.h"
#include "util/result.h"
#include "util/signals.h"
#include "util/words.h"

static constexpr std::uint32_t kMaxImportControllers = 4; // further controllers are ignored

namespace {
// Builds the words of a command in a separate word table.
struct ArgvBuilder {
    int count;
    char slot[kMaxWords][kWordSize];
    char* word[kMaxWords];
};
} // namespace

// Appends a word, truncated to its slot.
[[gnu::format(printf, 2, 3)]] static void appendArg(ArgvBuilder* words, const char* format, ...) {
    char* slot = words->slot[words->count];
    words->word[words->count++] = slot;
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(slot, kWordSize, format, arguments);
    va_end(arguments);
}

static void appendArgs(ArgvBuilder* words, std::initializer_list<const char*> texts) {
    for (const char* text : texts)
        appendArg(words, "%s", text);
}

static const char* enableWord(bool flag) {
    return flag ? "enable" : "disable";
}

int ImpFileSetCtrlSettings(const CtrlConfigRecord* record) {
    if (record == nullptr)
        return 0;
    ArgvBuilder words = {};
    appendArgs(&words, {"ctrl", "-a", "mod", "-i"});
    appendArg(&words, "%d", record->setIndex);
    appendArg(&words, "-s");
    appendArg(&words,
              "smart=%s,autorebuild=%s,smartpoll=%d,encpoll=%d,rebuildrate=%d,syncrate=%d,initrate=%d,"
              "migraterate=%d,mprate=%d,rebuildpolicy=%s",
              enableWord(record->smartCheck != 0), enableWord(record->autoRebuild != 0),
              record->smartPollInterval, record->encPollInterval, record->rebuildRate, record->syncRate,
              record->initRate, record->migrateRate, record->mpRate, enableWord(record->rebuildPolicy != 0));
    SetControllerSettings(words.count, words.word);
    return 0;
}

int ImpFileSetPhydrvSettings(const PhyDrvConfigRecord* record) {
    if (record == nullptr)
        return 0;
    ArgvBuilder words = {};
    appendArgs(&words, {"phydrv", "-a", "mod", "-p"});
    appendArg(&words, "%d", record->driveId);
    appendArg(&words, "-i");
    appendArg(&words, "%d", record->controller);
    appendArg(&words, "-s");
    appendArg(&words, "writecache=%s, NCQ=%s, TCQ=%s", enableWord(record->writeCache != 0),
              enableWord(record->ncq != 0), enableWord(record->tcq != 0));
    SetPhyDrvSettings(words.count, words.word);
    return 0;
}

int ImpFileSetLogSettings(const LogDrvConfigRecord* record) {
    if (record == nullptr)
        return 0;
    ArgvBuilder words = {};
    appendArgs(&words, {"logdrv", "-a", "mod", "-i"});
    appendArg(&words, "%d", record->controller);
    appendArg(&words, "-l");
    appendArg(&words, "%d", record->logDrvId);
    appendArg(&words, "-s");
    appendArg(&words, "writepolicy=%s,lookahead=%d,consolidation=%s,name=%s",
              TranslateWriteMode2StrForImport(record->writeMode), record->lookahead,
              enableWord(record->consolidation == 1), record->name);
    SetLogDrvSettings(words.count, words.word);
    return 0;
}

namespace {
struct ArgText {
    char text[kWordSize];
};
} // namespace

// One number for each member, followed by a blank.
static ArgText listArg(const LogDrvConfigRecord& record, const int* numbers) {
    ArgText list = {};
    std::size_t length = 0;
    for (int i = 0; i < configMembers(record) && length < sizeof list.text; ++i)
        length += static_cast<std::size_t>(
            std::snprintf(list.text + length, sizeof list.text - length, "%d ", numbers[i]));
    return list;
}

// The settings of the creation text that only some RAID levels have.
static ArgText levelOptions(const LogDrvConfigRecord& record) {
    ArgText part = {};
    if (record.raidLevel == kRaidMf)
        std::snprintf(part.text, sizeof part.text, ",ParityCnt=%d,Symmetric=%d,Shift=%d", record.parityCount,
                      record.symmetric, record.shift);
    else if (record.raidLevel == kRaid50)
        std::snprintf(part.text, sizeof part.text, ", SubArrayCnt=%d", record.subArrayCount);
    return part;
}

// The words of the creation; with extents on those that the record lists.
static void appendCreation(ArgvBuilder* words, const LogDrvConfigRecord& record, bool withExtents) {
    appendArgs(words, {"logdrv", "-a", "add", "-i"});
    appendArg(words, "%d", record.controller);
    appendArg(words, "-p");
    appendArg(words, "%s", listArg(record, record.memberIds).text);
    if (withExtents)
        appendArgs(words, {"-e", listArg(record, record.extents).text});
    appendArg(words, "-z");
    appendArg(words, "name=%s,raid=%s,stripe=%d,Capacity=%llu,init=%s,Sectorsize=%d%s", record.name,
              TranslateRaidLevel2Str(record.raidLevel), record.stripeSize,
              static_cast<unsigned long long>(record.sectorCount), TranslateLDInitOption2Str(record.initMode),
              record.sectorSize, levelOptions(record).text);
}

int ImpFileCreateLogDrv(const LogDrvConfigRecord* record) {
    if (record == nullptr)
        return 0;
    ArgvBuilder words = {};
    appendCreation(&words, *record, false);
    CreateLogDrv2(words.count, words.word);
    return 0;
}

int CreateOnExtents(const LogDrvConfigRecord& record) {
    ArgvBuilder words = {};
    appendCreation(&words, record, true);
    return CreateLogDrv2(words.count, words.word);
}

int PhraseCreateOnExtents(const LogDrvConfigRecord& record, CreateArrayRequest* request) {
    ArgvBuilder words = {};
    appendCreation(&words, record, true);
    HbaAddress address = {};
    std::uint32_t secondArgument = 0;
    const int result = PhraseCreateLogDrvArg(words.count, words.word, &address, &secondArgument, request);
    request->origin = kOriginImport;
    return result;
}

static std::uint16_t readDiskCount(std::uint32_t controller) {
    const ControllerQuery query = {controller, 1, kGeneralInfo, {}};
    ControllerInfo info = {};
    q5_getControllerInfo(hbaAddress(controller), 0, &query, &info, sizeof info);
    return info.diskCount;
}

static bool isFor(int recordController, std::uint32_t controller) {
    return recordController == static_cast<int>(controller);
}

// Checks that the controller has as many drives as the records require.
static int checkController(const ImportSet& set, std::uint32_t controller, int diskCount) {
    int drives = 0;
    for (const PhyDrvConfigRecord& record : phyDrvRecords(set))
        drives += isFor(record.controller, controller);
    if (drives > diskCount)
        return fail(Result::tooManyDrives,
                    "The physical drive number specified is greater than the one in the controller");
    for (const LogDrvConfigRecord& record : logDrvRecords(set))
        if (isFor(record.controller, controller) && record.memberCount > diskCount)
            return fail(Result::tooManyDrives, "The physical drive member number in logical drive "
                                               "specified is greater than the one in the controller");
    return Result::done;
}

static void applyCtrlRecord(const ImportSet& set, std::uint32_t controller) {
    for (int i = 0; i < set.ctrlCount; ++i) {
        if (isFor(set.ctrl[i].setIndex, controller)) {
            ImpFileSetCtrlSettings(&set.ctrl[i]);
            return; // Compatibility: only the first record for a controller is applied
        }
    }
}

static void applyPhyDrvRecords(const ImportSet& set, std::uint32_t controller) {
    for (const PhyDrvConfigRecord& record : phyDrvRecords(set))
        if (isFor(record.controller, controller))
            ImpFileSetPhydrvSettings(&record);
}

using LogDrvReply = Reply<LogDrvInfo, kMaxLogDrvs>;

static void readLogDrvs(std::uint32_t controller, LogDrvReply* reply) {
    const LogDrvQuery all = {0, kMaxLogDrvs};
    *reply = {};
    q5_getLogDrvInfo(hbaAddress(controller), 0, &all, reply, sizeof *reply);
}

static void recreateLogDrvs(const ImportSet& set, std::uint32_t controller) {
    LogDrvReply reply;
    readLogDrvs(controller, &reply);
    for (const LogDrvInfo& drive : records(reply)) {
        const DeleteArrayRequest request = {1, drive.arrayId};
        q5_delDiskArray(hbaAddress(controller), 0, &request, sizeof request);
    }
    for (const LogDrvConfigRecord& record : logDrvRecords(set))
        if (isFor(record.controller, controller))
            ImpFileCreateLogDrv(&record);
}

// The first record for the logical drive; null when there is none.
static const LogDrvConfigRecord* findRecord(const ImportSet& set, std::uint32_t controller, int logDrvId) {
    for (const LogDrvConfigRecord& record : logDrvRecords(set))
        if (isFor(record.controller, controller) && record.logDrvId == logDrvId)
            return &record;
    return nullptr;
}

static void applyLogDrvRecords(const ImportSet& set, std::uint32_t controller, bool clear) {
    if (clear)
        recreateLogDrvs(set, controller);
    LogDrvReply reply;
    readLogDrvs(controller, &reply);
    for (const LogDrvInfo& drive : records(reply))
        ImpFileSetLogSettings(findRecord(set, controller, drive.logDrvId));
}

// Applies the records of every controller. Logical drives that were deleted must be created again: no
// signal interrupts this.
static void applyToControllers(const ImportSet& set, const std::uint16_t* diskCount,
                               std::uint32_t controllers, bool clear) {
    sigset_t before;
    blockSignals(&before);
    for (std::uint32_t controller = 0; controller < controllers; ++controller) {
        applyCtrlRecord(set, controller);
        applyPhyDrvRecords(set, controller);
        if (set.logDrvCount > 0 && diskCount[controller] != 0)
            applyLogDrvRecords(set, controller, clear);
    }
    restoreSignals(&before);
}

int applyRecords(const ImportSet& set, bool clear) {
    std::uint32_t hbaCount = 0;
    q5_getNumberOfHBA(&hbaCount);
    if (hbaCount < static_cast<std::uint32_t>(set.ctrlCount))
        return fail(Result::notFound, "The number of controller in the system is less than the number of "
                                      "controller specified!");
    const std::uint32_t controllers = hbaCount < kMaxImportControllers ? hbaCount : kMaxImportControllers;
    std::uint16_t diskCount[kMaxImportControllers] = {};
    for (std::uint32_t controller = 0; controller < controllers; ++controller) {
        diskCount[controller] = readDiskCount(controller);
        if (const int result = checkController(set, controller, diskCount[controller]))
            return result;
    }
    applyToControllers(set, diskCount, controllers, clear);
    return Result::done;
}
