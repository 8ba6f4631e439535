// Texts made fit for one line.
#include "snapshot/text.h"

#include <gtest/gtest.h>

TEST(Printable, KeepsTextAndEscapesWhatChangesTheDisplay) {
    EXPECT_EQ(printable("Archive 1"), "Archive 1");
    EXPECT_EQ(printable("\u00fc\u65e5\U0001F600"), "\u00fc\u65e5\U0001F600");
    EXPECT_EQ(printable("a\\b"), "a\\\\b");
    EXPECT_EQ(printable("a\nb\t\x1b[2J\x7f"), "a\\x0ab\\x09\\x1b[2J\\x7f");
    EXPECT_EQ(printable("\u0085\u202e\u2028\ufeff"),
              "\\xc2\\x85\\xe2\\x80\\xae\\xe2\\x80\\xa8\\xef\\xbb\\xbf");
    EXPECT_EQ(printable("\xff\xc3"), "\\xff\\xc3");
    EXPECT_EQ(printable(std::string_view("\0", 1)), "\\x00");
}

TEST(Text, IsReadFromALine) {
    for (const std::string text :
         {"", "Archive 1", "a\\b\\\\", "\\x41", "a\nb\x1b", "\u00fc\u202e", "\xff\\"})
        EXPECT_EQ(fromPrintable(printable(text)), text);
    EXPECT_EQ(fromPrintable("a\\x41b\\\\x41"), "aAb\\x41");
    EXPECT_EQ(fromPrintable("\\"), "\\");
    EXPECT_EQ(fromPrintable("\\x4"), "\\x4");
    EXPECT_EQ(fromPrintable("\\x4g"), "\\x4g");
    EXPECT_EQ(fromPrintable("\\q"), "\\q");
}

TEST(Utf8, RejectsInvalidBytes) {
    for (const char* good :
         {"", "a", "\u0080", "\u07ff", "\u0800", "\ud7ff", "\ue000", "\U00010000", "\U0010ffff"})
        EXPECT_TRUE(isUtf8(good)) << good;
    for (const char* bad : {"\x80", "\xc0\x80", "\xc1\xbf", "\xe0\x9f\xbf", "\xed\xa0\x80",
                            "\xf0\x8f\xbf\xbf", "\xf4\x90\x80\x80", "\xf5\x80\x80\x80", "\xe2\x82", "a\xffz"})
        EXPECT_FALSE(isUtf8(bad)) << bad;
}

TEST(Utf8, ReplacesEachWrongByte) {
    EXPECT_EQ(asUtf8("a\xff\xfez"), "a\ufffd\ufffdz");
    EXPECT_EQ(asUtf8("\xe2\x82"), "\ufffd\ufffd");
}

TEST(Trimmed, RemovesBlanksAtBothEnds) {
    EXPECT_EQ(trimmed("  a b  "), "a b");
    EXPECT_EQ(trimmed("   "), "");
    EXPECT_EQ(trimmed(""), "");
}

TEST(Counted, UsesThePlural) {
    EXPECT_EQ(counted(0, "drive"), "0 drives");
    EXPECT_EQ(counted(1, "drive"), "1 drive");
    EXPECT_EQ(counted(2, "drive"), "2 drives");
}

TEST(Decimal, PlacesThePoint) {
    EXPECT_EQ(decimal(12060, 3), "12.060");
    EXPECT_EQ(decimal(5, 1), "0.5");
    EXPECT_EQ(decimal(-5, 1), "-0.5");
    EXPECT_EQ(decimal(0, 2), "0.00");
    EXPECT_EQ(decimal(-2731, 1), "-273.1");
}
