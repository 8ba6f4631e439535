// The import command: reads the file block by block, and displays it or collects the selected records.
// import_apply.cpp applies them.
#include "config/import.h"

#include <cstdio>

#include "commands/change_lock.h"
#include "commands/options.h"
#include "config/block.h"
#include "config/import_file.h"
#include "config/import_set.h"
#include "util/idlist.h"
#include "util/utils.h"

namespace {
enum class BlockKind { ctrl, phyDrv, logDrv, end, badKeyword, unreadable };

// The last block read; only the record of its kind is valid.
struct ConfigBlock {
    CtrlConfigRecord ctrl;
    PhyDrvConfigRecord phyDrv;
    LogDrvConfigRecord logDrv;
};

struct ConfigReader {
    std::FILE* file;
    bool sawToken; // whether any word was read
};
} // namespace

// Reads the block that begins with this marker.
static BlockKind readMarkedBlock(ConfigReader* reader, const char* marker, ConfigBlock* block) {
    if (strCmpNoCase(marker, kCtrlMarker) == 0) {
        GetControllerConfig(reader->file, &block->ctrl);
        return BlockKind::ctrl;
    }
    if (strCmpNoCase(marker, kPhyDrvMarker) == 0) {
        GetPhyDrvConfig(reader->file, &block->phyDrv);
        return BlockKind::phyDrv;
    }
    if (strCmpNoCase(marker, kLogDrvMarker) == 0) {
        GetLogDrvConfig(reader->file, &block->logDrv);
        return BlockKind::logDrv;
    }
    return BlockKind::badKeyword;
}

// Reads the next block. A word that is not a marker ends the file with a message. Compatibility: without a
// message if the file ends with the word.
static BlockKind nextBlock(ConfigReader* reader, ConfigBlock* block) {
    Token token;
    BlockKind kind = BlockKind::end;
    if (readToken(reader->file, &token) && !std::ferror(reader->file)) {
        reader->sawToken = true;
        kind = readMarkedBlock(reader, token.text, block);
    }
    if (std::ferror(reader->file))
        return BlockKind::unreadable;
    if (kind != BlockKind::badKeyword)
        return kind;
    if (std::feof(reader->file))
        return BlockKind::end;
    std::puts("Invalid keyword in the configuration file!");
    return BlockKind::badKeyword;
}

static int failOpen(const char* fileName) {
    std::printf("Unable to open the specified configuration file \"%s\"!!\n", fileName);
    return Result::noFile;
}

// The result code after the last block.
static int importStatus(const ConfigReader& reader, BlockKind last, const char* fileName) {
    if (last == BlockKind::unreadable)
        return failOpen(fileName);
    if (last == BlockKind::badKeyword)
        return Result::badKeyword;
    return reader.sawToken ? Result::done : Result::emptyFile;
}

// False if there is no block to display.
static bool displayBlock(const ConfigBlock& block, BlockKind kind) {
    if (kind == BlockKind::ctrl)
        DisplayControllerConfig(block.ctrl);
    else if (kind == BlockKind::phyDrv)
        DisplayPhyDrvConfig(block.phyDrv);
    else if (kind == BlockKind::logDrv)
        DisplayLogDrvConfig(block.logDrv);
    else
        return false;
    return true;
}

int DisplayImportFile(const char* fileName) {
    ConfigReader reader = {openConfigFile(fileName), false};
    if (reader.file == nullptr)
        return failOpen(fileName);
    ConfigBlock block;
    BlockKind kind = nextBlock(&reader, &block);
    while (displayBlock(block, kind))
        kind = nextBlock(&reader, &block);
    std::fclose(reader.file);
    return importStatus(reader, kind, fileName);
}

namespace {
// The selected blocks of a kind: all, or those whose set index is listed.
struct Selection {
    bool all;
    int count;
    const std::uint32_t* list;
};
} // namespace

static bool isSelected(const Selection& selection, int setIndex) {
    return selection.all ||
           SearchItemIntList(selection.list, selection.count, static_cast<std::uint32_t>(setIndex));
}

// Adds the record if it is selected; false when the array is full.
template <typename Record, int capacity>
static bool collect(const Record& record, const Selection& selection, Record (&records)[capacity],
                    int* count) {
    if (!isSelected(selection, record.setIndex))
        return true;
    if (*count == capacity)
        return false;
    records[(*count)++] = record;
    return true;
}

static int readSelected(ConfigReader* reader, const char* fileName, const Selection& ctrls,
                        const Selection& phyDrvs, const Selection& logDrvs, ImportSet* set) {
    ConfigBlock block;
    for (;;) {
        const BlockKind kind = nextBlock(reader, &block);
        bool fits = true;
        if (kind == BlockKind::ctrl)
            fits = collect(block.ctrl, ctrls, set->ctrl, &set->ctrlCount);
        else if (kind == BlockKind::phyDrv)
            fits = collect(block.phyDrv, phyDrvs, set->phyDrv, &set->phyDrvCount);
        else if (kind == BlockKind::logDrv)
            fits = collect(block.logDrv, logDrvs, set->logDrv, &set->logDrvCount);
        else
            return importStatus(*reader, kind, fileName);
        if (!fits)
            return fail(Result::tooManyDrives,
                        "The configuration file holds more settings than can be imported at once!");
    }
}

int SetDataFromConfigFile(const char* fileName, bool all, bool clear, int ctrlCount,
                          const std::uint32_t* ctrlList, int pdCount, const std::uint32_t* pdList,
                          int ldCount, const std::uint32_t* ldList) {
    static ImportSet set; // too large for the stack
    set.ctrlCount = set.phyDrvCount = set.logDrvCount = 0;
    ConfigReader reader = {openConfigFile(fileName), false};
    if (reader.file == nullptr)
        return failOpen(fileName);
    const int result = readSelected(&reader, fileName, {all, ctrlCount, ctrlList}, {all, pdCount, pdList},
                                    {all, ldCount, ldList}, &set);
    std::fclose(reader.file);
    if (result != Result::done)
        return result;
    const int lock = lockChanges(); // after reading the file, since a pipe may block
    const int applied = applyRecords(set, clear);
    unlockChanges(lock);
    return applied;
}

template <int capacity>
static void sortList(IdList<capacity>* list) {
    MergeSortIntegerList(reinterpret_cast<int*>(list->id), 0, list->count - 1);
}

int ImportFile(int wordCount, char** words) {
    IdList<4> ctrls = {};
    IdList<16> phyDrvs = {};
    IdList<128> logDrvs = {};
    const char* name = "";
    bool selected = false, displayOnly = false, clear = false, everything = false;
    Option options[] = {
        listOption("-k", &ctrls),      driveListOption("-p", &phyDrvs), listOption("-l", &logDrvs),
        textOption("-f", &name),       flagOption("-i", &displayOnly),  flagOption("-c", &clear),
        flagOption("-a", &everything), // the default; has no effect
    };
    for (int list = 0; list < 3; ++list)
        options[list].present = &selected; // with any list, only the listed blocks are applied
    if (const int result = readOptions(wordCount, words, 1, options, "Invalid parameters defined"))
        return result;

    // The result of a display does not depend on the contents of the file.
    if (displayOnly)
        return DisplayImportFile(name) == Result::noFile ? Result::noFile : Result::done;
    sortList(&ctrls);
    sortList(&phyDrvs);
    sortList(&logDrvs);
    return SetDataFromConfigFile(name, !selected, clear, ctrls.count, ctrls.id, phyDrvs.count, phyDrvs.id,
                                 logDrvs.count, logDrvs.id);
}
