// The text of a block and its size limit.
#include "config/block.h"

#include <gtest/gtest.h>

#include <string>

// A block text followed by a byte that must not change.
class BlockEnd : public testing::Test {
protected:
    char buffer[kBlockTextSize + 1];
    BlockText block = {buffer, 0};

    void SetUp() override { std::memset(buffer, '#', sizeof buffer); }
    void fill(std::size_t length) {
        append(&block, "%s", std::string(length, 'a').c_str());
        ASSERT_EQ(block.length, length);
    }
    void expectEnd(const std::string& end) {
        EXPECT_EQ(block.length, kBlockTextSize - 1);
        EXPECT_EQ(std::string(buffer).substr(block.length - end.size()), end);
        EXPECT_EQ(buffer[kBlockTextSize], '#');
    }
};

TEST_F(BlockEnd, KeepsTextThatFitsExactly) {
    fill(kBlockTextSize - 4);
    append(&block, "%d", 123);
    expectEnd("a123");
}

TEST_F(BlockEnd, OmitsTextThatDoesNotFit) {
    fill(kBlockTextSize - 3);
    append(&block, "%d", 123);
    expectEnd("a12");
    append(&block, "%s", "more");
    expectEnd("a12");
}

TEST_F(BlockEnd, TruncatesLongText) {
    fill(kBlockTextSize - 3);
    append(&block, "%s", std::string(2 * kBlockTextSize, 'b').c_str());
    expectEnd("abb");
}

TEST_F(BlockEnd, AcceptsEmptyText) {
    fill(5);
    append(&block, "%s", "");
    EXPECT_EQ(block.length, 5u);
}

TEST(ReadToken, TruncatesLongWords) {
    const std::string longest(sizeof Token::text - 1, 'w');
    std::FILE* file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    std::fputs((longest + " " + longest + "x next").c_str(), file);
    std::rewind(file);
    Token token;
    for (const std::string& word : {longest, longest, std::string("next")}) {
        EXPECT_TRUE(readToken(file, &token));
        EXPECT_EQ(token.text, word);
    }
    EXPECT_FALSE(readToken(file, &token));
    std::fclose(file);
}
