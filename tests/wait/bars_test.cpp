// The progress display at all widths and heights of a terminal.
#include <gtest/gtest.h>

#include "tests/wait/views.h"
#include "tools/wait/bars.h"
#include "tools/wait/texts.h"

static constexpr std::int64_t kMinute = 60'000;

struct Bars : testing::Test {
    Watch watch;
    std::int64_t now = 3 * kMinute;

    void SetUp() override {
        setenv("TZ", "UTC", 1);
        tzset();
    }
    // An activity seen for three minutes, at 50% now; it makes 2% a minute.
    void add(unsigned kind, const Target& target) {
        Track track;
        track.kind = kind;
        track.target = target;
        for (unsigned minute = 0; minute <= 3; ++minute)
            observeProgress(&track.progress, 44 + 2 * minute, false, minute * kMinute);
        watch.tracks.push_back(track);
    }
    std::vector<std::string> bars(unsigned columns, unsigned rows = 24, bool withController = false) {
        return progressBars(watch, now, 0, {columns, rows, withController});
    }
    std::string only(unsigned columns) {
        const std::vector<std::string> lines = bars(columns);
        return lines.size() == 1 ? lines[0] : "not one line";
    }
};

// 50% are left at 2% a minute: 25 minutes from 00:00. The widest bar has 40 columns.
TEST_F(Bars, ShowEverythingWhereThereIsRoom) {
    add(kRebuilding, arrayTarget());
    EXPECT_EQ(only(200), "rebuild of logical drive 0 Archive  [###################-------------------]   50%"
                         "  0:03:00  2.0%/min  ends 00:25");
}

TEST_F(Bars, FillTheWidth) {
    add(kRebuilding, arrayTarget());
    EXPECT_EQ(only(101), "rebuild of logical drive 0 Archive  [############-------------]   50%"
                         "  0:03:00  2.0%/min  ends 00:25");
    EXPECT_EQ(only(101).size(), 100u);
}

// The usual width: all parts are there, the name is cut.
TEST_F(Bars, CutTheNameFirst) {
    add(kRebuilding, arrayTarget());
    EXPECT_EQ(only(80), "rebuild of logical drive 0 Ar...  [###---]   50%  0:03:00  2.0%/min  ends 00:25");
    EXPECT_EQ(only(80).size(), 79u);
}

// At 42 columns there is room for the bar, but for nothing of the name.
TEST_F(Bars, KeepTheNumberOfAnObject) {
    add(kRebuilding, arrayTarget());
    EXPECT_EQ(only(43), "rebuild of logical drive 0  [###---]   50%");
}

TEST_F(Bars, LeaveOutPartsWhereRoomIsShort) {
    add(kRebuilding, arrayTarget());
    EXPECT_EQ(only(72), "rebuild of logical drive 0 Archive  [###---]   50%  0:03:00  ends 00:25");
    EXPECT_EQ(only(60), "rebuild of logical drive 0 A...  [###---]   50%  ends 00:25");
    EXPECT_EQ(only(50), "rebuild of logical drive 0 A...   50%  ends 00:25");
    EXPECT_EQ(only(41), "rebuild of logical drive 0 Archive   50%");
    EXPECT_EQ(only(30), "rebuild of logical d...   50%");
}

TEST_F(Bars, ShowThePercentageAsLongAsPossible) {
    add(kRebuilding, arrayTarget());
    EXPECT_EQ(only(12), "re...   50%");
    EXPECT_EQ(only(8), ".   50%");
    EXPECT_EQ(only(7), "50%");
    EXPECT_EQ(only(4), "50%");
    EXPECT_EQ(only(3), "..");
    EXPECT_EQ(only(2), ".");
    EXPECT_EQ(only(1), ".");
    EXPECT_EQ(only(0), ".");
}

TEST_F(Bars, NeverReachTheLastColumn) {
    add(kRebuilding, arrayTarget());
    add(kMediaPatrol, driveTarget(17));
    add(kRedundancyChecking, arrayTarget(0, 127, std::string(80, 'x')));
    for (unsigned columns = 2; columns < 300; ++columns)
        for (const std::string& line : bars(columns))
            EXPECT_LT(line.size(), columns);
}

