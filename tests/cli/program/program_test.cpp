// The program from startup to exit status: opening the adapters, one command in the arguments, the
// prompt, and the event file. Each run is a separate process, because the word slots are static.
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>

#include "adapter/controller.h"
#include "commands/event_buffer.h"
#include "commands/event_path.h"
#include "tests/mock_adapter.h"
#include "tests/temp_dir.h"

namespace fs = std::filesystem;

int runProgram(int argc, char** argv); // main() under another name

static fs::path directory, eventPath;

void GetEventBufferFilePath(char* path) {
    std::snprintf(path, kEventPathSize, "%s", eventPath.c_str());
}

namespace {
struct ProgramRun {
    int status;
    std::string output;
};

class Program : public testing::Test {
protected:
    void SetUp() override {
        directory = temporary.path();
        eventPath = directory / "CLIEvent.dat";
    }

private:
    const TempDir temporary;
};
using OneCommand = Program;
using Prompt = Program;
} // namespace

static void writeFile(const fs::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

static std::string readFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

static constexpr int kUnexpectedCalls = 99; // not a result code

// In the child process: runs the program with the planned calls, writes its output to a file and exits.
[[noreturn]] static void runInChild(std::vector<std::string> words, const std::function<void()>& plan) {
    words.insert(words.begin(), "cli");
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);

    plan();
    int status = 0;
    if (std::freopen((directory / "input").c_str(), "r", stdin) != nullptr) {
        startCapture();
        status = runProgram(static_cast<int>(words.size()), argv.data());
        writeFile(directory / "output", endCapture());
    }
    expectAllCalled();
    std::fflush(stdout);
    _exit(testing::Test::HasFailure() ? kUnexpectedCalls : status);
}

static ProgramRun runOn(const std::vector<std::string>& words, const std::string& input,
                        const std::function<void()>& plan) {
    writeFile(directory / "input", input);
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0)
        runInChild(words, plan);
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_NE(WEXITSTATUS(status), kUnexpectedCalls) << "the calls differed from the plan";
    return {WEXITSTATUS(status), readFile(directory / "output")};
}

static Bytes initRecord() {
    Bytes record(264);
    record[16] = 0x01;
    record[18] = record[19] = 0xBA;
    record[20] = 1;
    record[24] = 60;
    return record;
}

static void planOpening(std::uint32_t controllers = 2, int countResult = 0) {
    expectCall("q5_initialize", initRecord());
    expectCall("q5_discover", bytesOf(1));
    expectCall("q5_getNumberOfHBA", {}, bytesOf(controllers), countResult);
}

// A run whose command needs no adapter.
static void planSession() {
    planOpening();
    expectCall("q5_finalize", {});
}

static void expectRun(const ProgramRun& run, int status, const std::string& output) {
    EXPECT_EQ(run.status, status);
    EXPECT_EQ(run.output, output);
}

static void expectCommand(const std::vector<std::string>& words, int status, const std::string& output) {
    expectRun(runOn(words, "help exit\n", planSession), status, output);
}

static void expectPrompt(const std::string& input, int status, const std::string& output) {
    expectRun(runOn({}, input, planSession), status, output);
}

static const char exitHelp[] = "Exit the CLI\nUsage: exit\n\nExit the CLI\nUsage: exit\n";

TEST_F(Program, FailsWhenTheAdaptersCannotBeOpened) {
    for (const char* word : {"help", ""})
        expectRun(runOn({word}, "", [] { expectCall("q5_initialize", initRecord(), {}, 3); }), 10,
                  "Q5API is failed to initialized!\n");
    EXPECT_FALSE(fs::exists(eventPath));
}

TEST_F(Program, FailsWhenTheAdaptersCannotBeDiscovered) {
    writeFile(eventPath, "unchanged");
    expectRun(runOn({}, "exit\n",
                    [] {
                        expectCall("q5_initialize", initRecord());
                        expectCall("q5_discover", bytesOf(1), {}, -1);
                    }),
              10, "Q5API is failed to initialized!\n");
    EXPECT_EQ(readFile(eventPath), "unchanged");
}

