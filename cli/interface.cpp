// Splits lines into words and finds the handler of a command word.
#include "cli/interface.h"

#include <cstring>

#include "cli/find_word.h"
#include "util/result.h"
#include "util/words.h"

// Copies the word at *line and moves *line past it. Returns false at the end of the line. A null
// word: the text is skipped, not copied.
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

static int lineKind(const char* firstWord, int defaultKind) {
    return strCmpNoCase(firstWord, "EXIT") == 0 ? kExitLine : defaultKind;
}

// The first word of a line whose words do not fit the slots.
static int longLineKind(const char* line) {
    char first[kWordSize];
    nextToken(&line, first);
    return lineKind(first, kLongLine);
}

int processCmdLine(int* wordCount, char* line, char** words) {
    const char* rest = line;
    for (*wordCount = 0; *wordCount < kMaxWords && nextToken(&rest, nullptr);)
        ++*wordCount;
    if (nextToken(&rest, nullptr))
        return longLineKind(line);
    rest = line;
    for (int i = 0; i < *wordCount; ++i)
        nextToken(&rest, words[i]);
    return lineKind(words[0], kCommandLine);
}

int cli_parse_command(int wordCount, char** words) {
    const Command* command = findWord<Command>(cmdTable, words[0]);
    if (command == nullptr)
        return fail(Result::unknownCommand, "Invalid command!");
    return command->handler(wordCount, words);
}
