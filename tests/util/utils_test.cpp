// Text helpers: comparing, searching, strict numbers and delimited fields.
#include "util/utils.h"

#include <cstring>
#include <memory>
#include <string>

#include "tests/mock_adapter.h"
#include "util/words.h"

TEST(StrCmpNoCase, IgnoresCase) {
    EXPECT_EQ(strCmpNoCase("EXIT", "exit"), 0);
    EXPECT_EQ(strCmpNoCase("List3g", "LIST3G"), 0);
    EXPECT_EQ(strCmpNoCase("", ""), 0);
}

TEST(StrCmpNoCase, OrdersByTheFirstDifference) {
    EXPECT_EQ(strCmpNoCase("b", "ABC"), 1);
    EXPECT_EQ(strCmpNoCase("ABC", "b"), -1);
    EXPECT_EQ(strCmpNoCase("-a", "-i"), -1);
}

TEST(StrCmpNoCase, SortsAProperPrefixFirst) {
    EXPECT_EQ(strCmpNoCase("", "a"), -1);
    EXPECT_EQ(strCmpNoCase("a", ""), 1);
    EXPECT_EQ(strCmpNoCase("ctr", "CTRL"), -1);
    EXPECT_EQ(strCmpNoCase("CTRL", "ctr"), 1);
    EXPECT_EQ(strCmpNoCase("ctr", "ctr\x80"), -1);
    EXPECT_EQ(strCmpNoCase("ctr\x80", "ctr"), 1);
}

TEST(StrCmpNoCase, ComparesUpperCaseFormsAsSignedCharacters) {
    EXPECT_EQ(strCmpNoCase("_", "a"), 1);     // 0x5f after "A", though before "a"
    EXPECT_EQ(strCmpNoCase("\xe4", "a"), -1); // a negative character
    EXPECT_EQ(strCmpNoCase("z", "\xff"), 1);
}

TEST(StrCmpNoCase, ComparesCharactersBeyondTheLetters) {
    EXPECT_EQ(strCmpNoCase("a{b", "A{B"), 0);
    EXPECT_EQ(strCmpNoCase("{", "["), 1); // 0x7b and 0x5b, which are no two cases of a letter
}

static std::string lowerCased(std::string text) {
    strToLowerCase(text.data());
    return text;
}

TEST(StrToLowerCase, ChangesLettersOnly) {
    EXPECT_EQ(lowerCased("SMART=Enable,9-Z"), "smart=enable,9-z");
    EXPECT_EQ(lowerCased(""), "");
}

TEST(StrToLowerCase, IgnoresNull) {
    strToLowerCase(nullptr);
}

TEST(StrstrNoCase, ReturnsAPointerIntoTheText) {
    const char text[] = "my RAID5x";
    EXPECT_EQ(strstrNoCase(text, "raid5"), text + 3);
    EXPECT_EQ(strstrNoCase(text, "MY"), text);
    EXPECT_EQ(strstrNoCase(text, "5X"), text + 7);
}

TEST(StrstrNoCase, FindsTheFirstOccurrence) {
    const char text[] = "aAaB";
    EXPECT_EQ(strstrNoCase(text, "a"), text);
    EXPECT_EQ(strstrNoCase(text, "ab"), text + 2);
}

TEST(StrstrNoCase, FindsNothingInAShorterText) {
    EXPECT_EQ(strstrNoCase("raid", "raid5"), nullptr);
    EXPECT_EQ(strstrNoCase("", "a"), nullptr);
    EXPECT_EQ(strstrNoCase("raid 5", "raid5"), nullptr);
}

TEST(StrstrNoCase, FindsAnEmptyNeedleAtTheStart) {
    const char text[] = "abc";
    EXPECT_EQ(strstrNoCase(text, ""), text);
    EXPECT_EQ(strstrNoCase(text + 3, ""), text + 3);
}

TEST(StrstrNoCase, SearchesTextsOfAnyLength) {
    const std::string text = std::string(300, '-') + "Auto" + std::string(300, '-');
    EXPECT_EQ(strstrNoCase(text.c_str(), "auto"), text.c_str() + 300);
    EXPECT_EQ(strstrNoCase(text.c_str(), std::string(700, '-').c_str()), nullptr);
}

