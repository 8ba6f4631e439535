// Rate and remaining time of an activity, from its percentages.
#include <gtest/gtest.h>

#include "tools/wait/progress.h"

static constexpr std::int64_t kMinute = 60'000;

// A progress that was read with these percentages, one a minute.
static Progress readEveryMinute(const std::vector<unsigned>& percents) {
    Progress progress;
    for (std::size_t i = 0; i < percents.size(); ++i)
        observeProgress(&progress, percents[i], false, static_cast<std::int64_t>(i) * kMinute);
    return progress;
}

// 10% may be 10.0 or 10.9: the first step is a starting point, the second one makes a rate.
TEST(Rate, IsUnknownUntilTwoSteps) {
    EXPECT_FALSE(progressRate(readEveryMinute({}), 0));
    EXPECT_FALSE(progressRate(readEveryMinute({10}), kMinute));
    EXPECT_FALSE(progressRate(readEveryMinute({10, 11}), kMinute));
    EXPECT_FALSE(timeLeft(readEveryMinute({10, 11}), kMinute));
    EXPECT_FALSE(progressRate(readEveryMinute({10, 10, 10}), 2 * kMinute));
}

// Steps to 12% at minute 1 and 14% at minute 2: 2% a minute, 86% left.
TEST(Rate, CountsFromTheFirstStep) {
    const Progress progress = readEveryMinute({10, 12, 14});
    EXPECT_DOUBLE_EQ(*progressRate(progress, 2 * kMinute), 2.0 / kMinute);
    EXPECT_EQ(timeLeft(progress, 2 * kMinute), 43 * kMinute);
}

// Half a minute after the last step, 1% more is done; after that, the next step is not assumed.
TEST(Rate, AssumesAtMostOnePercentMore) {
    const Progress progress = readEveryMinute({10, 12, 14});
    EXPECT_EQ(timeLeft(progress, 2 * kMinute + kMinute / 2), 42 * kMinute + kMinute / 2);
}

// From 1 to 3 minutes, at most 14% + 1% - 12% = 3% in 4 minutes when nothing has come until minute 5.
TEST(Rate, FallsWhenTheNextStepIsOverdue) {
    const Progress progress = readEveryMinute({10, 12, 14});
    EXPECT_DOUBLE_EQ(*progressRate(progress, 5 * kMinute), 3.0 / (4 * kMinute));
    EXPECT_EQ(timeLeft(progress, 5 * kMinute), (85 * 4 * kMinute) / 3);
}

// 11 steps are kept: the first ones, slower, no longer count.
TEST(Rate, FollowsTheLatestSteps) {
    std::vector<unsigned> percents = {0, 1, 2, 3};
    for (unsigned percent = 5; percent <= 25; percent += 2)
        percents.push_back(percent);
    const std::int64_t now = static_cast<std::int64_t>(percents.size() - 1) * kMinute;
    EXPECT_DOUBLE_EQ(*progressRate(readEveryMinute(percents), now), 2.0 / kMinute);
}

TEST(Rate, StartsOverWhenThePercentageFalls) {
    Progress progress = readEveryMinute({10, 20, 30, 5});
    EXPECT_EQ(progress.percent, 5u);
    EXPECT_FALSE(progressRate(progress, 3 * kMinute));
    observeProgress(&progress, 6, false, 4 * kMinute);
    observeProgress(&progress, 7, false, 5 * kMinute);
    EXPECT_DOUBLE_EQ(*progressRate(progress, 5 * kMinute), 1.0 / kMinute);
}

TEST(Rate, StartsOverAfterAPause) {
    Progress progress = readEveryMinute({10, 20, 30});
    observeProgress(&progress, 30, true, 3 * kMinute);
    EXPECT_FALSE(progressRate(progress, 3 * kMinute));
    observeProgress(&progress, 31, false, 100 * kMinute);
    EXPECT_FALSE(progressRate(progress, 100 * kMinute));
}

TEST(Rate, KeepsThePercentageThatCannotBeRead) {
    Progress progress = readEveryMinute({10, 20, 30});
    observeProgress(&progress, std::nullopt, false, 3 * kMinute);
    EXPECT_EQ(progress.percent, 30u);
    EXPECT_TRUE(progressRate(progress, 3 * kMinute));
}

TEST(Rate, BoundsImpossiblePercentages) {
    Progress progress = readEveryMinute({10, 20, 65535});
    EXPECT_EQ(progress.percent, 100u);
    EXPECT_EQ(timeLeft(progress, 2 * kMinute), 0);
    observeProgress(&progress, 4'000'000'000u, false, 3 * kMinute);
    EXPECT_EQ(progress.percent, 100u);
}

// Two steps in the same millisecond.
TEST(Rate, IsUnknownWithoutTime) {
    Progress progress;
    for (const unsigned percent : {1u, 2u, 3u})
        observeProgress(&progress, percent, false, 0);
    EXPECT_FALSE(progressRate(progress, 0));
    EXPECT_FALSE(timeLeft(progress, 1000));
}

// At 1% in 100 days, the end is almost 27 years away.
TEST(TimeLeft, IsUnknownBeyondAYear) {
    Progress progress;
    for (std::int64_t i = 0; i < 3; ++i)
        observeProgress(&progress, static_cast<unsigned>(i), false, i * 100 * 24 * 60 * kMinute);
    EXPECT_TRUE(progressRate(progress, 200 * 24 * 60 * kMinute));
    EXPECT_FALSE(timeLeft(progress, 200 * 24 * 60 * kMinute));
}
