// cli-shell: when it runs the line editor, with which options, and its exit status.
#include <gtest/gtest.h>

#include "tests/e2e/process.h"
#include "tests/temp_dir.h"

namespace fs = std::filesystem;

namespace {
// A private installation: cli-shell, a cli that echoes lines in brackets and exits with the status given
// to "exit", and a PATH of three programs, with or without a line editor that prints its arguments.
class CliShell : public testing::Test {
protected:
    void SetUp() override {
        for (const char* name : {"prefix", "prefix/sbin", "bin", "home"})
            fs::create_directory(directory.path() + "/" + name);
        fs::create_directories(fs::path(words()).parent_path());
        fs::copy_file(CLI_SHELL, directory.path() + "/prefix/sbin/cli-shell");
        directory.writeProgram("prefix/sbin/cli", R"(#!/bin/sh
[ $# -eq 0 ] || { printf '[%s]' "$@"; exit 6; }
while echo ready && printf 'cli>' && IFS= read -r line; do
    case $line in
    exit*) exit "${line#exit }" ;;
    die) kill -TERM $$ ;;
    esac
    printf '[%s]\n' "$line"
done
exit 7
)");
        for (const char* name : {"dirname", "realpath", "stty"})
            for (const char* place : {"/bin/", "/usr/bin/"})
                if (fs::exists(std::string(place) + name) && !fs::exists(directory.path() + "/bin/" + name))
                    fs::create_symlink(std::string(place) + name, directory.path() + "/bin/" + name);
    }

    std::string words() const {
        return fs::path(directory.path() + "/prefix/sbin/" WORDS_FROM_SBIN).lexically_normal();
    }

    void installEditor() const {
        directory.writeProgram("bin/rlwrap", "#!/bin/sh\n"
                                             "for word; do printf '{%s}' \"$word\"; done\n"
                                             "exec \"$word\"\n");
    }

    // A cli-rehearse that echoes lines in angle brackets.
    void installRehearsal() const {
        const fs::path program =
            fs::path(directory.path() + "/prefix/sbin/" REHEARSE_FROM_SBIN).lexically_normal();
        fs::create_directories(program.parent_path());
        directory.writeProgram(program.lexically_relative(directory.path()), R"(#!/bin/sh
[ $# -eq 0 ] || { printf '<%s>' "$@"; exit 8; }
while echo ready && printf 'cli>' && IFS= read -r line; do
    case $line in exit*) exit "${line#exit }" ;; esac
    printf '<%s>\n' "$line"
done
)");
    }

    Launch launch(const std::vector<std::string>& arguments, const std::string& terminal) const {
        Launch launch = {
            .words = {"/bin/sh", "-c", "stty cols 80 rows 24 2>/dev/null; exec \"$@\"", "sh",
                      directory.path() + "/prefix/sbin/cli-shell"},
            .variables = {"PATH=" + path, "TERM=" + terminal, "HOME=" + directory.path() + "/home"},
            .directory = directory.path()};
        launch.words.insert(launch.words.end(), arguments.begin(), arguments.end());
        return launch;
    }

    ProcessOutcome onTerminal(const std::vector<std::string>& typed,
                              const std::string& terminal = "vt100") const {
        return runOnTerminal(launch({}, terminal), "ready", typed);
    }

    TempDir directory;
    std::string path = directory.path() + "/bin";
};
} // namespace

static bool contains(const ProcessOutcome& outcome, const std::string& text) {
    return outcome.out.find(text) != std::string::npos;
}

TEST_F(CliShell, PassesHistoryAndWordListToTheEditor) {
    installEditor();
    directory.write(fs::path(words()).lexically_relative(directory.path()), "ctrl\n");
    const ProcessOutcome outcome = onTerminal({"exit 0\n"});
    EXPECT_TRUE(contains(outcome, "{--history-filename}{" + directory.path() + "/home/.cli_history}"))
        << outcome;
    const std::size_t breaks = outcome.out.find("{--break-chars}{\",}"), list = outcome.out.find("{--file}{");
    ASSERT_NE(list, std::string::npos) << outcome;
    EXPECT_LT(breaks, list); // the options that split the list must precede it
    EXPECT_TRUE(contains(outcome, "}{" + directory.path() + "/prefix/sbin/cli}")) << outcome;
}

