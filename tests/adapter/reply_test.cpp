// Reading replies and records with invalid counts.
#include "adapter/reply.h"

#include <cstdio>

#include "adapter/logdrv.h"
#include "adapter/phydrv.h"
#include "tests/mock_adapter.h"

static std::size_t recordCount(std::uint32_t bytesUsed) {
    Reply<LogDrvInfo, 2> reply = {};
    reply.header.bytesUsed = bytesUsed;
    return records(reply).size();
}

TEST(ReplyRecords, AreNoneForAByteCountBelowTheHeader) {
    EXPECT_EQ(recordCount(0), 0u);
    EXPECT_EQ(recordCount(63), 0u);
}

TEST(ReplyRecords, AreNoneForAnIncompleteRecord) {
    EXPECT_EQ(recordCount(64), 0u);
    EXPECT_EQ(recordCount(64 + 207), 0u);
}

TEST(ReplyRecords, AreTheCompleteRecordsOfTheByteCount) {
    EXPECT_EQ(recordCount(64 + 208), 1u);
    EXPECT_EQ(recordCount(64 + 2 * 208 - 1), 1u);
    EXPECT_EQ(recordCount(64 + 2 * 208), 2u);
}

TEST(ReplyRecords, StayWithinTheBuffer) {
    EXPECT_EQ(recordCount(64 + 3 * 208), 2u);
    EXPECT_EQ(recordCount(0xFFFFFFFF), 2u);
}

TEST(ReplyRecords, FollowTheHeader) {
    Reply<LogDrvInfo, 2> reply = {};
    reply.header.bytesUsed = 64 + 2 * 208;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(&reply);
    EXPECT_EQ(static_cast<const void*>(&records(reply)[0]), bytes + 64);
    EXPECT_EQ(static_cast<const void*>(&records(reply)[1]), bytes + 64 + 208);
}

TEST(FieldPrintfArgs, EndAtTheNul) {
    struct {
        char text[6] = {'a', 'b', '\0', 'c', 'd', 'e'};
    } record;
    EXPECT_EQ(outputOf([&] { std::printf("<%.*s>", FIELD_PRINTF_ARGS(record.text)); }), "<ab>");
}

TEST(FieldPrintfArgs, EndWithTheField) {
    struct {
        char text[4] = {'a', 'b', 'c', 'd'};
        char next[4] = {'n', 'e', 'x', 't'};
    } record;
    EXPECT_EQ(outputOf([&] { std::printf("<%.*s>", FIELD_PRINTF_ARGS(record.text)); }), "<abcd>");
}

TEST(Extents, MatchTheExtentCount) {
    PhyDrvInfo drive = {};
    EXPECT_EQ(extents(drive).size(), 0u);
    drive.extentCount = 3;
    EXPECT_EQ(extents(drive).size(), 3u);
    EXPECT_EQ(extents(drive).data(), drive.extent);
    drive.extentCount = 16;
    EXPECT_EQ(extents(drive).size(), 16u);
}

TEST(Extents, AreLimitedToTheArray) {
    PhyDrvInfo drive = {};
    drive.extentCount = 17;
    EXPECT_EQ(extents(drive).size(), 16u);
    drive.extentCount = 255;
    EXPECT_EQ(extents(drive).size(), 16u);
}

TEST(BoundedMemberCount, IsTheDiskCountWithinTheArray) {
    LogDrvInfo drive = {};
    EXPECT_EQ(boundedMemberCount(drive), 0);
    drive.diskCount = 31;
    EXPECT_EQ(boundedMemberCount(drive), 31);
    drive.diskCount = 32;
    EXPECT_EQ(boundedMemberCount(drive), 32);
}

TEST(BoundedMemberCount, IsLimitedToTheArray) {
    LogDrvInfo drive = {};
    drive.diskCount = 33;
    EXPECT_EQ(boundedMemberCount(drive), 32);
    drive.diskCount = 0xFFFF;
    EXPECT_EQ(boundedMemberCount(drive), 32);
}

TEST(HbaAddress, UsesTheLowSixteenBitsOfTheId) {
    EXPECT_EQ(bytesOf(hbaAddress(1)), (Bytes{1, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(bytesOf(hbaAddress(0xFFFFFFFF)), (Bytes{0xFF, 0xFF, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(bytesOf(hbaAddress(0x10002)), (Bytes{2, 0, 0, 0, 0, 0, 0, 0}));
}
