// The candidates in bash, from the completion function and on a terminal with a real bash.
#include <gtest/gtest.h>

#include "tests/e2e/process.h"
#include "tests/temp_dir.h"

// The candidates of the completion function at the end of a line.
static std::string candidates(const std::string& line) {
    static const char script[] = "source \"$1\"; COMP_LINE=$2 COMP_POINT=${#2}\n"
                                 "_cli; printf '%s ' \"${COMPREPLY[@]}\"";
    const TempDir directory;
    directory.write("settings.txt", "");
    directory.write("other.txt", "");
    const ProcessOutcome outcome = runProgram({.words = {BASH_PROGRAM, "--norc", "-c", script, "bash",
                                                         std::string(COMPLETIONS) + "/cli.bash", line},
                                               .variables = {"PATH=/usr/bin:/bin:/usr/local/bin"},
                                               .directory = directory.path()},
                                              "");
    EXPECT_EQ(outcome.err, "");
    return outcome.out;
}

// The same for a completion that reads words: the last one is being completed.
static std::string candidatesOf(const std::string& file, const std::string& function,
                                const std::string& line) {
    static const char script[] =
        "source \"$1\"; COMP_LINE=$3 COMP_POINT=${#3}; read -ra COMP_WORDS <<<\"$3.\"\n"
        "COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); COMP_WORDS[COMP_CWORD]=${COMP_WORDS[COMP_CWORD]%.}\n"
        "\"$2\" 2>/dev/null; printf '%s ' \"${COMPREPLY[@]}\"";
    const TempDir directory;
    directory.write("plan.txt", "");
    return runProgram({.words = {BASH_PROGRAM, "--norc", "-c", script, "bash",
                                 std::string(COMPLETIONS) + "/" + file, function, line},
                       .variables = {"PATH=/usr/bin:/bin:/usr/local/bin"},
                       .directory = directory.path()},
                      "")
        .out;
}

class BashCompletion : public testing::Test {
protected:
    void SetUp() override {
        if (std::string(BASH_PROGRAM).empty())
            GTEST_SKIP() << "bash is not installed";
    }
};

TEST_F(BashCompletion, OffersCommands) {
    EXPECT_EQ(candidates("cli e"), "enclosure event export extent ");
    EXPECT_EQ(candidates("cli LOG"), "logdrv ");
    EXPECT_EQ(candidates("cli zz"), " ");
}

TEST_F(BashCompletion, OffersExitOnlyAfterHelp) { // only the prompt accepts it as a command
    EXPECT_EQ(candidates("cli ex"), "export extent ");
    EXPECT_EQ(candidates("cli help ex"), "exit export extent ");
    EXPECT_EQ(candidates("cli ? mi"), "migrate ");
    EXPECT_EQ(candidates("cli help exit "), " ");
}

TEST_F(BashCompletion, OffersActions) {
    EXPECT_EQ(candidates("cli ctrl -a m"), "mod ");
    EXPECT_EQ(candidates("cli rb -a "), "list start abort pause resume restart ");
    EXPECT_EQ(candidates("cli PHYDRV -A S"), "set3G ");
}

TEST_F(BashCompletion, OffersUnusedOptions) {
    EXPECT_EQ(candidates("cli ctrl "), "-a -v -i -c ");
    EXPECT_EQ(candidates("cli ctrl -v "), "-i -c ");
    EXPECT_EQ(candidates("cli rc -a start -n -l 0 "), "-i ");
    EXPECT_EQ(candidates("cli import -a -i "), "-k -p -l -f -c ");
    EXPECT_EQ(candidates("cli battery "), " "); // accepts none, despite its help
}

TEST_F(BashCompletion, OffersNothingForNumbers) {
    EXPECT_EQ(candidates("cli ctrl -i "), " ");
}

TEST_F(BashCompletion, OffersKeysOfSettings) {
    EXPECT_EQ(candidates("cli phydrv -a mod -p 1 -i 0 -s "), "writecache= ncq= tcq= ");
    EXPECT_EQ(candidates("cli ctrl -a mod -s sm"), "smartpoll= smart= ");
    EXPECT_EQ(candidates("cli logdrv -a add -p \"1 2\" -z \"name=A,ra"), "name=A,raid= name=A,raid=<value> ");
    EXPECT_EQ(candidates("cli enclosure -a locate -s "), " "); // seconds
    EXPECT_EQ(candidates("cli logdrv -a add -p "), " ");       // drives
}

