// Rules that make operations fail, and the recorded reasons of refusals.
#include <chrono>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "simulator/operations/call.h"
#include "tests/simulator/faulted_world.h"

class Rules : public FaultedWorld {
protected:
    void SetUp() override { open("bench"); }
    static void add(const q5sim::Rule& rule) {
        EXPECT_EQ(q5sim::changeWorld([&](q5sim::World& world, std::int64_t) {
                      world.rules.push_back(rule);
                      return 0;
                  }),
                  0);
    }
    static q5sim::Rule rule(std::uint8_t kind, const std::string& operation) {
        q5sim::Rule made;
        made.kind = kind;
        made.operation = operation;
        return made;
    }
    static int buzzer() { return q5_turnOffBuzzer(hbaAddress(0), 0, 0); }
    static std::string newestReason() {
        const std::vector<q5sim::Refusal>& all = q5sim::currentWorld()->refusals;
        return all.empty() ? "" : all[0].operation + ": " + all[0].reason;
    }
};

TEST_F(Rules, RefusesByGlobAfterAndTimes) {
    q5sim::Rule refuse = rule(q5sim::kRefuseCall, "q5_turn*Buzzer");
    refuse.after = 1;
    refuse.times = 2;
    refuse.result = 77;
    add(refuse);
    EXPECT_EQ(buzzer(), 0);
    EXPECT_EQ(buzzer(), 77);
    EXPECT_EQ(q5_turnOnBuzzer(hbaAddress(0), 0, 0), 77);
    EXPECT_EQ(newestReason(), "q5_turnOnBuzzer: refused by rule 1");
    EXPECT_EQ(buzzer(), 0);
    EXPECT_EQ(q5sim::currentWorld()->rules[0].calls, 4u);
    EXPECT_EQ(q5sim::currentWorld()->rules[0].hits, 2u);
}

TEST_F(Rules, OtherOperationsAreNotCounted) {
    add(rule(q5sim::kRefuseCall, "q5_turnOnBuzzer"));
    EXPECT_EQ(buzzer(), 0);
    EXPECT_EQ(q5sim::currentWorld()->rules[0].calls, 0u);
}

TEST_F(Rules, ZeroReplySucceedsWithNothing) {
    add(rule(q5sim::kZeroReply, "q5_getPhyDrvInfo"));
    Reply<PhyDrvInfo, 1> reply = {};
    const PhyDrvQuery query = {0, 1, kAllDrives, {}};
    EXPECT_EQ(q5_getPhyDrvInfo(hbaAddress(0), 0, &query, &reply, sizeof reply), 0);
    EXPECT_EQ(reply.header.bytesUsed, 0u);
    EXPECT_EQ(reply.record[0].capacity, 0u);
}

TEST_F(Rules, ShortReplyEndsInTheMiddle) {
    add(rule(q5sim::kShortReply, "q5_getPhyDrvInfo"));
    Reply<PhyDrvInfo, 2> reply = {};
    const PhyDrvQuery query = {0, 2, kAllDrives, {}};
    EXPECT_EQ(q5_getPhyDrvInfo(hbaAddress(0), 0, &query, &reply, sizeof reply), 0);
    EXPECT_EQ(reply.header.bytesUsed, 64u + 664);
    EXPECT_EQ(reply.record[0].capacity, 2048000u);
    EXPECT_EQ(reply.record[1].capacity, 0u);
}

TEST_F(Rules, HangEndsWhenItsRuleIsCleared) {
    add(rule(q5sim::kHangCall, "q5_turnOffBuzzer"));
    const std::string text = fileText();
    const pid_t child = fork();
    if (child == 0)
        _exit(buzzer());
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_EQ(waitpid(child, nullptr, WNOHANG), 0);
    EXPECT_EQ(q5sim::changeWorld([](q5sim::World& world, std::int64_t) {
                  world.rules.clear();
                  return 0;
              }),
              0);
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST_F(Rules, RefusedInitializationEndsTheSession) {
    add(rule(q5sim::kRefuseCall, "q5_initialize"));
    q5_finalize();
    EXPECT_EQ(initialize(), 1);
    EXPECT_NE(q5_discover(1), 0);
}

// Also operations that are about no controller.
TEST_F(Rules, RefusedCountAndEndAreRecorded) {
    add(rule(q5sim::kRefuseCall, "q5_getNumberOfHBA"));
    add(rule(q5sim::kRefuseCall, "q5_finalize"));
    std::uint32_t count = 99;
    EXPECT_EQ(q5_getNumberOfHBA(&count), 1);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(newestReason(), "q5_getNumberOfHBA: refused by rule 1");
    EXPECT_EQ(q5_finalize(), 1);
    EXPECT_EQ(newestReason(), "q5_finalize: refused by rule 2");
}

TEST_F(Rules, ReasonsAreRecordedNewestFirst) {
    EXPECT_EQ(create(request(kRaid5, 800, {0, 1, 2})), 0);
    waitSeconds(50);
    EXPECT_NE(rebuild(5, 0), 0);
    EXPECT_EQ(newestReason(), "q5_startHBARebuildExtent: rebuild of logical drive 0: no member is lost");
    EXPECT_NE(create(request(kRaid5, 800, {3, 4})), 0);
    EXPECT_EQ(newestReason(),
              "q5_addHBAArray: creation: the level cannot have these members, parity and subarrays");
    EXPECT_EQ(q5sim::currentWorld()->refusals.size(), 2u);
    EXPECT_NE(create(request(kRaid5, 800, {3, 4})), 0); // the same again
    EXPECT_EQ(q5sim::currentWorld()->refusals.size(), 2u);
}

TEST_F(Rules, KeepsSixteenReasons) {
    for (std::uint16_t id = 0; id < 20; id++)
        EXPECT_NE(q5_locatePhyDrv(hbaAddress(0), 0, static_cast<std::uint16_t>(100 + id), 5), 0);
    EXPECT_EQ(q5sim::currentWorld()->refusals.size(), 16u);
    EXPECT_EQ(q5sim::currentWorld()->olderRefusals, 4u);
    EXPECT_EQ(newestReason(),
              "q5_locatePhyDrv: locating drive 120: there is no such drive, or no time is given");
}
