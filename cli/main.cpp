// The program: opens the adapters and runs the command in its arguments, or the commands typed at the
// prompt. The last result code is the exit status.
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

#include "adapter/session.h"
#include "cli/interface.h"
#include "commands/event_path.h"
#include "commands/event_store.h"
#include "util/result.h"
#include "util/words.h"

static constexpr std::size_t kMaxLine = 4096; // characters; the rest of a longer line is read as the next one

// The words of every command. Compatibility: slots are cleared only at startup, so that a shorter line
// leaves the later words of the line before it.
static char wordSlots[kMaxWords][kWordSize];

// Opens /dev/null for each closed standard stream. Otherwise the next file opened would get its number,
// and listings would be written to the adapter's device.
static void ensureStdioOpen() {
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream)
        if (fcntl(stream, F_GETFD) < 0 && open("/dev/null", O_RDWR) < 0)
            return;
}

static bool openAdapters() {
    ApiInitRecord record = {};
    record.signature = kApiSignature;
    record.mode = 1;
    record.time = 60;
    return q5_initialize(&record) == 0 && q5_discover(1) == 0;
}

static int failTooLong() {
    return fail(Result::badCount, "Too many words, at most 16 are taken!");
}

static int runArguments(int argc, char** argv, char** words) {
    if (argc - 1 > kMaxWords)
        return failTooLong();
    for (int i = 1; i < argc; ++i)
        std::snprintf(words[i - 1], kWordSize, "%s", argv[i]);
    return cli_parse_command(argc - 1, words);
}

// Reads up to a newline, a NUL byte or the end of input. False at the end of input.
// Compatibility: one character of an overlong line is dropped, and the next call reads the rest.
static bool readLine(char (&line)[kMaxLine + 1]) {
    std::size_t length = 0;
    int c = 0;
    while (length <= kMaxLine && (c = std::getchar()) != EOF && c != '\n' && c != '\0')
        line[length++] = static_cast<char>(c);
    line[length <= kMaxLine ? length : kMaxLine] = '\0';
    return length > 0 || c != EOF;
}

static int runPrompt(char** words) {
    char line[kMaxLine + 1];
    int wordCount = 0, result = Result::done;
    for (;;) {
        std::fputs("cli>", stdout);
        if (!readLine(line))
            return result;
        const int next = processCmdLine(&wordCount, line, words);
        if (next == kExitLine)
            return result;
        result = next == kLongLine ? failTooLong() : cli_parse_command(wordCount, words);
    }
}

int main(int argc, char** argv) {
    ensureStdioOpen();
    char* words[kMaxWords];
    for (int i = 0; i < kMaxWords; ++i)
        words[i] = wordSlots[i];

    char eventPath[kEventPathSize];
    GetEventBufferFilePath(eventPath);
    loadEventBuffer(eventPath);

    if (!openAdapters())
        return fail(Result::noAdapterApi, "Q5API is failed to initialized!");
    std::uint32_t controllerCount = 0;
    q5_getNumberOfHBA(&controllerCount);
    if (controllerCount == 0)
        return fail(Result::notFound, "No controller is found in the system!");

    const int result = argc > 1 ? runArguments(argc, argv, words) : runPrompt(words);
    q5_finalize();
    saveEventBuffer(eventPath);
    return result;
}
