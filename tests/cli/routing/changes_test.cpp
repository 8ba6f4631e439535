// Every command that changes an adapter or a file has crash tests.
#include "cli/interface.h"
#include "tests/crash/changing_commands.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

#include "tests/cli/routing/command_stubs.h"
#include "tests/mock_adapter.h"

using Words = std::vector<std::string>;

// The name of the function that a command with these words calls. Some need more words.
static std::string functionOf(Words words) {
    for (; words.size() <= 7; words.push_back("x")) {
        run(cli_parse_command, words);
        std::string function = takeRecordedCall().function;
        if (!function.empty())
            return function;
    }
    return "";
}

// All functions but listings change an adapter or a file.
static bool isChanging(const Words& words) {
    const std::string function = functionOf(words);
    return !function.empty() && !isListing(function);
}

// The words that select the function: the command, and its second word or its action.
static Words routeOf(const Words& words) {
    const bool hasAction = words[1] == "-a" && functionOf({words[0], "-a"}).empty();
    return {words[0], hasAction ? words[2] : words[1]};
}

static bool hasCrashTest(const Words& words) {
    return std::any_of(changingCommands.begin(), changingCommands.end(),
                       [&](const ChangingCommand& row) { return routeOf(row.words) == routeOf(words); });
}

// The generated grammar contains every action and option of every command.
TEST(Changes, HaveCrashTests) {
    std::ifstream grammar(GRAMMAR);
    int changing = 0;
    for (std::string line; std::getline(grammar, line);) {
        std::istringstream stream(line);
        const Words words{std::istream_iterator<std::string>(stream), {}};
        if (words.size() < 2 || !isChanging(words))
            continue;
        ++changing;
        EXPECT_TRUE(hasCrashTest(words)) << line << ": add it to tests/crash/changing_commands.h, or let the "
                                         << "name of its function begin with \"List\" if it only lists";
    }
    EXPECT_GT(changing, 0);
}
