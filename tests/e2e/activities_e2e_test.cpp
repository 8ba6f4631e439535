// Initialization, synchronization and redundancy check from start to end: listed, paused, resumed and
// stopped, as shown by the activity's list, bga and the verbose listing.
#include "tests/e2e/array_session.h"

using Activities = Arrays;

static const std::string kNoInit = "0: No activity for initialization!\n";
static const std::string kNoSync = "0: No activity for synchronization!\n";
static const std::string kNoCheck = "0: No activity for redundancy check!\n";

TEST_F(Activities, InitializationRunsToCompletion) {
    addRaid5();
    advanceClockTo(200);
    EXPECT_EQ(outcomeOf("init"), kNoInit);
    EXPECT_EQ(outcomeOf("init -a start -l 0 -i 0"), "0: Initialization started on Array 0 Type 4\n");
    advanceClockTo(225);
    EXPECT_EQ(outcomeOf("init"),
              "0: Initialization is in progress 25% in logical drive with ID 0 on controller #0!\n");
    EXPECT_EQ(outcomeOf("init -a start -l 0 -i 0"), "0: ");
    EXPECT_EQ(outcomeOf("rc -a start -l 0 -i 0"), "0: ");
    EXPECT_EQ(outcomeOf("init -a resume -l 0 -i 0"), "0: ");
    EXPECT_EQ(outcomeOf("sync"), kNoSync);
    EXPECT_EQ(outcomeOf("rc"), kNoCheck);
    EXPECT_EQ(state(0),
              "Array activity status : Initializing\nArray initialization progress : 25 %\n" + kOnlineLine);
    EXPECT_EQ(outcomeOf("init -a pause -l 0 -i 0"), "0: Initialization paused on Array 0.\n");

    advanceClockTo(1000);
    EXPECT_EQ(outcomeOf("init -l 0"), "0: Initialization is paused!\n");
    EXPECT_EQ(bga(0),
              "0: Array activity status : Initialization Paused\nArray initialization progress : 25 %\n");
    EXPECT_EQ(outcomeOf("init -a pause -l 0 -i 0"), "0: ");
    EXPECT_EQ(outcomeOf("init -a resume -l 0 -i 0"), "0: Initialization resumed on Array 0.\n");
    advanceClockTo(1074);
    EXPECT_EQ(bga(0), "0: Array activity status : Initializing\nArray initialization progress : 99 %\n");
    advanceClockTo(1075);
    EXPECT_EQ(bga(0), kIdleOutcome);
    EXPECT_EQ(outcomeOf("init -a list"), kNoInit);
    EXPECT_EQ(outcomeOf("init -a stop -l 0 -i 0"), "0: ");
    EXPECT_NE(events().find("Event Desciption: Logical drive 0: initialization ended\n"), std::string::npos);
}

TEST_F(Activities, StoppedInitializationRequiresSynchronization) {
    addRaid5();
    EXPECT_EQ(outcomeOf("init -a start -l 0 -i 0"), "0: Initialization started on Array 0 Type 4\n");
    EXPECT_EQ(outcomeOf("init -a stop -l 0 -i 0"), "0: Initialization stopped on Array 0.\n");
    EXPECT_EQ(bga(0), kIdleOutcome);
    EXPECT_EQ(outcomeOf("sync -l 0 -i 0"), "0: Synchronization started on Array 0!\n");
    advanceClockTo(130);
    EXPECT_EQ(outcomeOf("sync"),
              "0: Synchronization is in progress 30% in logical drive with ID 0 on controller #0!\n");
    EXPECT_EQ(outcomeOf("rc"),
              "0: Redundancy check is in progress 30% in logical drive with ID 0 on controller #0!\n");
    for (const char* action : {"pause", "resume", "stop"}) // for redundancy checks only
        EXPECT_EQ(outcomeOf(std::string("rc -a ") + action + " -l 0 -i 0"), "0: ");
    EXPECT_EQ(outcomeOf("sync -l 0 -i 0"), "0: ");
    advanceClockTo(199);
    EXPECT_EQ(state(0),
              "Array activity status : Synchronizing\nArray synchronization progress : 99 %\n" + kOnlineLine);
    advanceClockTo(200);
    EXPECT_EQ(bga(0), kIdleOutcome);
    EXPECT_EQ(outcomeOf("sync"), kNoSync);
}

TEST_F(Activities, RedundancyCheckRunsToCompletion) {
    addRaid5();
    EXPECT_EQ(outcomeOf("rc -a start -l 0 -i 0"), "0: Redundancy check started on Array 0!\n");
    advanceClockTo(110);
    EXPECT_EQ(outcomeOf("rc"),
              "0: Redundancy check is in progress 10% in logical drive with ID 0 on controller #0!\n");
    EXPECT_EQ(outcomeOf("sync"), kNoSync);
    EXPECT_EQ(
        bga(0),
        "0: Array activity status : Redundancy Check In Progress\nArray redundancy check progress : 10 %\n");
    EXPECT_EQ(outcomeOf("rc -a pause -l 0 -i 0"), "0: Redundancy check paused on Array 0.\n");
    advanceClockTo(500);
    EXPECT_EQ(outcomeOf("rc"), "0: Redundancy check is paused!\n");
    EXPECT_EQ(state(0),
              "Array activity status : Redundancy Check Paused\nArray redundancy check progress : 10 %\n" +
                  kOnlineLine);
    EXPECT_EQ(outcomeOf("rc -a resume -l 0 -i 0"), "0: Redundancy check resumed on Array 0.\n");
    advanceClockTo(520);
    EXPECT_EQ(outcomeOf("rc"),
              "0: Redundancy check is in progress 30% in logical drive with ID 0 on controller #0!\n");
    EXPECT_EQ(outcomeOf("rc -a stop -l 0 -i 0"), "0: Redundancy check stopped on Array 0.\n");
    EXPECT_EQ(outcomeOf("rc"), kNoCheck);
    EXPECT_EQ(outcomeOf("rc -a stop -l 0 -i 0"), "0: ");
}

