// Lists of IDs: splitting, parsing, formatting, sorting and searching them.
#include "util/idlist.h"

#include <string>
#include <vector>

#include "tests/mock_adapter.h"

using Texts = std::vector<std::string>;
using Numbers = std::vector<std::uint32_t>;

static Texts itemsOf(std::string text) {
    int count = -1;
    char sentinel[] = "past the table", *items[kMaxListItems + 1];
    items[kMaxListItems] = sentinel;
    FormIDStrAry(text.data(), &count, items);
    EXPECT_EQ(items[kMaxListItems], sentinel);
    for (int i = count; i < kMaxListItems; ++i)
        EXPECT_EQ(items[i], nullptr);
    return {items, items + count};
}

TEST(FormIDStrAry, SplitsAtCommasAndBlanks) {
    EXPECT_EQ(itemsOf("1,2,3"), (Texts{"1", "2", "3"}));
    EXPECT_EQ(itemsOf("1 2 3"), (Texts{"1", "2", "3"}));
    EXPECT_EQ(itemsOf("1, 2"), (Texts{"1", "2"}));
    EXPECT_EQ(itemsOf(" \t1\r\n2\t "), (Texts{"1", "2"}));
    EXPECT_EQ(itemsOf("1,"), (Texts{"1"}));
}

TEST(FormIDStrAry, FindsNothingInBlanks) {
    EXPECT_EQ(itemsOf(""), Texts{});
    EXPECT_EQ(itemsOf(" \t\r\n"), Texts{});
}

TEST(FormIDStrAry, SkipsParentheses) {
    EXPECT_EQ(itemsOf("(1,2,3)"), (Texts{"1", "2", "3"}));
    EXPECT_EQ(itemsOf("(1)"), (Texts{"1"}));
    EXPECT_EQ(itemsOf("1)2"), (Texts{"1", "2"}));
    EXPECT_EQ(itemsOf("(1 2)"), (Texts{"1 2"})); // blanks do not end the first item
}

TEST(FormIDStrAry, KeepsAQuotedItemWhole) {
    EXPECT_EQ(itemsOf("\"1,2\" 3"), (Texts{"1,2", "3"}));
    EXPECT_EQ(itemsOf("\"1 2"), (Texts{"1 2"}));
}

TEST(FormIDStrAry, TreatsTheCommaAfterAQuotedItemAsPartOfTheNext) {
    EXPECT_EQ(itemsOf("\"1\",3"), (Texts{"1", ",3"}));
}

TEST(FormIDStrAry, DoesNotRecognizeEmptyQuotedOrParenthesizedItem) {
    EXPECT_EQ(itemsOf("\"\""), (Texts{"\""}));
    EXPECT_EQ(itemsOf("()"), (Texts{")"}));
    EXPECT_EQ(itemsOf("\"\"1\"2"), (Texts{"\"1", "2"}));
}

TEST(FormIDStrAry, TreatsAnOpeningMarkAtTheEndAsAnEmptyItem) {
    EXPECT_EQ(itemsOf("1 \""), (Texts{"1", ""}));
    EXPECT_EQ(itemsOf("("), (Texts{""}));
}

TEST(FormIDStrAry, StartsTheNextItemAtACommaAfterABlankOrComma) {
    EXPECT_EQ(itemsOf("1 ,2"), (Texts{"1", ",2"}));
    EXPECT_EQ(itemsOf("1,,2"), (Texts{"1", ",2"}));
    EXPECT_EQ(itemsOf(",1"), (Texts{",1"}));
}

TEST(FormIDStrAry, KeepsTheFirst16Items) {
    EXPECT_EQ(itemsOf("1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20"),
              (Texts{"1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12", "13", "14", "15", "16"}));
}

namespace {
struct BlockList {
    int result;
    std::string message;
    int count;
    Numbers values; // 4711: nothing was stored
};
} // namespace

static BlockList blockList(std::string text) {
    BlockList list = {-1, "", -1, Numbers(kMaxListItems, 4711)};
    list.message =
        outputOf([&] { list.result = BlockIDStr2Int(&list.count, list.values.data(), text.data()); });
    return list;
}

static Numbers blockIds(const std::string& text) {
    BlockList list = blockList(text);
    EXPECT_EQ(list.result, 1);
    EXPECT_EQ(list.message, "");
    list.values.resize(static_cast<std::size_t>(list.count));
    return list.values;
}

