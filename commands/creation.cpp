// Creates logical drives from lists of drives and extents and a creation text.
#include "commands/creation.h"

#include <cstdio>
#include <cstdlib>

#include "adapter/logdrv.h"
#include "commands/options.h"
#include "commands/settings_text.h"
#include "commands/vocabulary.h"
#include "util/utils.h"

namespace {
// A key of the creation text. The first row whose key occurs in an item wins.
struct CreationKey {
    const char* key;
    ItemResult (*store)(CreateArrayRequest* request, const char* value);
};
} // namespace

static ItemResult okIf(bool valid) {
    return valid ? ItemResult::ok : ItemResult::invalid;
}

static ItemResult storeName(CreateArrayRequest* request, const char* value) {
    parseName(value, request->name, sizeof request->name);
    return ItemResult::ok;
}

static ItemResult storeRaid(CreateArrayRequest* request, const char* value) {
    const int code = TranslateRaidLevel(value);
    request->raidLevel = static_cast<std::uint16_t>(code);
    return code == kUnknownRaid ? ItemResult::abort : ItemResult::ok;
}

// 64 bits, unlike the other numbers, for imported arrays of 2 TB and more.
static ItemResult storeCapacity(CreateArrayRequest* request, const char* value) {
    request->capacity = static_cast<std::uint64_t>(std::strtoll(value, nullptr, 10));
    return ItemResult::ok;
}

static ItemResult storeSectorSize(CreateArrayRequest* request, const char* value) {
    const int size = atoiText(value);
    request->sectorSize = static_cast<std::uint32_t>(size);
    return okIf(size == 512 || size == 1024 || size == 2048 || size == 4096);
}

static ItemResult storeStripe(CreateArrayRequest* request, const char* value) {
    const int size = atoiText(value);
    request->stripeSize = static_cast<std::uint32_t>(size);
    if (size == 64 || size == 32 || size == 128)
        return ItemResult::ok;
    std::puts("Incorrect stripe size!");
    return ItemResult::invalid;
}

static ItemResult storeRounding(CreateArrayRequest* request, const char* value) {
    const int code = TranslateRoundingScheme(value);
    request->rounding = static_cast<std::uint8_t>(code);
    return code == 255 ? ItemResult::abort : ItemResult::ok;
}

static ItemResult storeInit(CreateArrayRequest* request, const char* value) {
    const int code = TranslateInitialization(value);
    request->initialization = static_cast<std::uint8_t>(code);
    return code == -1 ? ItemResult::abort : ItemResult::ok;
}

static ItemResult storeSubArrayCount(CreateArrayRequest* request, const char* value) {
    const int count = atoiText(value);
    request->subArrayCount = static_cast<std::uint8_t>(count);
    return okIf(count == 2);
}

static ItemResult storeParityCount(CreateArrayRequest* request, const char* value) {
    const int count = atoiText(value);
    request->parityCount = static_cast<std::uint8_t>(count);
    return okIf(count == 2 || count == 3);
}

static ItemResult storeSymmetric(CreateArrayRequest* request, const char* value) {
    const int symmetric = atoiText(value);
    request->symmetric = static_cast<std::uint8_t>(symmetric);
    return okIf(symmetric == 0 || symmetric == 1);
}

static ItemResult storeShift(CreateArrayRequest* request, const char* value) {
    request->shift = static_cast<std::uint16_t>(atoiText(value));
    return ItemResult::ok;
}

static const CreationKey creationKeys[] = {
    {"name", storeName},
    {"raid", storeRaid},
    {"capacity", storeCapacity},
    {"sectorsize", storeSectorSize},
    {"stripe", storeStripe},
    {"rounding", storeRounding},
    {"init", storeInit},
    {"subarraycnt", storeSubArrayCount},
    {"paritycnt", storeParityCount},
    {"symmetric", storeSymmetric},
    {"shift", storeShift},
};

// Applies one item. Unknown keys are ignored.
static ItemResult storeItem(CreateArrayRequest* request, const char* item) {
    for (const CreationKey& row : creationKeys) {
        if (!itemContains(item, row.key))
            continue;
        const char* value = itemValue(item);
        return value != nullptr ? row.store(request, value) : ItemResult::invalid;
    }
    return ItemResult::ok;
}

static bool isStripeSize(std::uint32_t size) {
    return size >= 32 && size <= 1024 && (size & (size - 1)) == 0;
}