TEST_F(Program, FailsWithoutAController) {
    writeFile(eventPath, "unchanged");
    expectRun(runOn({"help"}, "", [] { planOpening(0); }), 5, "No controller is found in the system!\n");
    EXPECT_EQ(readFile(eventPath), "unchanged");
}

TEST_F(Program, ChecksTheNumberOfControllersAndIgnoresTheResult) {
    const auto plan = [] {
        planOpening(1, 7);
        expectCall("q5_finalize", {}, {}, 7);
    };
    expectRun(runOn({"help", "exit"}, "", plan), 2, exitHelp);
}

TEST_F(OneCommand, ExitsWithTheResultOfTheCommand) {
    expectCommand({"help", "exit"}, 2, exitHelp);
    expectCommand({"ctrl", "-x", "y"}, 9, "Invalid command for \"ctrl\"\n");
    expectCommand({"event", "-i", "x"}, 6, "Invalid controller ID 'x' specified\n");
}

TEST_F(OneCommand, CallsTheAdapterBetweenInitializeAndFinalize) {
    const auto plan = [] {
        planOpening();
        const ControllerQuery query = {1, 1, 0, {}};
        ControllerSettings settings = {};
        expectCall("q5_getControllerSettings", queryFor(1, query, 88));
        settings.syncRate = 5;
        expectCall("q5_setControllerSettings",
                   bytesOf(hbaAddress(1), std::uint32_t{0}, query, settings, std::uint32_t{88}));
        expectCall("q5_finalize", {});
    };
    expectRun(runOn(splitWords("ctrl -a mod -i 1 -s syncrate=5"), "", plan), 0, "");
}

TEST_F(OneCommand, RejectsTheExitWord) {
    expectCommand({"exit"}, 9, "Invalid command!\n");
}

TEST_F(OneCommand, NeitherSplitsNorUnquotesItsArguments) {
    expectCommand({"help exit"}, 9, "Invalid command!\n");
    expectCommand({"\"help\"", "exit"}, 9, "Invalid command!\n");
    expectCommand({""}, 9, "Invalid command!\n");
}

TEST_F(OneCommand, TruncatesALongArgumentTo256Characters) {
    expectCommand({"event", "-i", std::string(256, 'x')}, 6,
                  "Invalid controller ID '" + std::string(256, 'x') + "' specified\n");
    expectCommand({"event", "-i", std::string(5000, 'x')}, 6,
                  "Invalid controller ID '" + std::string(256, 'x') + "' specified\n");
}

TEST_F(OneCommand, AcceptsAtMostSixteenWords) {
    std::vector<std::string> words = {"help", "exit"};
    words.resize(16, "more");
    expectCommand(words, 2, exitHelp);
    words.push_back("seventeenth");
    expectCommand(words, 2, "Too many words, at most 16 are taken!\n");
    words.resize(300, "more");
    expectCommand(words, 2, "Too many words, at most 16 are taken!\n");
}

TEST_F(Prompt, ExitsAtTheExitWordWithTheLastResult) {
    expectPrompt("exit\n", 0, "cli>");
    expectPrompt("  ExIt now \n", 0, "cli>");
    expectPrompt("nosuch\nexit\n", 9, "cli>Invalid command!\ncli>");
    expectPrompt("nosuch\nhelp exit\nEXIT\nnever read\n", 2,
                 std::string("cli>Invalid command!\ncli>") + exitHelp + "cli>");
}

TEST_F(Prompt, ExitsAtTheEndOfInputAsAtTheExitWord) {
    expectPrompt("", 0, "cli>");
    expectPrompt("nosuch\n", 9, "cli>Invalid command!\ncli>");
    EXPECT_TRUE(fs::exists(eventPath));
}

TEST_F(Prompt, RunsALastLineWithoutANewline) {
    expectPrompt("help exit", 2, std::string("cli>") + exitHelp + "cli>");
    expectPrompt("exit", 0, "cli>");
}

TEST_F(Prompt, RejectsABlankFirstLine) {
    expectPrompt("\n", 9, "cli>Invalid command!\ncli>");
    expectPrompt("   \nexit\n", 9, "cli>Invalid command!\ncli>");
}