// After an "=" outside quotes bash replaces only what follows it. Inside quotes it replaces the whole text
// and would close them after a single candidate.
TEST_F(BashCompletion, OffersValuesOfKeys) {
    EXPECT_EQ(candidates("cli ctrl -a mod -s smart="), "enable disable ");
    EXPECT_EQ(candidates("cli ctrl -a mod -s \"smart=en"), "smart=enable smart=enable, ");
    EXPECT_EQ(candidates("cli ctrl -a mod -s smart=enable,autorebuild=d"), "disable ");
    EXPECT_EQ(candidates("cli ctrl -a mod -s \"smart=enable, autor"),
              "smart=enable, autorebuild= smart=enable, autorebuild=<value> ");
    EXPECT_EQ(candidates("cli logdrv -a mod -s 'name=x,writepolicy=write"),
              "name=x,writepolicy=writethru name=x,writepolicy=writeback ");
    EXPECT_EQ(candidates("cli migrate -a start -s raid=raid5"), "RAID50 RAID5 ");
    EXPECT_EQ(candidates("cli logdrv -a add -z init="), "NONE QUICK BACK "); // FORE is always rejected
    EXPECT_EQ(candidates("cli ctrl -a mod -s rebuildrate="), " ");
}

TEST_F(BashCompletion, OffersTypesAndFilesOfConfigurations) {
    EXPECT_EQ(candidates("cli export -t "), "0 1 2 3 ");
    EXPECT_EQ(candidates("cli export -t 0 -f sett"), "settings.txt ");
    EXPECT_EQ(candidates("cli import -i -f settings."), "settings.txt ");
}

TEST_F(BashCompletion, CompletesOnATerminal) {
    const TempDir directory;
    directory.write("home file.txt", "");
    directory.write("inputrc", "set enable-bracketed-paste off\n");
    directory.write("rc", "PS1='rea''dy>'; source '" COMPLETIONS "/cli.bash'\n"
                          "cli() { printf '<%s>' \"$@\"; echo; }\n");
    const ProcessOutcome outcome = runOnTerminal(
        {.words = {BASH_PROGRAM, "--noprofile", "--rcfile", directory.path() + "/rc", "-i"},
         .variables = {"PATH=/usr/bin:/bin:/usr/local/bin", "TERM=vt100",
                       "HISTFILE=", "INPUTRC=" + directory.path() + "/inputrc"},
         .directory = directory.path()},
        "ready>",
        {"cli ctr\t-a m\t-i 0 -s autor\tena\t\n", "cli ctrl -a mod -s \"smart=en\t,smartp\t30\"\n",
         "cli export -f ho\t -t 0\n", "exit\n"});
    EXPECT_NE(outcome.out.find("\n<ctrl><-a><mod><-i><0><-s><autorebuild=enable>\r\n"), std::string::npos);
    EXPECT_NE(outcome.out.find("\n<ctrl><-a><mod><-s><smart=enable,smartpoll=30>\r\n"), std::string::npos);
    EXPECT_NE(outcome.out.find("\n<export><-f><home file.txt><-t><0>\r\n"), std::string::npos) << outcome.out;
}

TEST_F(BashCompletion, OffersCommandsToTry) {
    const auto tried = [](const std::string& line) { return candidatesOf("cli-try.bash", "_cli_try", line); };
    EXPECT_EQ(tried("cli-try ex"), "export extent ");
    EXPECT_EQ(tried("cli-try logdrv -a d"), "del ");
    EXPECT_EQ(tried("cli-try --s"), "--shell ");
    EXPECT_EQ(tried("cli-try -f p"), "plan.txt ");
    EXPECT_EQ(tried("cli-try -s "), " ");
}

TEST_F(BashCompletion, OffersOptionsOfCapture) {
    const auto captured = [](const std::string& line) {
        return candidatesOf("cli-capture.bash", "_cli_capture", line);
    };
    EXPECT_EQ(captured("cli-capture --a"), "--anonymous ");
    EXPECT_EQ(captured("cli-capture -o p"), "plan.txt ");
}