// Checks that the request has everything its RAID level requires.
static int checkRequest(const CreateArrayRequest& request, int extentCount) {
    const bool jbod = request.raidLevel == kJbod;
    if (request.name[0] == '\0' && !jbod)
        return fail(Result::badCount, "Error: Logical drive name is not defined!");
    if (request.raidLevel == kUnknownRaid)
        return fail(Result::badCount, "Error: Raid level is not defined!");
    if (extentCount == 0 && request.capacity == 0 && !jbod)
        return fail(Result::badCount, "Error: extent ID or the logical drive size is not defined!");
    // The creation text allows only some of these sizes; this checks the adapter's full range again.
    if (!isStripeSize(request.stripeSize)) {
        std::printf("Invalid stripe size %d is defined!\n", static_cast<int>(request.stripeSize));
        return Result::badValue;
    }
    if (request.capacity == 0 && extentCount != request.memberCount && !jbod)
        return fail(Result::badValue,
                    "Error: number of extents and number of physical drives are not matched!");
    return Result::done;
}

// If the extent list is shorter than the drive list, the remaining members use extent 0.
static void storeMembers(CreateArrayRequest* request, const IdList<>& drives, const IdList<>& extents) {
    for (int i = 0; i < drives.count; ++i)
        request->member[i] = {extents.id[i], drives.id[i]};
    request->allocation = extents.count > 0 ? kAllocateGiven : kAllocateByCapacity;
    if (request->raidLevel == kJbod) {
        request->capacity = 0;
        request->allocation = kAllocateGiven;
    }
}

static CreateArrayRequest defaultRequest() {
    CreateArrayRequest request = {};
    request.stripeSize = 64;
    request.constant4 = 1;
    request.raidLevel = kUnknownRaid;
    request.constant91 = 1;
    request.parityCount = 2;
    request.subArrayCount = 2;
    request.sectorSize = 512;
    return request;
}

int PhraseCreateLogDrvArg(int wordCount, char** words, HbaAddress* address, std::uint32_t* secondArgument,
                          CreateArrayRequest* request) {
    if (wordCount < (CheckIsIncludeCharacter(wordCount, words, "-i") ? 9 : 7))
        return fail(Result::badCount, "Invalid number of parameters defined for \"logdrv -a add\" \"add\"!");
    std::uint32_t controller = 0;
    IdList<> drives = {}, extents = {};
    const Option options[] = {
        driveListOption("-p", &drives),
        numberOption("-i", "controller ID", &controller, Result::badId),
        listOption("-e", &extents),
        ignoredOption("-z"),
    };
    int end = 0;
    if (const int result = readOptions(wordCount, words, 3, options, "Invalid parameters defined", &end))
        return result;
    if (drives.count == 0)
        return fail(Result::badCount, "No physical drive is defined!");

    *request = defaultRequest();
    request->memberCount = static_cast<std::uint8_t>(drives.count);
    // Compatibility: the creation text is always the last word, wherever "-z" is.
    if (const int result = applyItems(wordAt(words, end - 1), request, storeItem, "Incorrect parameters!"))
        return result;
    if (const int result = checkRequest(*request, extents.count))
        return result;
    storeMembers(request, drives, extents);
    *secondArgument = 0;
    *address = hbaAddress(controller);
    return Result::done;
}

static int createArray(int wordCount, char** words, ArrayOrigin origin) {
    HbaAddress address = {};
    std::uint32_t secondArgument = 0;
    CreateArrayRequest request = {};
    if (PhraseCreateLogDrvArg(wordCount, words, &address, &secondArgument, &request) != Result::done)
        return Result::refused;
    request.origin = origin;
    if (q5_addHBAArray(address, secondArgument, &request) != 0)
        return fail(Result::refused, "Failed to create an array specified");
    return Result::done;
}

int CreateLogDrv(int wordCount, char** words) {
    return createArray(wordCount, words, kOriginTyped);
}

int CreateLogDrv2(int wordCount, char** words) {
    return createArray(wordCount, words, kOriginImport);
}

int ActivateArray(int wordCount, char** words) {
    if (wordCount != 3)
        return fail(Result::badCount, "Invalid number of parameters defined");
    std::uint32_t array = 0, controller = 0;
    if (!TranslateStr2Int("array ID", words[2], &array) ||
        !TranslateStr2Int("controller ID", words[2], &controller))
        return Result::badId;
    q5_activateLogDrv(hbaAddress(controller), 0, static_cast<std::uint16_t>(array));
    return Result::done;
}
