// The regions of a drive.
#include <gtest/gtest.h>

#include "tools/restore/layout.h"

TEST(Layout, FindsAndCutsRegions) {
    Layout layout = {{0, 100, "Data"}, {100, 400, ""}};
    EXPECT_EQ(findRegion(layout, 0), 0u);
    EXPECT_EQ(findRegion(layout, 100), 1u);
    EXPECT_EQ(findRegion(layout, 500), 2u);
    splitRegion(&layout, 1, 150);
    takeRegion(&layout, 2, 50, "Spare");
    ASSERT_EQ(layout.size(), 4u);
    EXPECT_EQ(layout[1].end(), 250u);
    EXPECT_EQ(layout[2].use, "Spare");
    EXPECT_EQ(layout[2].end(), 300u);
    EXPECT_TRUE(layout[3].isFree());
    EXPECT_EQ(layout[3].end(), 500u);
}

TEST(Layout, ReportsWhyARangeCannotBeUsed) {
    const Layout layout = {{0, 100, "Data"}, {100, 100, ""}, {200, 100, ""}};
    EXPECT_EQ(obstacleInRange(layout, 100, 100), "");
    EXPECT_EQ(obstacleInRange(layout, 120, 50), "");
    EXPECT_EQ(obstacleInRange(layout, 50, 100), "is in use by Data");
    EXPECT_EQ(obstacleInRange(layout, 150, 100), "has no single free extent from sector 150 to 250");
    EXPECT_EQ(obstacleInRange(layout, 250, 51), "is too small: 301 sectors are needed, it has 300");
    EXPECT_EQ(obstacleInRange({}, 0, 1), "is too small: 1 sectors are needed, it has 0");
}
