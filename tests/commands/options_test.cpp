// The option parser: each kind of option, missing values, and where it stops.
#include "commands/options.h"

#include <cstdio>
#include <string>

#include "tests/mock_adapter.h"

using Words = std::vector<std::string>;

namespace {
struct ParsedValues {
    bool verbose, controllerPresent;
    std::uint32_t controller, count, drive, impliedCount, lenient;
    IdList<> list, drives;
    IdList<2> shortList;
    const char* text;
    int endIndex;
};
} // namespace

// The values parsed by the command below, which has every kind of option.
static ParsedValues parsed;

static int parseEveryKind(int wordCount, char** words) {
    const Option options[] = {
        flagOption("-v", &parsed.verbose),
        numberOption("-i", "controller ID", &parsed.controller, Result::badId, &parsed.controllerPresent),
        countOption("-c", "drive count", &parsed.count, 16),
        driveOption("-p", "physical drive ID", &parsed.drive, &parsed.impliedCount),
        atoiOption("-o", &parsed.lenient),
        listOption("-e", &parsed.list),
        driveListOption("-d", &parsed.drives),
        listOption("-l", &parsed.shortList),
        textOption("-t", &parsed.text),
        ignoredOption("-s"),
    };
    return readOptions(wordCount, words, firstOption(wordCount, words), options, "No such option",
                       &parsed.endIndex);
}

static void expectRead(const Words& words, const Words& stale = {}) {
    parsed = {};
    const CommandOutcome outcome = run(parseEveryKind, words, stale);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.output, "");
}

static void expectRefused(const std::string& line, int result, const std::string& output) {
    parsed = {};
    const CommandOutcome outcome = run(parseEveryKind, splitWords(line));
    EXPECT_EQ(outcome.result, result) << line;
    EXPECT_EQ(outcome.output, output);
}

template <int Capacity>
static Words numbersOf(const IdList<Capacity>& list) {
    Words numbers;
    for (int i = 0; i < list.count; ++i)
        numbers.push_back(std::to_string(list.id[i]));
    return numbers;
}

TEST(FirstOption, FollowsTheCommandWordOrTheAction) {
    EXPECT_EQ(run(firstOption, {"ctrl"}).result, 1);
    EXPECT_EQ(run(firstOption, splitWords("ctrl -v")).result, 1);
    EXPECT_EQ(run(firstOption, splitWords("ctrl list -a")).result, 1);
    EXPECT_EQ(run(firstOption, splitWords("ctrl -a list -v")).result, 3);
    EXPECT_EQ(run(firstOption, splitWords("ctrl -A")).result, 3);
}

TEST(FirstOption, IgnoresStaleWords) {
    EXPECT_EQ(run(firstOption, {"ctrl"}, {"-a", "list"}).result, 1);
    EXPECT_EQ(run(firstOption, {}, {"ctrl", "-a"}).result, 1);
}

TEST(ReadOptions, ReadsNothingWithoutWords) {
    expectRead({"x"});
    EXPECT_EQ(parsed.endIndex, 1);
    expectRead({}, {"x", "-v"});
    EXPECT_FALSE(parsed.verbose);
    expectRead(splitWords("x -a -v"));
    EXPECT_FALSE(parsed.verbose);
    EXPECT_EQ(parsed.endIndex, 3);
}

TEST(ReadOptions, ReadsEveryKindIgnoringCase) {
    expectRead(splitWords("x -V -I 7 -C 16 -P 3 -O 9x -E 4,5 -S w"));
    EXPECT_TRUE(parsed.verbose);
    EXPECT_TRUE(parsed.controllerPresent);
    EXPECT_EQ(parsed.controller, 7u);
    EXPECT_EQ(parsed.count, 16u);
    EXPECT_EQ(parsed.drive, 2u);
    EXPECT_EQ(parsed.impliedCount, 1u);
    EXPECT_EQ(parsed.lenient, 9u);
    EXPECT_EQ(numbersOf(parsed.list), (Words{"4", "5"}));
    EXPECT_EQ(parsed.endIndex, 14);
}

TEST(ReadOptions, LeavesMissingOptionsUnchanged) {
    expectRead(splitWords("x -v"));
    EXPECT_FALSE(parsed.controllerPresent);
    EXPECT_EQ(parsed.impliedCount, 0u);
    EXPECT_EQ(parsed.list.count, 0);
}

TEST(ReadOptions, KeepsTheLastOfRepeatedOptions) {
    expectRead(splitWords("x -i 1 -i 2"));
    EXPECT_EQ(parsed.controller, 2u);
}

TEST(ReadOptions, IgnoresCountsOutOfRange) {
    for (const char* ignored : {"0", "17", "4294967295"}) {
        expectRead({"x", "-c", "5", "-c", ignored});
        EXPECT_EQ(parsed.count, 5u) << ignored;
    }
    expectRead(splitWords("x -c 1"));
    EXPECT_EQ(parsed.count, 1u);
}

