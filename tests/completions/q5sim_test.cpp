// The completions of q5sim: they contain and offer what its help and the adapters' interface list.
#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <sstream>
#include <vector>

#include "tests/e2e/process.h"
#include "tests/temp_dir.h"

namespace fs = std::filesystem;

static std::string fileText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The usage of each command as the help prints it.
static std::vector<std::string> usages() {
    static const std::string start = "       q5sim ";
    const TempDir directory;
    const ProcessOutcome help =
        runProgram({.words = {Q5SIM, "--help"}, .variables = {}, .directory = directory.path()}, "");
    std::vector<std::string> found;
    std::istringstream lines(help.out);
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with(start))
            found.push_back(line.substr(start.size()));
    return found;
}

static std::string commandOf(const std::string& usage) {
    return usage.substr(0, usage.find(' '));
}

static std::set<std::string> matches(const std::string& text, const char* pattern) {
    const std::regex expression(pattern);
    std::set<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end; ++match)
        found.insert((*match)[1]);
    return found;
}

// The lines of the here document of that number in a script.
static std::string document(const std::string& script, int number) {
    static const std::string start = "cat <<'END'\n";
    std::size_t from = 0;
    for (int i = 0; i <= number; i++)
        from = script.find(start, from) + start.size();
    return script.substr(from, script.find("\nEND\n", from) + 1 - from);
}

TEST(Q5simCompletion, ContainsUsageOfEachCommand) {
    std::string expected;
    for (const std::string& usage : usages())
        expected += usage + "\n";
    EXPECT_NE(expected.find("status [--check]\n"), std::string::npos);
    for (const char* name : {"q5sim.bash", "_q5sim"})
        EXPECT_EQ(document(fileText(std::string(COMPLETIONS "/") + name), 0), expected) << name;
}

TEST(Q5simCompletion, ContainsOperations) {
    std::set<std::string> declared;
    for (const fs::directory_entry& entry : fs::directory_iterator(ADAPTER))
        if (entry.path().extension() == ".h")
            declared.merge(matches(fileText(entry.path().string()), "\\b(q5_[A-Za-z0-9]+)\\("));
    ASSERT_EQ(declared.size(), 65u);
    std::string expected;
    for (const std::string& operation : declared)
        expected += operation + "\n";
    for (const char* name : {"q5sim.bash", "_q5sim"})
        EXPECT_EQ(document(fileText(std::string(COMPLETIONS "/") + name), 1), expected) << name;
}

// The candidates in bash for the last of the words, which do not include q5sim itself.
static std::string candidates(const std::vector<std::string>& words) {
    static const char script[] = "source \"$0\"; COMP_WORDS=(q5sim \"$@\") COMP_CWORD=$#\n"
                                 "_q5sim; printf '%s ' \"${COMPREPLY[@]}\"";
    const TempDir directory;
    directory.write("saved.json", "");
    Launch launch{.words = {BASH_PROGRAM, "--norc", "-c", script, COMPLETIONS "/q5sim.bash"},
                  .variables = {"PATH=/usr/bin:/bin:/usr/local/bin"},
                  .directory = directory.path()};
    launch.words.insert(launch.words.end(), words.begin(), words.end());
    const ProcessOutcome outcome = runProgram(launch, "");
    EXPECT_EQ(outcome.err, "");
    return outcome.out;
}

struct Q5simBash : testing::Test {
    void SetUp() override {
        if (std::string(BASH_PROGRAM).empty())
            GTEST_SKIP() << "bash is not installed";
    }
};

TEST_F(Q5simBash, OffersEachCommandAndOption) {
    std::string commands;
    for (const std::string& usage : usages()) {
        commands += commandOf(usage) + " ";
        const std::string offered = " " + candidates({commandOf(usage), "-"});
        for (const std::string& option : matches(usage, "(--[a-z-]+)"))
            EXPECT_NE(offered.find(" " + option + " "), std::string::npos) << usage << ":" << offered;
    }
    EXPECT_EQ(candidates({""}), commands + "--help ");
}

TEST_F(Q5simBash, OffersOptionsNotYetGiven) {
    EXPECT_EQ(candidates({"refuse", "q5_split*", "--times", "2", "--"}), "--after --result --help ");
    EXPECT_EQ(candidates({"refuse", "q5_split*", "--times", "=", "2", "--r"}), "--result ");
    EXPECT_EQ(candidates({"insert-drive", "0", "2", ""}), "--blank --foreign --same ");
    EXPECT_EQ(candidates({"insert-drive", "--blank", "0", "2", ""}), " "); // the others exclude it
    EXPECT_EQ(candidates({"fail-drive", "0", "2", "--"}), "--help ");
}

