// Settings texts: splitting them into items and parsing the items.
#include "commands/settings_text.h"

#include <string>
#include <vector>

#include "tests/mock_adapter.h"

using Items = std::vector<std::string>;

static Items itemsOf(std::string text) {
    Items items;
    char* rest = text.data();
    while (const char* item = nextItem(&rest))
        items.push_back(item);
    EXPECT_EQ(rest, nullptr);
    return items;
}

TEST(CopySettings, CopiesAWordOfMaximumLength) {
    SettingsText settings;
    const std::string word(256, 'x');
    copySettings(&settings, word.c_str());
    EXPECT_EQ(settings.text, word);
}

TEST(CopySettings, TruncatesALongerText) {
    SettingsText settings;
    copySettings(&settings, std::string(1000, 'x').c_str());
    EXPECT_EQ(settings.text, std::string(256, 'x'));
}

TEST(NextItem, SplitsAtEveryComma) {
    EXPECT_EQ(itemsOf("a=1,b=2"), (Items{"a=1", "b=2"}));
    EXPECT_EQ(itemsOf("a"), (Items{"a"}));
    EXPECT_EQ(itemsOf("a, b "), (Items{"a", " b "}));
}

TEST(NextItem, ReturnsEmptyItems) {
    EXPECT_EQ(itemsOf(""), (Items{""}));
    EXPECT_EQ(itemsOf(","), (Items{"", ""}));
    EXPECT_EQ(itemsOf(",a,,b,"), (Items{"", "a", "", "b", ""}));
}

TEST(ItemValue, FollowsTheFirstEqualsSign) {
    EXPECT_STREQ(itemValue("key=value"), "value");
    EXPECT_STREQ(itemValue("key=a=b"), "a=b");
    EXPECT_STREQ(itemValue("key="), "");
    EXPECT_STREQ(itemValue("=x"), "x");
    EXPECT_EQ(itemValue("key"), nullptr);
    EXPECT_EQ(itemValue(""), nullptr);
}

TEST(ItemContains, FindsAWordAnywhereIgnoringCase) {
    EXPECT_TRUE(itemContains("WritePolicy=Auto", "writepolicy"));
    EXPECT_TRUE(itemContains("xmprate", "mprate"));
    EXPECT_FALSE(itemContains("mprat", "mprate"));
    EXPECT_FALSE(itemContains("", "mprate"));
}

static void expectSwitch(const char* item, ItemResult result, int stored) {
    std::uint8_t field = 77;
    EXPECT_EQ(parseSwitch(item, &field), result) << item;
    EXPECT_EQ(field, stored) << item;
}

TEST(ParseSwitch, StoresTheState) {
    expectSwitch("smart=enable", ItemResult::ok, 1);
    expectSwitch("smart=disable", ItemResult::ok, 0);
    expectSwitch("smart=disabled", ItemResult::ok, 0);
}

TEST(ParseSwitch, PrefersEnable) {
    expectSwitch("disable,enable", ItemResult::ok, 1);
}

TEST(ParseSwitch, StoresZeroForAnInvalidItem) {
    expectSwitch("smart=on", ItemResult::invalid, 0);
    expectSwitch("", ItemResult::invalid, 0);
}

template <std::size_t Size>
static std::string parsedName(const std::string& value) {
    char field[Size];
    std::memset(field, 0x55, Size);
    parseName(value.c_str(), field, Size);
    return {field, field + Size};
}

TEST(ParseName, TrimsBlanks) {
    EXPECT_EQ(parsedName<8>("  a b  "), std::string("a b\0\0\0\0\0", 8));
    EXPECT_EQ(parsedName<4>("   "), std::string(4, '\0'));
    EXPECT_EQ(parsedName<4>(""), std::string(4, '\0'));
    EXPECT_EQ(parsedName<4>("\tx"), std::string("\tx\0\0", 4));
}

TEST(ParseName, Considers127CharactersAfterTheLeadingBlanks) {
    EXPECT_EQ(parsedName<132>("  " + std::string(130, 'x')), std::string(127, 'x') + std::string(5, '\0'));
    EXPECT_EQ(parsedName<132>(std::string(120, 'x') + std::string(7, ' ') + "y"),
              std::string(120, 'x') + std::string(12, '\0'));
}

TEST(ParseName, TruncatesANameToItsField) {
    EXPECT_EQ(parsedName<4>("abc"), std::string("abc\0", 4));
    EXPECT_EQ(parsedName<4>("abcdef"), std::string("abc\0", 4));
    EXPECT_EQ(parsedName<32>(std::string(200, 'x')), std::string(31, 'x') + '\0');
}

TEST(AbortItems, PrintsTheMessage) {
    EXPECT_EQ(outputOf([] { EXPECT_EQ(abortItems("No such item"), ItemResult::abort); }), "No such item\n");
}

// Records its items. "bad" is invalid, "stop" aborts.
static ItemResult record(Items* items, const char* item) {
    items->push_back(item);
    if (items->back() == "stop")
        return abortItems("Stopped");
    return items->back() == "bad" ? ItemResult::invalid : ItemResult::ok;
}

static void expectApplied(const char* text, const Items& expected, int result, const std::string& output) {
    Items items;
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(applyItems(text, &items, record, "Bad text"), result); }), output);
    EXPECT_EQ(items, expected);
}

TEST(ApplyItems, AppliesEveryItemInOrder) {
    expectApplied("b,a,,c", {"b", "a", "", "c"}, 0, "");
}

TEST(ApplyItems, ContinuesAfterAnInvalidItem) {
    expectApplied("a,bad,bad,c", {"a", "bad", "bad", "c"}, 1, "Bad text\n");
}

TEST(ApplyItems, StopsAtAnAbort) {
    expectApplied("bad,stop,c", {"bad", "stop"}, 1, "Stopped\n");
}