TEST_F(Bars, AreAligned) {
    add(kRebuilding, arrayTarget(0, 0, "A"));
    add(kMediaPatrol, driveTarget(17));
    watch.tracks[1].progress.percent = 100;
    watch.tracks[1].progress.steps.clear();
    watch.tracks[0].paused = true;
    EXPECT_EQ(bars(80), (std::vector<std::string>{"rebuild of logical drive 0 A  [############----"
                                                  "--------]   50%  0:03:00  paused",
                                                  "media patrol of drive 17      [################"
                                                  "########]  100%  0:03:00"}));
}

TEST_F(Bars, NameControllersWhereThereAreSeveral) {
    add(kMigrating, arrayTarget(1, 2, "Data"));
    EXPECT_EQ(bars(100, 24, true)[0].substr(0, 48), "controller 1: migration of logical drive 2 Data ");
}

TEST_F(Bars, ShowUnknownPercentages) {
    add(kRebuilding, arrayTarget());
    watch.tracks[0].progress = {};
    EXPECT_EQ(only(80), "rebuild of logical drive 0 Archive  [--------------------------]    ?%  0:03:00");
}

TEST_F(Bars, FitTheHeight) {
    for (std::uint32_t number = 1; number <= 9; ++number)
        add(kMediaPatrol, driveTarget(number));
    EXPECT_EQ(bars(80, 10).size(), 9u);
    const std::vector<std::string> lines = bars(80, 9);
    ASSERT_EQ(lines.size(), 8u);
    EXPECT_EQ(lines[6].substr(0, 23), "media patrol of drive 7");
    EXPECT_EQ(lines[7], "and 2 more");
    EXPECT_EQ(bars(80, 2), std::vector<std::string>{"and 9 more"});
    EXPECT_EQ(bars(80, 1), std::vector<std::string>{"and 9 more"});
    EXPECT_EQ(bars(80, 0), std::vector<std::string>{"and 9 more"});
}

TEST_F(Bars, AreEmptyWithoutActivities) {
    EXPECT_TRUE(bars(80).empty());
}

// A wide character takes two columns and is never cut in half.
TEST_F(Bars, CountWideCharacters) {
    EXPECT_EQ(columnsOf("abc"), 3u);
    EXPECT_EQ(columnsOf("\xC3\xA4"), 1u);         // a with diaeresis
    EXPECT_EQ(columnsOf("\xE6\x97\xA5"), 2u);     // an ideograph
    EXPECT_EQ(columnsOf("\xF0\x9F\x98\x80"), 2u); // an emoji
    add(kRebuilding, arrayTarget(0, 0, "\xE6\x97\xA5\xE6\x97\xA5\xE6\x97\xA5\xE6\x97\xA5"));
    EXPECT_EQ(only(200).substr(0, 42),
              "rebuild of logical drive 0 \xE6\x97\xA5\xE6\x97\xA5\xE6\x97\xA5\xE6\x97\xA5  [");
    EXPECT_EQ(only(41), "rebuild of logical drive 0 \xE6\x97\xA5\xE6\x97\xA5...   50%");
}

TEST(Texts, Durations) {
    EXPECT_EQ(durationText(0), "0:00:00");
    EXPECT_EQ(durationText(-5), "0:00:00");
    EXPECT_EQ(durationText(3'723'999), "1:02:03");
    EXPECT_EQ(durationText(360'000'000), "100:00:00");
}

TEST(Texts, Rates) {
    EXPECT_EQ(rateText(1.0 / kMinute), "1.0%/min");
    EXPECT_EQ(rateText(0.5 / kMinute), "30.0%/h");
    EXPECT_EQ(rateText(600.0), "36000000.0%/min");
}

// From 1970-01-01 00:00: within half a day, only the time.
TEST(Texts, Ends) {
    setenv("TZ", "UTC", 1);
    tzset();
    EXPECT_EQ(endText(0, 0), "00:00");
    EXPECT_EQ(endText(0, 12 * 60 * kMinute - 1), "11:59");
    EXPECT_EQ(endText(0, 36 * 60 * kMinute), "Jan 02 12:00");
}