TEST_F(CliShell, RunsTheEditorWithoutAWordList) {
    installEditor();
    const ProcessOutcome outcome = onTerminal({"exit 0\n"});
    EXPECT_TRUE(contains(outcome, "{--history-filename}")) << outcome;
    EXPECT_FALSE(contains(outcome, "{--file}")) << outcome;
}

TEST_F(CliShell, KeepsNoHistoryThatCannotBeWritten) {
    installEditor();
    Launch start = launch({}, "vt100");
    start.variables.back() = "HOME=/nonexistent";
    EXPECT_TRUE(contains(runOnTerminal(start, "ready", {"exit 0\n"}), "{--history-filename}{/dev/null}"));
}

// Without a home directory, history does not go to the root directory.
TEST_F(CliShell, KeepsNoHistoryWithoutAHomeDirectory) {
    installEditor();
    Launch start = launch({}, "vt100");
    start.variables.pop_back();
    EXPECT_TRUE(contains(runOnTerminal(start, "ready", {"exit 0\n"}), "{--history-filename}{/dev/null}"));
}

TEST_F(CliShell, ExitsWithTheStatusOfThePrompt) {
    installEditor();
    EXPECT_EQ(onTerminal({"exit 0\n"}).status, 0);
    EXPECT_EQ(onTerminal({"exit 12\n"}).status, 12);
    EXPECT_EQ(onTerminal({"\x04"}).status, 7);
    EXPECT_EQ(onTerminal({"die\n"}).status, 128 + 15);
}

TEST_F(CliShell, RunsThePlainPromptWithoutAnEditor) {
    const ProcessOutcome outcome = onTerminal({"ctrl\n", "exit 3\n"});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_TRUE(contains(outcome, "[ctrl]")) << outcome;
    EXPECT_EQ(onTerminal({"\x04"}).status, 7);
}

TEST_F(CliShell, RunsThePlainPromptOnDumbTerminals) {
    installEditor();
    const ProcessOutcome dumb = onTerminal({"exit 4\n"}, "dumb");
    EXPECT_EQ(dumb.status, 4);
    EXPECT_FALSE(contains(dumb, "{")) << dumb;
    const ProcessOutcome narrow = runOnTerminal({.words = {directory.path() + "/prefix/sbin/cli-shell"},
                                                 .variables = {"PATH=" + path, "TERM=vt100"},
                                                 .directory = directory.path()},
                                                "ready", {"exit 5\n"});
    EXPECT_EQ(narrow.status, 5); // a terminal without a width
    EXPECT_FALSE(contains(narrow, "{")) << narrow;
}

TEST_F(CliShell, RunsThePlainPromptOnPipes) {
    installEditor();
    EXPECT_EQ(runProgram(launch({}, "vt100"), "ctrl\nexit 9\n"),
              (ProcessOutcome{9, "ready\ncli>[ctrl]\nready\ncli>", ""}));
}

TEST_F(CliShell, PassesArgumentsUnchanged) {
    installEditor();
    const std::vector<std::string> arguments = {"logdrv", "-s", "name=a b", "", "*"};
    const ProcessOutcome outcome = runOnTerminal(launch(arguments, "vt100"), "ready", {});
    EXPECT_EQ(outcome.out, "[logdrv][-s][name=a b][][*]");
    EXPECT_EQ(outcome.status, 6);
    EXPECT_EQ(runProgram(launch(arguments, "vt100"), ""),
              (ProcessOutcome{6, "[logdrv][-s][name=a b][][*]", ""}));
}