TEST(ToLimitStr, StopsAtTheFirstStopCharacter) {
    const char text[] = "name=a,b";
    EXPECT_EQ(toLimitStr(text, ",="), text + 4);
    EXPECT_EQ(toLimitStr(text, "n"), text);
}

TEST(ToLimitStr, StopsAtTheEndWithoutOne) {
    const char text[] = "name";
    EXPECT_EQ(toLimitStr(text, ","), text + 4);
    EXPECT_EQ(toLimitStr(text, ""), text + 4);
}

TEST(SkipLimitStr, StopsAtTheFirstOtherCharacter) {
    const char text[] = " \t x ";
    EXPECT_EQ(skipLimitStr(text, " \t"), text + 3);
    EXPECT_EQ(skipLimitStr(text, ""), text);
}

TEST(SkipLimitStr, StopsAtTheEndWithoutOne) {
    const char text[] = "   ";
    EXPECT_EQ(skipLimitStr(text, " "), text + 3);
}

TEST(IsValidDecString, AcceptsDigitsOnly) {
    for (const char* text : {"0", "7", "00123", "99999999999999999999"})
        EXPECT_EQ(IsValidDecString(text), 1) << text;
    for (const char* text : {"", "+1", "-1", " 1", "1 ", "12a", "0x1", "1.5", "\xb2"})
        EXPECT_EQ(IsValidDecString(text), 0) << text;
}

static std::uint32_t numberOf(const char* text) {
    std::uint32_t value = 4711;
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(TranslateStr2Int("controller ID", text, &value), 1); }), "");
    return value;
}

TEST(TranslateStr2Int, ReadsADecimalNumber) {
    EXPECT_EQ(numberOf("0"), 0u);
    EXPECT_EQ(numberOf("007"), 7u);
    EXPECT_EQ(numberOf("4294967295"), 4294967295u);
}

TEST(TranslateStr2Int, KeepsTheLow32BitsOfALargerOne) {
    EXPECT_EQ(numberOf("4294967296"), 0u);
    EXPECT_EQ(numberOf("4294967303"), 7u);
}

TEST(TranslateStr2Int, ReportsInvalidNumberAndLeavesTheValue) {
    std::uint32_t value = 4711;
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(TranslateStr2Int("controller ID", "12a", &value), 0); }),
              "Invalid controller ID '12a' specified\n");
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(TranslateStr2Int("event count", "", &value), 0); }),
              "Invalid event count '' specified\n");
    EXPECT_EQ(value, 4711u);
}

TEST(AtoiText, ParsesTheNumberAtTheStart) {
    EXPECT_EQ(atoiText("7x"), 7);
    EXPECT_EQ(atoiText(" 12"), 12);
    EXPECT_EQ(atoiText("-3"), -3);
    EXPECT_EQ(atoiText("+255"), 255);
}

TEST(AtoiText, IsZeroWithoutANumber) {
    EXPECT_EQ(atoiText(""), 0);
    EXPECT_EQ(atoiText("x7"), 0);
}

TEST(AtoiText, IsDefinedForNumbersOfAnyLength) {
    EXPECT_EQ(atoiText("4294967297"), 1);
    EXPECT_EQ(atoiText("99999999999999999999"), -1); // the low bits of the largest 64-bit number
}

static int includes(int count, const char* word) {
    char first[] = "ctrl", second[] = "PHYDRV", third[] = "logdrv";
    char* table[] = {first, second, third};
    return CheckIsIncludeCharacter(count, table, word);
}

TEST(CheckIsIncludeCharacter, FindsAWordIgnoringCase) {
    EXPECT_EQ(includes(3, "CTRL"), 1);
    EXPECT_EQ(includes(3, "phydrv"), 1);
    EXPECT_EQ(includes(3, "logdrv"), 1);
    EXPECT_EQ(includes(3, "log"), 0);
}

TEST(CheckIsIncludeCharacter, SearchesOnlyTheFirstCountWords) {
    EXPECT_EQ(includes(2, "logdrv"), 0);
    EXPECT_EQ(includes(0, "ctrl"), 0);
    EXPECT_EQ(includes(-1, "ctrl"), 0);
}

TEST(CheckIsIncludeCharacter, ReturnsZeroForNullPointers) {
    EXPECT_EQ(includes(3, nullptr), 0);
    EXPECT_EQ(CheckIsIncludeCharacter(3, nullptr, "ctrl"), 0);
}