TEST(BlockIDStr2Int, ReadsNumbersAndPlaceholders) {
    EXPECT_EQ(blockIds("0,-,2"), (Numbers{0, 255, 2}));
    EXPECT_EQ(blockIds("(7,8)"), (Numbers{7, 8}));
    EXPECT_EQ(blockIds("-5"), (Numbers{255})); // anything may follow the dash
}

TEST(BlockIDStr2Int, NeitherSortsNorDropsDuplicates) {
    EXPECT_EQ(blockIds("3 1 3"), (Numbers{3, 1, 3}));
}

TEST(BlockIDStr2Int, KeepsTheFirst16Items) {
    EXPECT_EQ(blockIds("1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 x 19 20"),
              (Numbers{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}));
}

TEST(BlockIDStr2Int, RejectsATextWithoutItems) {
    const BlockList list = blockList("  ");
    EXPECT_EQ(list.result, 0);
    EXPECT_EQ(list.message, "No block ID specified!\n");
    EXPECT_EQ(list.count, 0);
}

TEST(BlockIDStr2Int, ReportsTheFirstInvalidItem) {
    const BlockList list = blockList("1,x,y");
    EXPECT_EQ(list.result, 0);
    EXPECT_EQ(list.message, "Invalid block ID 'x' specified!\n");
    EXPECT_EQ(list.count, 3);
    EXPECT_EQ(list.values[0], 1u);
    EXPECT_EQ(list.values[1], 4711u);
}

TEST(BlockIDStr2Int, RejectsRangesAndEmptyItems) {
    EXPECT_EQ(blockList("1-3").message, "Invalid block ID '1-3' specified!\n");
    EXPECT_EQ(blockList("1 ,2").message, "Invalid block ID ',2' specified!\n");
    EXPECT_EQ(blockList("\"\"").message, "Invalid block ID '\"' specified!\n");
    EXPECT_EQ(blockList("+1").message, "Invalid block ID '+1' specified!\n");
}

static Numbers idList(const char* text) {
    Numbers values(kMaxListItems, 4711);
    int count = -1;
    EXPECT_EQ(outputOf([&] { TranslateIDList(&count, values.data(), text); }), "");
    values.resize(static_cast<std::size_t>(count));
    return values;
}

TEST(TranslateIDList, AcceptsAnySingleCharacterAsSeparator) {
    EXPECT_EQ(idList("1,2,3"), (Numbers{1, 2, 3}));
    EXPECT_EQ(idList("10 20;30"), (Numbers{10, 20, 30}));
    EXPECT_EQ(idList("1-3"), (Numbers{1, 3}));
}

TEST(TranslateIDList, ReadsAMissingNumberAsZero) {
    EXPECT_EQ(idList("1, 2"), (Numbers{1, 0, 2}));
    EXPECT_EQ(idList(",1"), (Numbers{0, 1}));
    EXPECT_EQ(idList("a"), (Numbers{0}));
    EXPECT_EQ(idList(",,"), (Numbers{0, 0}));
}

TEST(TranslateIDList, EndsWithASeparatorAtTheEnd) {
    EXPECT_EQ(idList("1,"), (Numbers{1}));
}

TEST(TranslateIDList, FindsNothingInAnEmptyText) {
    EXPECT_EQ(idList(""), Numbers{});
}

TEST(TranslateIDList, ReportsNullText) {
    std::uint32_t values[kMaxListItems];
    int count = -1;
    EXPECT_EQ(outputOf([&] { TranslateIDList(&count, values, nullptr); }), "No ID specified!\n");
    EXPECT_EQ(count, 0);
}

TEST(TranslateIDList, Keeps16ItemsAndEightDigitsOfEach) {
    EXPECT_EQ(idList("1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18"),
              (Numbers{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}));
    EXPECT_EQ(idList("12345678,5"), (Numbers{12345678, 5}));
    EXPECT_EQ(idList("123456789,5"), (Numbers{12345678, 5}));
}

TEST(TranslateIDListUpTo, TruncatesToTheCapacity) {
    std::uint32_t values[2] = {};
    int count = -1;
    TranslateIDListUpTo(2, &count, values, "7,8,9");
    EXPECT_EQ(count, 2);
    EXPECT_EQ(values[0], 7u);
    EXPECT_EQ(values[1], 8u);
}

TEST(BlockIDsString, IncrementsTheIdsInPlace) {
    std::uint8_t ids[] = {0, 1, 255};
    EXPECT_STREQ(BlockIDsString(3, ids), "(1,2,-)");
    EXPECT_STREQ(BlockIDsString(3, ids), "(2,3,-)");
    EXPECT_EQ(ids[0], 2);
    EXPECT_EQ(ids[1], 3);
    EXPECT_EQ(ids[2], 255);
}

