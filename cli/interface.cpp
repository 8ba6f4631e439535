// Splitting lines into words and finding the handler of a command word.
#include "cli/interface.h"

#include <cstring>

#include "cli/cmddef.h"
#include "cli/find_word.h"
#include "cli/routes.h"
#include "util/result.h"
#include "util/words.h"

const Command cmdTable[19] = {
    {"?", do_cmd_help},        {"battery", do_cmd_battery}, {"bga", do_cmd_bga},
    {"buzz", do_cmd_buzz},     {"ctrl", do_cmd_controller}, {"enclosure", do_cmd_enclosure},
    {"event", do_cmd_event},   {"export", do_cmd_export},   {"extent", do_cmd_extent},
    {"help", do_cmd_help},     {"import", do_cmd_import},   {"init", do_cmd_init},
    {"logdrv", do_cmd_logdrv}, {"migrate", do_cmd_migrate}, {"mp", do_cmd_mediapatrol},
    {"phydrv", do_cmd_phydrv}, {"rb", do_cmd_rebuild},      {"rc", do_cmd_redundancyCheck},
    {"sync", do_cmd_sync},
};
const int numCmd = 19;

// Copies the word at *line and moves *line past it. Returns false at the end of the line. A null
// word is only stepped over.
static bool nextToken(const char** line, char* word) {
    const char* next = *line;
    while (*next == ' ')
        ++next;
    if (*next == '\0')
        return false;
    const char end = *next == '"' ? '"' : ' ';
    if (end == '"')
        ++next;
    std::size_t length = 0;
    while (next[length] != '\0' && next[length] != end && length < kWordSize - 1)
        ++length;
    if (word != nullptr) {
        std::memcpy(word, next, length);
        word[length] = '\0';
    }
    next += length;
    if (length < kWordSize - 1 && *next == end)
        ++next;
    *line = next;
    return true;
}

int processCmdLine(int* wordCount, char* line, char** words) {
    *wordCount = 0;
    for (const char* rest = line; nextToken(&rest, nullptr);)
        ++*wordCount;
    if (*wordCount > kMaxWords)
        return 1;
    const char* rest = line;
    for (int i = 0; i < *wordCount; ++i)
        nextToken(&rest, words[i]);
    return strCmpNoCase(words[0], "EXIT") != 0;
}

int cli_parse_command(int wordCount, char** words) {
    const Command* command = findWord<Command>(cmdTable, words[0]);
    if (command == nullptr)
        return fail(Result::unknownCommand, "Invalid command!");
    return command->handler(wordCount, words);
}