TEST_F(CliShell, RunsTheRehearsal) {
    installRehearsal();
    EXPECT_EQ(runProgram(launch({"--rehearse", "logdrv", "-l", "0"}, "vt100"), ""),
              (ProcessOutcome{8, "<logdrv><-l><0>", ""}));
    EXPECT_EQ(runProgram(launch({"--rehearse"}, "vt100"), "ctrl\nexit 9\n"),
              (ProcessOutcome{9, "ready\ncli><ctrl>\nready\ncli>", ""}));
    EXPECT_EQ(runProgram(launch({"logdrv", "--rehearse"}, "vt100"), "").out, "[logdrv][--rehearse]");
}

namespace {
class CliShellWithRlwrap : public CliShell {
protected:
    void SetUp() override {
        if (std::string(RLWRAP_PROGRAM).empty())
            GTEST_SKIP() << "rlwrap is not installed";
        CliShell::SetUp();
        path += ":" + fs::path(RLWRAP_PROGRAM).parent_path().string();
        fs::copy_file(COMPLETIONS "/wordlist.txt", words());
    }
};
} // namespace

// The keys that the help describes: backspace, left and right, and the command history with up and down.
TEST_F(CliShellWithRlwrap, HasEditingKeysAndHistory) {
    const ProcessOutcome outcome = onTerminal({"crX\x7fl\x1b[D\x1b[Dt\n", "rc\x1b[D\x1b[Db\x1b[C\x7fz\n",
                                               "bga\n", "\x1b[A\x1b[A\x1b[A\x1b[B!\n", "exit 3\n"});
    EXPECT_TRUE(contains(outcome, "[ctrl]")) << outcome;
    EXPECT_TRUE(contains(outcome, "[bzc]")) << outcome;
    EXPECT_TRUE(contains(outcome, "[bzc!]")) << outcome;
    EXPECT_EQ(directory.read("home/.cli_history"), "ctrl\nbzc\nbga\nbzc!\nexit 3\n");
    EXPECT_TRUE(contains(onTerminal({"\x1b[A\x1b[A?\n", "exit 0\n"}), "[bzc!?]"));
}

TEST_F(CliShellWithRlwrap, CompletesWords) {
    const ProcessOutcome outcome =
        onTerminal({"logd\t -A ad\t -z \"na\tx,raid=j\t,init=q\t\"\n", "phyd\t -a set3\t\n", "exit 3\n"});
    EXPECT_TRUE(contains(outcome, "[logdrv  -A add  -z \"name=x,raid=JBOD ,init=QUICK \"]")) << outcome;
    EXPECT_TRUE(contains(outcome, "[phydrv  -a set3G ]")) << outcome;
}

// After a command a space, so that the next word can be typed; after a key none.
TEST_F(CliShellWithRlwrap, AddsASpaceToACompleteWord) {
    const ProcessOutcome outcome =
        onTerminal({"ctr\t-v\n", "ctr\t-a\tmo\t-s \"rebuildra\t7,autor\te\t\"\n", "exit 3\n"});
    EXPECT_TRUE(contains(outcome, "[ctrl -v]")) << outcome;
    EXPECT_TRUE(contains(outcome, "[ctrl -a mod -s \"rebuildrate=7,autorebuild=enable \"]")) << outcome;
}

TEST_F(CliShellWithRlwrap, RehearsesOnATerminal) {
    installRehearsal();
    const ProcessOutcome outcome =
        runOnTerminal(launch({"--rehearse"}, "vt100"), "ready", {"log\t\n", "exit 4\n"});
    EXPECT_EQ(outcome.status, 4);
    EXPECT_TRUE(contains(outcome, "<logdrv >")) << outcome;
    EXPECT_EQ(directory.read("home/.cli_rehearse_history"), "logdrv \nexit 4\n");
    EXPECT_EQ(directory.read("home/.cli_history"), "");
}

TEST_F(CliShellWithRlwrap, ExitsWithTheStatusOfThePrompt) {
    EXPECT_EQ(onTerminal({"exit 0\n"}).status, 0);
    EXPECT_EQ(onTerminal({"exit 12\n"}).status, 12);
    EXPECT_EQ(onTerminal({"\x04"}).status, 7);
    EXPECT_EQ(onTerminal({"die\n"}).status, 128 + 15);
}
