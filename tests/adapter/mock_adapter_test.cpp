// The mock adapter detects every difference from its plan and stays within the buffers.
#include "tests/mock_adapter.h"

#include <gtest/gtest-spi.h>

#include "adapter/controller.h"
#include "adapter/event.h"
#include "adapter/phydrv.h"
#include "adapter/session.h"

using MockAdapter = MockAdapterTest;

TEST_F(MockAdapter, FailsForACallBeyondThePlan) {
    EXPECT_NONFATAL_FAILURE(EXPECT_EQ(q5_finalize(), 1), "unplanned call q5_finalize");
}

TEST_F(MockAdapter, FailsForAnotherOperation) {
    expectCall("q5_finalize", {});
    EXPECT_NONFATAL_FAILURE(q5_discover(1), "planned call q5_finalize, but got q5_discover");
}

TEST_F(MockAdapter, FailsForOtherBytes) {
    expectCall("q5_discover", bytesOf(1));
    EXPECT_NONFATAL_FAILURE(q5_discover(0x101), "first difference at byte 1");
    expectCall("q5_locatePhyDrv",
               bytesOf(hbaAddress(0), std::uint32_t{0}, std::uint16_t{3}, std::uint32_t{10}));
    EXPECT_NONFATAL_FAILURE(q5_locatePhyDrv(hbaAddress(0), 0, 2, 10), "first difference at byte 12");
}

TEST_F(MockAdapter, FailsForAMissingCall) {
    expectCall("q5_discover", bytesOf(1));
    EXPECT_NONFATAL_FAILURE(expectAllCalled(), "planned call q5_discover was not made");
}

TEST_F(MockAdapter, DefersFailuresWhileOutputIsCaptured) {
    EXPECT_NONFATAL_FAILURE(EXPECT_EQ(outputOf([] { q5_finalize(); }), ""), "unplanned call q5_finalize");
}

TEST_F(MockAdapter, RepliesAsPlanned) {
    std::uint32_t count = 0;
    expectCall("q5_getNumberOfHBA", {}, {7, 0, 0, 0}, 3);
    EXPECT_EQ(q5_getNumberOfHBA(&count), 3);
    EXPECT_EQ(count, 7u);
}

TEST_F(MockAdapter, WritesWithinTheSize) {
    std::uint8_t buffer[4] = {1, 1, 1, 1};
    expectCall("q5_getPhyDrvInfo", queryFor(0, PhyDrvQuery{}, 2), {5, 6, 7, 8});
    const PhyDrvQuery query = {};
    q5_getPhyDrvInfo(hbaAddress(0), 0, &query, buffer, 2);
    EXPECT_EQ(bytesOf(buffer), (Bytes{5, 6, 1, 1}));
}

TEST_F(MockAdapter, ComparesTextsWithTheirNul) {
    int setting = 0;
    expectCall("q5_getDataTransferSpeed",
               bytesOf(hbaAddress(0), std::uint32_t{0}, "DISK 1", "F1", std::uint32_t{4}), bytesOf(9));
    q5_getDataTransferSpeed(hbaAddress(0), 0, "DISK 1", "F1", &setting, 4);
    EXPECT_EQ(setting, 9);
}

TEST_F(MockAdapter, FillsTheEventQueryBeforeTheEvents) {
    EventQuery query = {-1, 5};
    std::uint8_t reply[3] = {};
    expectCall("q5_getHBAEvents", queryFor(1, query, 2), concat({bytesOf(EventQuery{-1, 3}), {7, 8, 9}}));
    q5_getHBAEvents(hbaAddress(1), 0, &query, reply, 2);
    EXPECT_EQ(query.count, 3u);
    EXPECT_EQ(bytesOf(reply), (Bytes{7, 8, 9}));
}

TEST_F(MockAdapter, AcceptsNullPointers) {
    expectCall("q5_initialize", {});
    EXPECT_EQ(q5_initialize(nullptr), 0);
    expectCall("q5_getDriverInfo", bytesOf(hbaAddress(0), std::uint32_t{0}), {1, 2, 3});
    EXPECT_EQ(q5_getDriverInfo(hbaAddress(0), 0, nullptr), 0);
}