TEST_F(Activities, RedundancyCheckRepairsUnlessDisabled) {
    addRaid5();
    EXPECT_EQ(bga(0), kIdleOutcome);
    std::string text = s.worldText();
    const std::string none = "\"inconsistencies\": 0";
    ASSERT_NE(text.find(none), std::string::npos);
    s.useWorld(text.replace(text.find(none), none.size(), "\"inconsistencies\": 4"));

    EXPECT_EQ(outcomeOf("rc -a start -n -l 0 -i 0"), "0: Redundancy check started on Array 0!\n");
    advanceClockTo(200);
    EXPECT_EQ(outcomeOf("rc"), kNoCheck);
    EXPECT_EQ(outcomeOf("rc -a start -l 0 -i 0"), "0: Redundancy check started on Array 0!\n");
    advanceClockTo(300);
    EXPECT_EQ(outcomeOf("rc"), kNoCheck);
    EXPECT_EQ(outcomeOf("rc -a start -l 0 -i 0"), "0: Redundancy check started on Array 0!\n");
    advanceClockTo(400);
    EXPECT_EQ(outcomeOf("rc"), kNoCheck);
    const std::string found = "Logical drive 0: redundancy check found ", newestFirst = events();
    const std::size_t third = newestFirst.find(found + "0 inconsistencies\n");
    const std::size_t second = newestFirst.find(found + "4 inconsistencies, repaired\n", third);
    EXPECT_NE(newestFirst.find(found + "4 inconsistencies, left as they are\n", second), std::string::npos);
    EXPECT_LT(third, second);
    EXPECT_NE(second, std::string::npos);
}

TEST_F(Activities, RefusedWithoutRedundancy) {
    EXPECT_EQ(add("1 2", "name=a,raid=raid0,capacity=1600"), "0: ");
    const std::string before = s.worldWithoutRefusals();
    EXPECT_EQ(outcomeOf("rc -a start -l 0 -i 0"), "8: Redundancy check failed to start on Array 0!\n");
    EXPECT_EQ(outcomeOf("sync -l 0 -i 0"), "8: Synchronization failed to start on Array 0!\n");
    EXPECT_EQ(s.worldWithoutRefusals(), before);
    EXPECT_EQ(outcomeOf("init -a start -l 0 -i 0"), "0: Initialization started on Array 0 Type 4\n");
}

TEST_F(Activities, FollowControllerRate) {
    EXPECT_EQ(add("1 2", "name=a,raid=raid1,capacity=800"), "0: ");
    advanceClockTo(10); // 80 of 800 MB done; from now on 40 MB a second
    EXPECT_EQ(outcomeOf("ctrl -a mod -s syncrate=5"), "0: ");
    advanceClockTo(14);
    EXPECT_EQ(bga(0), "0: Array activity status : Synchronizing\nArray synchronization progress : 30 %\n");
}

TEST_F(Activities, ReportUnknownDrives) {
    const char* named[][2] = {
        {"init -l 3", "5: No logical drive with ID 3 is existed!\n"},
        {"init -a start -l 3 -i 0", "5: No logical drive with ID 3 is existed!\n"},
        {"sync", "5: No logical drive with ID 0 is existed!\n"},
        {"sync -l 3 -i 0", "5: No logical drive with ID 3 on controller #0 is existed!\n"},
        {"rc -l 3", "5: No logical drive with ID 3 is existed!\n"},
        {"rc -a pause -l 3 -i 9", "5: No logical drive with ID 3 on controller #9 is existed!\n"},
        {"migrate -l 3", "5: No logical drive with ID 3 in controller #0 is existed!\n"},
        {"rb -i 9", "5: No logical drive with ID 0 is existed!\n"},
        {"rb -a abort -l 3 -i 0", "5: No logical drive with ID 3 on controller #0 is existed!\n"},
        {"bga -l 3 -i 1", "5: No array with ID 3 in controller #1 is existed\n"},
    };
    for (const auto& [line, message] : named)
        EXPECT_EQ(outcomeOf(line), message);
}

TEST_F(Activities, RejectUnknownActions) {
    for (const char* word : {"init", "sync", "rc", "migrate", "rb", "bga"})
        EXPECT_EQ(outcomeOf(std::string(word) + " -a nothing"),
                  "9: Invalid command for \"" + std::string(word) + "\"\n");
    EXPECT_EQ(outcomeOf("sync -a start -l 0 -i 0"), "9: Invalid command for \"sync\"\n");
    EXPECT_EQ(outcomeOf("rb -a stop -l 0 -i 0"), "9: Invalid command for \"rb\"\n");
    EXPECT_EQ(outcomeOf("migrate -a stop -l 0 -i 0"), "9: Invalid command for \"migrate\"\n");
}

TEST_F(Activities, ReadStaleWords) {
    addRaid5();
    EXPECT_EQ(outcomeOf("init -a start -l 0 -i 0"), "0: Initialization started on Array 0 Type 4\n");
    const std::string lines = "Array activity status : Initializing\nArray initialization progress : 0 %\n";
    const ProcessOutcome outcome = s.prompt("bga -l 0 -i 0\nbga -l 7\nbga -l\n\nexit\n");
    // The third line reads its value from the second; the fourth runs the third again, without words.
    const std::string missing = "No array with ID 7 in controller #0 is existed\n";
    EXPECT_EQ(outcome,
              (ProcessOutcome{
                  0, "cli>" + lines + "cli>" + missing + "cli>" + missing + "cli>" + lines + "cli>", ""}));
}