TEST(ReadOptions, SubtractsOneFromDriveIds) {
    expectRead(splitWords("x -p 1 -d 1,16,3"));
    EXPECT_EQ(parsed.drive, 0u);
    EXPECT_EQ(numbersOf(parsed.drives), (Words{"0", "15", "2"}));
    expectRead(splitWords("x -p 0"));
    EXPECT_EQ(parsed.drive, 0xFFFFFFFFu);
}

TEST(ReadOptions, TruncatesListsToTheirCapacity) {
    expectRead(splitWords("x -l 7,8,9 -e 1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17"));
    EXPECT_EQ(numbersOf(parsed.shortList), (Words{"7", "8"}));
    EXPECT_EQ(parsed.list.count, 16);
}

TEST(ReadOptions, StaysWithinTheCapacityOfAList) {
    std::uint32_t numbers[] = {4, 4, 4};
    int count = 0, index = 0;
    char option[] = "-l", list[] = "7";
    char* words[16] = {option, list};
    const Option options[] = {listOption("-l", numbers, &count, 2, 0)};
    EXPECT_EQ(readOption(words, &index, options), 0);
    EXPECT_EQ(numbers[0], 7u);
    EXPECT_EQ(numbers[1], 0u);
    EXPECT_EQ(numbers[2], 4u);
}

TEST(ReadOptions, AcceptsAnyText) {
    const auto readText = [](int wordCount, char** words) {
        const int result = parseEveryKind(wordCount, words);
        std::fputs(parsed.text, stdout);
        return result;
    };
    EXPECT_EQ(run(readText, {"x", "-t", "-q 1"}).output, "-q 1");
    EXPECT_EQ(run(readText, {"x", "-t"}).output, "");
}

TEST(ReadOptions, RejectsUnknownWords) {
    for (const char* line : {"x -q", "x -v v", "x v", "x -i 1 2", "x -a list -q", "x -vv"})
        expectRefused(line, 1, "No such option\n");
}

TEST(ReadOptions, RejectsInvalidNumbersWithTheOptionsErrorCode) {
    expectRefused("x -i 1x", 6, "Invalid controller ID '1x' specified\n");
    expectRefused("x -c many", 1, "Invalid drive count 'many' specified\n");
    expectRefused("x -p -1", 6, "Invalid physical drive ID '-1' specified\n");
    EXPECT_EQ(parsed.impliedCount, 0u);
}

TEST(ReadOptions, KeepsOptionsBeforeAnError) {
    expectRefused("x -v -i 3 -c x -p 5", 1, "Invalid drive count 'x' specified\n");
    EXPECT_TRUE(parsed.verbose);
    EXPECT_EQ(parsed.controller, 3u);
    EXPECT_EQ(parsed.drive, 0u);
}

TEST(ReadOptions, ReadsNumbersAsAtoiDoes) {
    for (const auto& [word, number] : {std::pair{"x", 0u}, {"-1", 0xFFFFFFFFu}, {"3.9", 3u}, {"", 0u}}) {
        expectRead({"x", "-o", word});
        EXPECT_EQ(parsed.lenient, number) << word;
    }
}

TEST(ReadOptions, ReadsMissingValueFromTheNextSlot) {
    expectRead(splitWords("x -i"), {"9", "-q"});
    EXPECT_EQ(parsed.controller, 9u);
    EXPECT_EQ(parsed.endIndex, 3);
    expectRefused("x -i", 6, "Invalid controller ID '' specified\n");
}

TEST(ReadOptions, ReadsNoValuePastTheTable) {
    expectRefused("x -v -v -v -v -v -v -v -v -v -v -v -v -v -v -i", 6,
                  "Invalid controller ID '' specified\n");
    expectRead(splitWords("x -v -v -v -v -v -v -v -v -v -v -v -v -v -v -e"));
    EXPECT_EQ(parsed.list.count, 0);
    expectRead(splitWords("x -v -v -v -v -v -v -v -v -v -v -v -v -v -v -s"));
    EXPECT_EQ(parsed.endIndex, 17);
}

TEST(ReadOptions, AcceptsValueThatLooksLikeAnOption) {
    expectRead(splitWords("x -s -q -v"));
    EXPECT_TRUE(parsed.verbose);
    expectRefused("x -i -v", 6, "Invalid controller ID '-v' specified\n");
}

TEST(ReadOption, DoesNotAdvanceAtAnUnknownWord) {
    bool verbose = false;
    const Option options[] = {flagOption("-v", &verbose)};
    char flag[] = "-V", other[] = "other";
    char* words[16] = {flag, other};
    int index = 0;
    EXPECT_EQ(readOption(words, &index, options), 0);
    EXPECT_TRUE(verbose);
    EXPECT_EQ(index, 1);
    EXPECT_EQ(readOption(words, &index, options), kUnknownOption);
    EXPECT_EQ(index, 1);
}