TEST(BlockIDsString, ShowsNothingBetweenTheParenthesesForNoIds) {
    EXPECT_STREQ(BlockIDsString(0, nullptr), "()");
}

TEST(BlockIDsString, ShowsTheLastIdAsANumber) {
    std::uint8_t ids[] = {254};
    EXPECT_STREQ(BlockIDsString(1, ids), "(255)");
}

TEST(BlockIDsString, OmitsIdsThatDoNotFitIn80Bytes) {
    std::uint8_t ids[32];
    for (std::uint8_t& id : ids)
        id = 99;
    EXPECT_STREQ(BlockIDsString(32, ids), "(100,100,100,100,100,100,100,100,100,100,"
                                          "100,100,100,100,100,100,100,100,100)");
}

TEST(BlockIDsString, HoldsAWholeArrayOfTwoDigitIds) {
    std::uint8_t ids[25];
    for (std::uint8_t& id : ids)
        id = 9;
    EXPECT_STREQ(BlockIDsString(25, ids), "(10,10,10,10,10,10,10,10,10,10,10,10,10,"
                                          "10,10,10,10,10,10,10,10,10,10,10,10)");
}

TEST(BlockExtentIDsString, ShowsIdsUnchanged) {
    const std::uint8_t ids[] = {0, 1, 255, 254};
    EXPECT_STREQ(BlockExtentIDsString(4, ids), "(0,1,-,254)");
    EXPECT_STREQ(BlockExtentIDsString(0, ids), "()");
}

// 26 numbers of two digits, their commas, the parentheses and the NUL are 80 bytes.
TEST(BlockExtentIDsString, FillsItsTextToTheLastByte) {
    const std::vector<std::uint8_t> ids(27, 10);
    const std::string full = BlockExtentIDsString(26, ids.data());
    EXPECT_EQ(full.size(), 79u);
    EXPECT_EQ(full.substr(72), ",10,10)");
    EXPECT_EQ(BlockExtentIDsString(27, ids.data()), full);
}

TEST(BlockExtentIDsString, UsesASeparateBuffer) {
    std::uint8_t drives[] = {3};
    const std::uint8_t extents[] = {7};
    const char* shownDrives = BlockIDsString(1, drives);
    EXPECT_STREQ(BlockExtentIDsString(1, extents), "(7)");
    EXPECT_STREQ(shownDrives, "(4)");
}

using Integers = std::vector<int>;

static Integers sorted(Integers list, int first, int last) {
    MergeSortIntegerList(list.data(), first, last);
    return list;
}

TEST(MergeSortIntegerList, SortsTheRangeAscending) {
    EXPECT_EQ(sorted({5, -1, 3, 3, 255, 0, 2}, 0, 6), (Integers{-1, 0, 2, 3, 3, 5, 255}));
    EXPECT_EQ(sorted({2, 1}, 0, 1), (Integers{1, 2}));
}

TEST(MergeSortIntegerList, LeavesEntriesOutsideTheRangeUnchanged) {
    EXPECT_EQ(sorted({9, 3, 2, 1, 0}, 1, 3), (Integers{9, 1, 2, 3, 0}));
}

TEST(MergeSortIntegerList, LeavesAShortRangeUnchanged) {
    EXPECT_EQ(sorted({2, 1}, 0, 0), (Integers{2, 1}));
    EXPECT_EQ(sorted({2, 1}, 1, 0), (Integers{2, 1}));
}

TEST(MergeIntegerList, MergesAdjacentSortedRanges) {
    Integers list = {9, 1, 4, 6, 2, 4, 5, 7, 0};
    MergeIntegerList(list.data(), 1, 3, 7);
    EXPECT_EQ(list, (Integers{9, 1, 2, 4, 4, 5, 6, 7, 0}));
}

TEST(SearchItemIntList, SearchesOnlyTheFirstCountEntries) {
    const std::uint32_t list[] = {3, 4294967295, 7};
    EXPECT_EQ(SearchItemIntList(list, 3, 7), 1);
    EXPECT_EQ(SearchItemIntList(list, 3, 4294967295), 1);
    EXPECT_EQ(SearchItemIntList(list, 2, 7), 0);
    EXPECT_EQ(SearchItemIntList(list, 3, 4), 0);
    EXPECT_EQ(SearchItemIntList(list, 0, 3), 0);
}
