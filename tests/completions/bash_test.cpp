// What bash offers: asked from the completion function, and typed at a real bash on a terminal.
#include <gtest/gtest.h>

#include "tests/completions/shells.h"

// Asks the completion function what it offers at the end of a line.
static std::string offered(const std::string& line) {
    static const char script[] = "source \"$1\"; COMP_LINE=$2 COMP_POINT=${#2}\n"
                                 "_cli; printf '%s ' \"${COMPREPLY[@]}\"";
    const Folder folder;
    folder.write("settings.txt", "");
    folder.write("other.txt", "");
    const Outcome outcome = runProgram({.words = {BASH_PROGRAM, "--norc", "-c", script, "bash",
                                                  std::string(COMPLETIONS) + "/cli.bash", line},
                                        .variables = {"PATH=/usr/bin:/bin:/usr/local/bin"},
                                        .directory = folder.path()},
                                       "");
    EXPECT_EQ(outcome.err, "");
    return outcome.out;
}

class BashOffers : public testing::Test {
protected:
    void SetUp() override {
        if (std::string(BASH_PROGRAM).empty())
            GTEST_SKIP() << "no bash here";
    }
};

TEST_F(BashOffers, Commands) {
    EXPECT_EQ(offered("cli e"), "enclosure event export extent ");
    EXPECT_EQ(offered("cli LOG"), "logdrv ");
    EXPECT_EQ(offered("cli zz"), " ");
}

TEST_F(BashOffers, ExitOnlyToHelp) { // at the prompt alone it is a command
    EXPECT_EQ(offered("cli ex"), "export extent ");
    EXPECT_EQ(offered("cli help ex"), "exit export extent ");
    EXPECT_EQ(offered("cli ? mi"), "migrate ");
    EXPECT_EQ(offered("cli help exit "), " ");
}

TEST_F(BashOffers, Actions) {
    EXPECT_EQ(offered("cli ctrl -a m"), "mod ");
    EXPECT_EQ(offered("cli rb -a "), "list start abort pause resume restart ");
    EXPECT_EQ(offered("cli PHYDRV -A S"), "set3G ");
}

TEST_F(BashOffers, OptionsNotYetGiven) {
    EXPECT_EQ(offered("cli ctrl "), "-a -v -i -c ");
    EXPECT_EQ(offered("cli ctrl -v "), "-i -c ");
    EXPECT_EQ(offered("cli rc -a start -n -l 0 "), "-i ");
    EXPECT_EQ(offered("cli import -a -i "), "-k -p -l -f -c ");
    EXPECT_EQ(offered("cli battery "), " "); // takes none, whatever its help says
}

TEST_F(BashOffers, NoWordsForNumbers) {
    EXPECT_EQ(offered("cli ctrl -i "), " ");
}

TEST_F(BashOffers, KeysOfSettings) {
    EXPECT_EQ(offered("cli phydrv -a mod -p 1 -i 0 -s "), "writecache= ncq= tcq= ");
    EXPECT_EQ(offered("cli ctrl -a mod -s sm"), "smartpoll= smart= ");
    EXPECT_EQ(offered("cli logdrv -a add -p \"1 2\" -z \"name=A,ra"), "name=A,raid= name=A,raid=<value> ");
    EXPECT_EQ(offered("cli enclosure -a locate -s "), " "); // seconds
    EXPECT_EQ(offered("cli logdrv -a add -p "), " ");       // drives
}

// Behind an "=" outside quotes bash replaces what follows it; inside quotes, the whole text, and it
// would close them behind an only candidate.
TEST_F(BashOffers, ValuesOfKeys) {
    EXPECT_EQ(offered("cli ctrl -a mod -s smart="), "enable disable ");
    EXPECT_EQ(offered("cli ctrl -a mod -s \"smart=en"), "smart=enable smart=enable, ");
    EXPECT_EQ(offered("cli ctrl -a mod -s smart=enable,autorebuild=d"), "disable ");
    EXPECT_EQ(offered("cli ctrl -a mod -s \"smart=enable, autor"),
              "smart=enable, autorebuild= smart=enable, autorebuild=<value> ");
    EXPECT_EQ(offered("cli logdrv -a mod -s 'name=x,writepolicy=write"),
              "name=x,writepolicy=writethru name=x,writepolicy=writeback ");
    EXPECT_EQ(offered("cli migrate -a start -s raid=raid5"), "RAID50 RAID5 ");
    EXPECT_EQ(offered("cli logdrv -a add -z init="), "NONE QUICK BACK "); // FORE is always refused
    EXPECT_EQ(offered("cli ctrl -a mod -s rebuildrate="), " ");
}

TEST_F(BashOffers, TypesAndFilesOfConfigurations) {
    EXPECT_EQ(offered("cli export -t "), "0 1 2 3 ");
    EXPECT_EQ(offered("cli export -t 0 -f sett"), "settings.txt ");
    EXPECT_EQ(offered("cli import -i -f settings."), "settings.txt ");
}

TEST_F(BashOffers, WhatIsTypedAtATerminal) {
    const Folder folder;
    folder.write("home file.txt", "");
    folder.write("inputrc", "set enable-bracketed-paste off\n");
    folder.write("rc", "PS1='rea''dy>'; source '" COMPLETIONS "/cli.bash'\n"
                       "cli() { printf '<%s>' \"$@\"; echo; }\n");
    const Outcome outcome = runOnTerminal(
        {.words = {BASH_PROGRAM, "--noprofile", "--rcfile", folder.path() + "/rc", "-i"},
         .variables = {"PATH=/usr/bin:/bin:/usr/local/bin", "TERM=vt100",
                       "HISTFILE=", "INPUTRC=" + folder.path() + "/inputrc"},
         .directory = folder.path()},
        "ready>",
        {"cli ctr\t-a m\t-i 0 -s autor\tena\t\n", "cli ctrl -a mod -s \"smart=en\t,smartp\t30\"\n",
         "cli export -f ho\t -t 0\n", "exit\n"});
    EXPECT_NE(outcome.out.find("\n<ctrl><-a><mod><-i><0><-s><autorebuild=enable>\r\n"), std::string::npos);
    EXPECT_NE(outcome.out.find("\n<ctrl><-a><mod><-s><smart=enable,smartpoll=30>\r\n"), std::string::npos);
    EXPECT_NE(outcome.out.find("\n<export><-f><home file.txt><-t><0>\r\n"), std::string::npos) << outcome.out;
}