namespace {
struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
} // namespace
using File = std::unique_ptr<std::FILE, CloseFile>;

static File fileOf(const std::string& content) {
    File file(std::tmpfile());
    std::fwrite(content.data(), 1, content.size(), file.get());
    std::rewind(file.get());
    return file;
}

static std::string field(const File& file, const char* delimiters = ",\n") {
    char buffer[64] = "unchanged";
    GetStrFromFile(file.get(), buffer, delimiters);
    return buffer;
}

TEST(GetStrFromFile, ReadsNothingWithoutRoom) {
    const File file = fileOf("ab,cd");
    char buffer[] = "unchanged";
    GetStrFromFileUpTo(file.get(), buffer, 0, ",");
    EXPECT_STREQ(buffer, "unchanged");
    EXPECT_EQ(field(file), "ab");
}

TEST(WordAt, IsEmptyWithoutASlot) {
    char first[] = "ctrl";
    char* words[kMaxWords] = {first};
    EXPECT_STREQ(wordAt(words, 0), "ctrl");
    EXPECT_STREQ(wordAt(words, 1), "");
    EXPECT_STREQ(wordAt(words, kMaxWords), "");
}

TEST(GetStrFromFile, ConsumesTheDelimiterThatEndsAField) {
    const File file = fileOf("abc,,d e\nrest\n");
    EXPECT_EQ(field(file), "abc");
    EXPECT_EQ(field(file), "");
    EXPECT_EQ(field(file), "d e");
    EXPECT_EQ(field(file), "rest");
}

TEST(GetStrFromFile, EndsAFieldAtANulByteToo) {
    const File file = fileOf(std::string("ab\0cd,", 6));
    EXPECT_EQ(field(file), "ab");
    EXPECT_EQ(field(file), "cd");
}

TEST(GetStrFromFile, Appends0xFFAtTheEndOfTheFile) {
    const File file = fileOf("abc");
    EXPECT_EQ(field(file), "abc\xff");
}

TEST(GetStrFromFile, ReturnsOneFieldAfterTheLastDelimiter) {
    const File file = fileOf("abc\n");
    EXPECT_EQ(field(file), "abc");
    EXPECT_EQ(field(file), "\xff");
}

TEST(GetStrFromFile, LeavesTheBufferUnchangedAtTheEndOfTheFile) {
    const File file = fileOf("");
    EXPECT_EQ(field(file), "\xff");
    EXPECT_EQ(field(file), "unchanged");
}

TEST(GetStrFromFile, IgnoresNullBuffer) {
    const File file = fileOf("abc,");
    GetStrFromFile(file.get(), nullptr, ",");
    EXPECT_EQ(field(file), "abc");
}

TEST(GetStrFromFile, KeepsA0xFFByteThatIsNotTheEnd) {
    const File file = fileOf("a\xff"
                             "b,");
    EXPECT_EQ(field(file), "a\xff"
                           "b");
}

TEST(GetStrFromFile, ReturnsFromAnUnreadableFile) {
    const File directory(std::fopen("/", "r"));
    if (directory == nullptr)
        GTEST_SKIP() << "this system opens no directories";
    EXPECT_EQ(field(directory), "\xff");
}

TEST(GetStrFromFileUpTo, TruncatesTheField) {
    const File file = fileOf("abcdef,gh,");
    char buffer[4];
    GetStrFromFileUpTo(file.get(), buffer, sizeof buffer, ",");
    EXPECT_STREQ(buffer, "abc");
    GetStrFromFileUpTo(file.get(), buffer, sizeof buffer, ",");
    EXPECT_STREQ(buffer, "gh");
}

TEST(GetStrFromFileUpTo, SkipsTheFieldForASizeOfOne) {
    const File file = fileOf("abc,gh,");
    char nothing[] = {'x', 'y'}, buffer[4];
    GetStrFromFileUpTo(file.get(), nothing, 1, ",");
    EXPECT_EQ(nothing[0], '\0');
    EXPECT_EQ(nothing[1], 'y');
    GetStrFromFileUpTo(file.get(), buffer, sizeof buffer, ",");
    EXPECT_STREQ(buffer, "gh");
}
