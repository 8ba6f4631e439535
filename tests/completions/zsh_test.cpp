// Completion in a real zsh on a terminal.
#include <gtest/gtest.h>

#include "tests/e2e/process.h"
#include "tests/temp_dir.h"

class ZshCompletion : public testing::Test {
protected:
    void SetUp() override {
        if (std::string(ZSH_PROGRAM).empty())
            GTEST_SKIP() << "zsh is not installed";
    }
};

// Types lines at a zsh in which cli prints its words and "ready>" is the prompt.
static std::string screenAfter(const TempDir& directory, std::vector<std::string> lines) {
    directory.write(".zshrc", "fpath=('" COMPLETIONS "' $fpath); autoload -Uz compinit; compinit -u -D\n"
                              "unsetopt promptsp beep; unset zle_bracketed_paste\n"
                              "zstyle ':completion:*' completer _complete\n"
                              "cli() { printf '<%s>' \"$@\"; echo }; cli-try() { cli \"$@\" }\n"
                              "PS1='rea''dy>'; stty rows 24 cols 200\n");
    lines.push_back("exit\n");
    const ProcessOutcome outcome =
        runOnTerminal({.words = {ZSH_PROGRAM, "-d", "-i"},
                       .variables = {"PATH=/usr/bin:/bin:/usr/local/bin", "TERM=dumb",
                                     "ZDOTDIR=" + directory.path(), "HOME=" + directory.path()},
                       .directory = directory.path()},
                      "ready>", lines);
    return outcome.out;
}

static bool shows(const std::string& screen, const std::string& text) {
    return screen.find(text) != std::string::npos;
}

TEST_F(ZshCompletion, HasValidSyntax) {
    const TempDir directory;
    const ProcessOutcome outcome = runProgram({.words = {ZSH_PROGRAM, "-f", "-n", COMPLETIONS "/_cli"},
                                               .variables = {},
                                               .directory = directory.path()},
                                              "");
    EXPECT_EQ(outcome, ProcessOutcome{});
}

TEST_F(ZshCompletion, CompletesACommandToTry) {
    const TempDir directory;
    const std::string screen = screenAfter(directory, {"cli-try logd\t-a de\t-l 0\n", "cli-try --sh\t\n"});
    EXPECT_TRUE(shows(screen, "\n<logdrv><-a><del><-l><0>\r\n")) << screen;
    EXPECT_TRUE(shows(screen, "\n<--shell>\r\n")) << screen;
}

TEST_F(ZshCompletion, CompletesCommandsActionsAndOptions) {
    const TempDir directory;
    const std::string screen =
        screenAfter(directory, {"cli ctr\t-a m\t-s x\n", "cli PHYD\t-A SET\t-e 1\n",
                                "cli rc -a start -l 0 -i 0 -\t\n", "cli help ex\tit\n"});
    EXPECT_TRUE(shows(screen, "\n<ctrl><-a><mod><-s><x>\r\n")) << screen;
    EXPECT_TRUE(shows(screen, "\n<phydrv><-A><set3G><-e><1>\r\n")) << screen;
    EXPECT_TRUE(shows(screen, "\n<rc><-a><start><-l><0><-i><0><-n>\r\n")) << screen;
    EXPECT_TRUE(shows(screen, "\n<help><exit>\r\n")) << screen;
}

TEST_F(ZshCompletion, CompletesKeysAndValuesOfSettings) {
    const TempDir directory;
    const std::string screen = screenAfter(directory, {"cli ctrl -a mod -s autor\te\t\n",
                                                       "cli ctrl -a mod -s \"smart=en\t,smartp\t30\"\n",
                                                       "cli ctrl -a mod -s \"smart=en\t, smartp\t30\"\n",
                                                       "cli logdrv -a add -p 1 -z ra\tj\t,init=q\t\n"});
    EXPECT_TRUE(shows(screen, "\n<ctrl><-a><mod><-s><autorebuild=enable>\r\n")) << screen;
    EXPECT_TRUE(shows(screen, "\n<ctrl><-a><mod><-s><smart=enable,smartpoll=30>\r\n")) << screen;
    EXPECT_TRUE(shows(screen, "\n<ctrl><-a><mod><-s><smart=enable, smartpoll=30>\r\n")) << screen;
    EXPECT_TRUE(shows(screen, "\n<logdrv><-a><add><-p><1><-z><raid=JBOD,init=QUICK>\r\n")) << screen;
}

TEST_F(ZshCompletion, CompletesFileNames) {
    const TempDir directory;
    directory.write("settings old.txt", "");
    const std::string screen = screenAfter(directory, {"cli import -i -f sett\t\n"});
    EXPECT_TRUE(shows(screen, "\n<import><-i><-f><settings old.txt>\r\n")) << screen;
}

// The prompt that follows a list lets the next line be typed before zsh reads it: the terminal would act on
// Ctrl-U itself.
static std::string listAfter(const std::string& words) {
    const TempDir directory;
    return screenAfter(directory, {words + "\t\t\x15\n"});
}

TEST_F(ZshCompletion, ListsCandidates) {
    const std::string commands = listAfter("cli e"), actions = listAfter("cli rb -a res");
    EXPECT_TRUE(shows(commands, "enclosure  event      export     extent")) << commands;
    EXPECT_FALSE(shows(commands, "exit  ")) << commands;
    EXPECT_TRUE(shows(actions, "restart  resume")) << actions;
}