TEST_F(Prompt, RepeatsTheCommandForABlankLine) {
    const std::string tooFew = "Invalid numbers of parameter in command \"ctrl -a mod\" \n";
    expectPrompt("ctrl mod\n\nexit\n", 2, "cli>" + tooFew + "cli>" + tooFew + "cli>");
}

TEST_F(Prompt, ReadsStaleSlotsAfterAShorterLine) {
    expectPrompt("help exit 77x\nevent -i\nevent -v -i\nexit\n", 6,
                 std::string("cli>") + exitHelp + "cli>Invalid controller ID '77x' specified\n" +
                     "cli>Invalid controller ID '' specified\ncli>");
}

TEST_F(Prompt, RejectsALineOfTooManyWordsAndKeepsTheSlots) {
    const std::string failure = "Invalid command for \"ctrl\"\n";
    expectPrompt("ctrl nosuch\n1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17\nexit\n", 2,
                 "cli>" + failure + "cli>Too many words, at most 16 are taken!\ncli>");
    expectPrompt("ctrl nosuch\n1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17\n\n", 9,
                 "cli>" + failure + "cli>Too many words, at most 16 are taken!\ncli>" + failure + "cli>");
    expectPrompt("ctrl nosuch\nexit 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17\n\n", 9,
                 "cli>" + failure + "cli>");
}

// The character after the first 4096 is lost.
TEST_F(Prompt, SplitsALineOfMoreThan4096Characters) {
    const std::string line = "help" + std::string(4088, ' ') + "exit";
    const std::string twice = std::string("cli>") + exitHelp + "cli>" + exitHelp + "cli>";
    expectPrompt(line + "#help exit\n", 2, twice);
    expectPrompt(line + "\nhelp exit\n", 2, twice);
}

TEST_F(Prompt, SplitsALongWordIntoPieces) {
    expectPrompt(std::string(4096, 'x') + "\nexit\n", 9, "cli>Invalid command!\ncli>");
    expectPrompt("help " + std::string(4091, 'x') + "\nexit\n", 2,
                 "cli>Too many words, at most 16 are taken!\ncli>");
}

TEST_F(Prompt, EndsALineAtANulByte) {
    expectPrompt(std::string("help exit\0nosuch\n", 17), 9,
                 std::string("cli>") + exitHelp + "cli>Invalid command!\ncli>");
}

TEST_F(Prompt, AcceptsTheByte0xFF) {
    expectPrompt("\xff\xff\nexit\n", 9, "cli>Invalid command!\ncli>");
}

static std::string imageOf(std::uint32_t position, std::uint32_t count) {
    std::string image(20408, '\0');
    image[0] = static_cast<char>(position);
    image[4] = static_cast<char>(count);
    return image;
}

TEST_F(Program, CreatesAMissingEventFile) {
    expectCommand({"help", "exit"}, 2, exitHelp);
    EXPECT_EQ(readFile(eventPath), imageOf(0, 0));
    fs::remove(eventPath);
    expectPrompt("exit\n", 0, "cli>");
    EXPECT_EQ(readFile(eventPath), imageOf(0, 0));
}

TEST_F(Program, ShowsTheEventsOfEarlierRunsOnce) {
    std::string image = imageOf(2, 2);
    image[8 + 408 + 12] = 0x21;
    image[8 + 2 * 408 + 12] = 0x22;
    writeFile(eventPath, image);
    const auto plan = [] {
        planOpening();
        expectCall("q5_getHBAEvents", queryFor(0, EventQuery{-1, 1}, 20872), bytesOf(EventQuery{-1, 0}));
        expectCall("q5_finalize", {});
    };
    expectRun(runOn({"event"}, "", plan), 0, "Event_Index  Event_ID\n          0  0x22\n");
    image[0] = image[4] = 1;
    EXPECT_EQ(readFile(eventPath), image);
    expectRun(runOn({}, "event\n", plan), 0, "cli>Event_Index  Event_ID\n          0  0x21\ncli>");
    expectRun(runOn({"event"}, "", plan), 0, "No event!\n");
}

TEST_F(Program, IgnoresAnEventFileThatCannotBeWritten) {
    eventPath = directory / "missing" / "CLIEvent.dat";
    expectCommand({"help", "exit"}, 2, exitHelp);
    expectPrompt("exit\n", 0, "cli>");
}