TEST_F(Q5simBash, OffersValuesOfArguments) {
    EXPECT_EQ(candidates({"battery", ""}), " ");
    EXPECT_EQ(candidates({"battery", "0", ""}), "charging discharging full failed missing ");
    EXPECT_EQ(candidates({"battery", "--celsius", "40", "0", "f"}), "full failed ");
    EXPECT_EQ(candidates({"battery", "0", "full", "--celsius", ""}), " ");
    EXPECT_EQ(candidates({"sensor", "0", "0", ""}), "fan temperature 5v 12v ");
    EXPECT_EQ(candidates({"hang", "q5_startHBAM"}), "q5_startHBAMediaPatrol ");
    EXPECT_EQ(candidates({"load", "sa"}), "saved.json ");
    EXPECT_EQ(candidates({"no-such", ""}), " ");
}

struct Q5simZsh : testing::Test {
    void SetUp() override {
        if (std::string(ZSH_PROGRAM).empty())
            GTEST_SKIP() << "zsh is not installed";
    }
};

TEST_F(Q5simZsh, HasValidSyntax) {
    const TempDir directory;
    EXPECT_EQ(runProgram({.words = {ZSH_PROGRAM, "-f", "-n", COMPLETIONS "/_q5sim"},
                          .variables = {},
                          .directory = directory.path()},
                         ""),
              ProcessOutcome{});
}

// What a zsh on a terminal shows when these lines are typed and q5sim prints its words.
static std::string screenAfter(const TempDir& directory, std::vector<std::string> lines) {
    directory.write(".zshrc", "fpath=('" COMPLETIONS "' $fpath); autoload -Uz compinit; compinit -u -D\n"
                              "unsetopt promptsp beep automenu; unset zle_bracketed_paste\n"
                              "zstyle ':completion:*' completer _complete\n"
                              "q5sim() { printf '<%s>' \"$@\"; echo }\n"
                              "PS1='rea''dy>'; stty rows 60 cols 200\n");
    lines.push_back("exit\n");
    return runOnTerminal({.words = {ZSH_PROGRAM, "-d", "-i"},
                          .variables = {"PATH=/usr/bin:/bin:/usr/local/bin", "TERM=dumb",
                                        "ZDOTDIR=" + directory.path(), "HOME=" + directory.path()},
                          .directory = directory.path()},
                         "ready>", lines)
        .out;
}

static bool shows(const std::string& screen, const std::string& text) {
    return screen.find(text) != std::string::npos;
}

// Each command is typed except for its last letter; a longer command is completed from "-".
TEST_F(Q5simZsh, CompletesEachCommandAndOption) {
    std::vector<std::string> typed, expected;
    for (const std::string& usage : usages()) {
        const std::string command = commandOf(usage);
        typed.push_back(command.substr(0, command.size() - 1) + "\t\n");
        expected.push_back("\n<" + command + ">\r\n");
        for (const std::string& option : matches(usage, "(--[a-z-]+)")) {
            typed.push_back(command + " " + option.substr(0, option.size() - 1) + "\t\n");
            expected.push_back("\n<" + command + "><" + option + ">\r\n");
        }
    }
    for (std::string& line : typed)
        line.insert(0, "q5sim ");
    const TempDir directory;
    const std::string screen = screenAfter(directory, typed);
    for (const std::string& line : expected)
        EXPECT_TRUE(shows(screen, line)) << line << screen;
}

TEST_F(Q5simZsh, CompletesValuesOfArguments) {
    const TempDir directory;
    directory.write("saved.json", "");
    const std::string screen =
        screenAfter(directory, {"q5sim battery 0 ch\t--c\t40\n", "q5sim sensor 0 0 te\t9\n",
                                "q5sim hang q5_startHBAM\t\n", "q5sim load sa\t\n",
                                "q5sim battery --celsius=40 0 mi\t\n"});
    EXPECT_TRUE(shows(screen, "\n<battery><0><charging><--celsius><40>\r\n")) << screen;
    EXPECT_TRUE(shows(screen, "\n<sensor><0><0><temperature><9>\r\n")) << screen;
    EXPECT_TRUE(shows(screen, "\n<hang><q5_startHBAMediaPatrol>\r\n")) << screen;
    EXPECT_TRUE(shows(screen, "\n<load><saved.json>\r\n")) << screen;
    EXPECT_TRUE(shows(screen, "\n<battery><--celsius=40><0><missing>\r\n")) << screen;
}
