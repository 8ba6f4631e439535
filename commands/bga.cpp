// The bga command: the background activity of one logical drive and its progress.
#include "commands/bga.h"

#include "commands/activity.h"
#include "util/utils.h"
#include "util/words.h"

// Compatibility: one word is skipped before every "-l", so "-l" must precede "-i".
static int parseBgaArgs(int wordCount, char** words, LogDrvArgs* args) {
    int index = wordCount > 1 && strCmpNoCase(words[1], "-a") == 0 ? 2 : 0;
    while (index < wordCount) {
        if (strCmpNoCase(wordAt(words, index), "-i") == 0) {
            if (!TranslateStr2Int("controller ID", wordAt(words, index + 1), &args->controller))
                return Result::badId;
            index += 2;
            continue;
        }
        if (strCmpNoCase(wordAt(words, index + 1), "-l") != 0)
            return fail(Result::badValue, "Invalid parameters defined");
        if (!TranslateStr2Int("logical drive ID", wordAt(words, index + 2), &args->logDrv))
            return Result::badId;
        index += 3;
    }
    return Result::done;
}

int ListBGAInfo(int wordCount, char** words) {
    LogDrvArgs args;
    const bool hasNoOptions = wordCount <= 1 || (wordCount == 3 && strCmpNoCase(words[1], "-a") == 0);
    if (!hasNoOptions)
        if (const int result = parseBgaArgs(wordCount, words, &args))
            return result;
    LogDrvInfo drive;
    if (!lookupLogDrv(args, &drive, "No array with ID %d in controller #%d is existed\n"))
        return Result::notFound;
    printActivity(args.controller, drive);
    return Result::done;
}
