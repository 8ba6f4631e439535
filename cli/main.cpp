// The program: opens the adapters and runs the command in its arguments, or the commands typed at the
// prompt. The last result code is the exit status.
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "adapter/session.h"
#include "cli/interface.h"
#include "commands/event_buffer.h"
#include "commands/event_path.h"
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

static int runWords(int wordCount, char** words) {
    if (wordCount > kMaxWords)
        return fail(Result::badCount, "Too many words, at most 16 are taken!");
    return cli_parse_command(wordCount, words);
}

static int runArguments(int argc, char** argv, char** words) {
    for (int i = 1; i < argc && i <= kMaxWords; ++i)
        std::snprintf(words[i - 1], kWordSize, "%s", argv[i]);
    return runWords(argc - 1, words);
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
        if (!readLine(line) || !processCmdLine(&wordCount, line, words))
            return result;
        result = runWords(wordCount, words);
    }
}

int main(int argc, char** argv) {
    ensureStdioOpen();
    char* words[kMaxWords];
    for (int i = 0; i < kMaxWords; ++i)
        words[i] = wordSlots[i];

    char eventPath[kEventPathSize];
    GetEventBufferFilePath(eventPath);
    if (!ReadEventBufferFromFile(eventPath, &g_EventBuffer))
        g_EventBuffer.position = g_EventBuffer.count = 0;

    if (!openAdapters())
        return fail(Result::noAdapterApi, "Q5API is failed to initialized!");
    std::uint32_t controllerCount = 0;
    q5_getNumberOfHBA(&controllerCount);
    if (controllerCount == 0)
        return fail(Result::notFound, "No controller is found in the system!");

    const int result = argc > 1 ? runArguments(argc, argv, words) : runPrompt(words);
    q5_finalize();
    WriteEventBufferToFile(eventPath, &g_EventBuffer);
    return result;
}
