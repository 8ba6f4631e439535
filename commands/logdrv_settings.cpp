// logdrv -a mod: changes a logical drive's settings.
#include <cstdio>

#include "adapter/logdrv.h"
#include "adapter/reply.h"
#include "commands/logdrv.h"
#include "commands/options.h"
#include "commands/settings_text.h"
#include "util/utils.h"

// Replaces the policy bits with those of the first policy word in the item and keeps the other bits.
static ItemResult changeWritePolicy(const char* item, std::uint8_t* cacheFlags) {
    static const struct {
        const char* word;
        int bits;
    } policies[] = {{"writethru", 0}, {"writeback", kWriteBack}, {"bypass", kBypass}, {"auto", kAutoMode}};
    for (const auto& policy : policies) {
        if (!itemContains(item, policy.word))
            continue;
        *cacheFlags = static_cast<std::uint8_t>((*cacheFlags & ~kWritePolicyMask) | policy.bits);
        return ItemResult::ok;
    }
    return ItemResult::invalid;
}

// A threshold above 8 aborts the command. There is no lower bound.
static ItemResult changeLookahead(const char* value, std::uint16_t* lookahead) {
    if (value == nullptr)
        return ItemResult::invalid;
    const int threshold = atoiText(value);
    if (threshold > 8)
        return abortItems("Invalid parameters defined");
    *lookahead = static_cast<std::uint16_t>(threshold);
    return ItemResult::ok;
}

static ItemResult changeName(const char* value, LogDrvSettings* settings) {
    if (value == nullptr)
        return ItemResult::invalid;
    parseName(value, settings->name, sizeof settings->name);
    return ItemResult::ok;
}

// Unknown items are ignored.
static ItemResult changeSetting(LogDrvSettings* settings, const char* item) {
    if (itemContains(item, "writepolicy"))
        return changeWritePolicy(item, &settings->cacheFlags);
    if (itemContains(item, "lookahead"))
        return changeLookahead(itemValue(item), &settings->lookahead);
    if (itemContains(item, "consolidation"))
        return parseSwitch(item, &settings->consolidation);
    if (itemContains(item, "name"))
        return changeName(itemValue(item), settings);
    return ItemResult::ok;
}

int SetLogDrvSettings(int wordCount, char** words) {
    if (wordCount != (CheckIsIncludeCharacter(wordCount, words, "-i") ? 9 : 7))
        return fail(Result::badCount, "Invalid number of parameters for \"logdrv -a mod\" defined");
    std::uint32_t controller = 0, logDrv = 0;
    const Option options[] = {
        numberOption("-l", "logical drive ID", &logDrv, Result::badId),
        numberOption("-i", "controller ID", &controller, Result::badId),
        ignoredOption("-s"),
    };
    int end = 0;
    if (const int result = readOptions(wordCount, words, 3, options, "Invalid parameters defined", &end))
        return result;

    const LogDrvQuery query = {logDrv, 1};
    Reply<LogDrvSettings, 1> reply = {};
    if (q5_getLogDrvSettings(hbaAddress(controller), 0, &query, &reply, sizeof reply) != 0) {
        std::printf("The logical drive with ID %d in controller #%d is not existed!\n",
                    static_cast<int>(logDrv), static_cast<int>(controller));
        return Result::notFound;
    }
    // Compatibility: the settings text is always the last word, wherever "-s" is.
    if (const int result =
            applyItems(wordAt(words, end - 1), &reply.record[0], changeSetting, "Incorrect parameters!"))
        return result;
    const LogDrvQuery target = {logDrv, 1};
    q5_setLogDrvSettings(hbaAddress(controller), 0, &target, &reply, sizeof reply);
    return Result::done;
}
