// The bga command: the background activity of one logical drive and how far it has come.
#include "commands/bga.h"

#include "commands/activity.h"
#include "util/utils.h"
#include "util/words.h"

// The walk is odd and scripts know it: one word is stepped over before every "-l", so that "-l" comes
// first and "-i" after it.
static int readWords(int wordCount, char** words, LogDrvArgs* read) {
    int index = wordCount > 1 && strCmpNoCase(words[1], "-a") == 0 ? 2 : 0;
    while (index < wordCount) {
        if (strCmpNoCase(wordAt(words, index), "-i") == 0) {
            if (!TranslateStr2Int("controller ID", wordAt(words, index + 1), &read->controller))
                return Result::badId;
            index += 2;
            continue;
        }
        if (strCmpNoCase(wordAt(words, index + 1), "-l") != 0)
            return fail(Result::badValue, "Invalid parameters defined");
        if (!TranslateStr2Int("logical drive ID", wordAt(words, index + 2), &read->logDrv))
            return Result::badId;
        index += 3;
    }
    return Result::done;
}

int ListBGAInfo(int wordCount, char** words) {
    LogDrvArgs read;
    const bool alone = wordCount <= 1 || (wordCount == 3 && strCmpNoCase(words[1], "-a") == 0);
    if (!alone)
        if (const int result = readWords(wordCount, words, &read))
            return result;
    LogDrvInfo drive;
    if (!lookupLogDrv(read, &drive, "No array with ID %d in controller #%d is existed\n"))
        return Result::notFound;
    printActivity(read.controller, drive);
    return Result::done;
}
