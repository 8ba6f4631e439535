// The lives of initialisation, synchronisation and redundancy check: started, watched, paused, resumed,
// stopped and ended, as the activity's own list, bga and the verbose listing show them.
#include "tests/e2e/array_session.h"

using Activities = Arrays;

static const std::string kNoInit = "0: No activity for initialization!\n";
static const std::string kNoSync = "0: No activity for synchronization!\n";
static const std::string kNoCheck = "0: No activity for redundancy check!\n";

TEST_F(Activities, InitializationGoesThroughItsLife) {
    addRaid5();
    advanceClockTo(200);
    EXPECT_EQ(told("init"), kNoInit);
    EXPECT_EQ(told("init -a start -l 0 -i 0"), "0: Initialization started on Array 0 Type 4\n");
    advanceClockTo(225);
    EXPECT_EQ(told("init"),
              "0: Initialization is in progress 25% in logical drive with ID 0 on controller #0!\n");
    EXPECT_EQ(told("init -a start -l 0 -i 0"), "0: ");
    EXPECT_EQ(told("rc -a start -l 0 -i 0"), "0: ");
    EXPECT_EQ(told("init -a resume -l 0 -i 0"), "0: ");
    EXPECT_EQ(told("sync"), kNoSync);
    EXPECT_EQ(told("rc"), kNoCheck);
    EXPECT_EQ(state(0),
              "Array activity status : Initializing\nArray initialization progress : 25 %\n" + kOnlineLine);
    EXPECT_EQ(told("init -a pause -l 0 -i 0"), "0: Initialization paused on Array 0.\n");

    advanceClockTo(1000);
    EXPECT_EQ(told("init -l 0"), "0: Initialization is paused!\n");
    EXPECT_EQ(bga(0),
              "0: Array activity status : Initialization Paused\nArray initialization progress : 25 %\n");
    EXPECT_EQ(told("init -a pause -l 0 -i 0"), "0: ");
    EXPECT_EQ(told("init -a resume -l 0 -i 0"), "0: Initialization resumed on Array 0.\n");
    advanceClockTo(1074);
    EXPECT_EQ(bga(0), "0: Array activity status : Initializing\nArray initialization progress : 99 %\n");
    advanceClockTo(1075);
    EXPECT_EQ(bga(0), kIdleTold);
    EXPECT_EQ(told("init -a list"), kNoInit);
    EXPECT_EQ(told("init -a stop -l 0 -i 0"), "0: ");
    EXPECT_NE(events().find("Event Desciption: Logical drive 0: initialization ended\n"), std::string::npos);
}

TEST_F(Activities, AStoppedInitializationLeavesASynchronizationToDo) {
    addRaid5();
    EXPECT_EQ(told("init -a start -l 0 -i 0"), "0: Initialization started on Array 0 Type 4\n");
    EXPECT_EQ(told("init -a stop -l 0 -i 0"), "0: Initialization stopped on Array 0.\n");
    EXPECT_EQ(bga(0), kIdleTold);
    EXPECT_EQ(told("sync -l 0 -i 0"), "0: Synchronization started on Array 0!\n");
    advanceClockTo(130);
    EXPECT_EQ(told("sync"),
              "0: Synchronization is in progress 30% in logical drive with ID 0 on controller #0!\n");
    EXPECT_EQ(told("rc"),
              "0: Redundancy check is in progress 30% in logical drive with ID 0 on controller #0!\n");
    for (const char* action : {"pause", "resume", "stop"}) // they steer checks only
        EXPECT_EQ(told(std::string("rc -a ") + action + " -l 0 -i 0"), "0: ");
    EXPECT_EQ(told("sync -l 0 -i 0"), "0: ");
    advanceClockTo(199);
    EXPECT_EQ(state(0),
              "Array activity status : Synchronizing\nArray synchronization progress : 99 %\n" + kOnlineLine);
    advanceClockTo(200);
    EXPECT_EQ(bga(0), kIdleTold);
    EXPECT_EQ(told("sync"), kNoSync);
}

TEST_F(Activities, RedundancyCheckGoesThroughItsLife) {
    addRaid5();
    EXPECT_EQ(told("rc -a start -l 0 -i 0"), "0: Redundancy check started on Array 0!\n");
    advanceClockTo(110);
    EXPECT_EQ(told("rc"),
              "0: Redundancy check is in progress 10% in logical drive with ID 0 on controller #0!\n");
    EXPECT_EQ(told("sync"), kNoSync);
    EXPECT_EQ(
        bga(0),
        "0: Array activity status : Redundancy Check In Progress\nArray redundancy check progress : 10 %\n");
    EXPECT_EQ(told("rc -a pause -l 0 -i 0"), "0: Redundancy check paused on Array 0.\n");
    advanceClockTo(500);
    EXPECT_EQ(told("rc"), "0: Redundancy check is paused!\n");
    EXPECT_EQ(state(0),
              "Array activity status : Redundancy Check Paused\nArray redundancy check progress : 10 %\n" +
                  kOnlineLine);
    EXPECT_EQ(told("rc -a resume -l 0 -i 0"), "0: Redundancy check resumed on Array 0.\n");
    advanceClockTo(520);
    EXPECT_EQ(told("rc"),
              "0: Redundancy check is in progress 30% in logical drive with ID 0 on controller #0!\n");
    EXPECT_EQ(told("rc -a stop -l 0 -i 0"), "0: Redundancy check stopped on Array 0.\n");
    EXPECT_EQ(told("rc"), kNoCheck);
    EXPECT_EQ(told("rc -a stop -l 0 -i 0"), "0: ");
}

TEST_F(Activities, RedundancyCheckMendsUnlessTold) {
    addRaid5();
    EXPECT_EQ(bga(0), kIdleTold);
    std::string text = s.worldText();
    const std::string none = "\"inconsistencies\": 0";
    ASSERT_NE(text.find(none), std::string::npos);
    s.useWorld(text.replace(text.find(none), none.size(), "\"inconsistencies\": 4"));

    EXPECT_EQ(told("rc -a start -n -l 0 -i 0"), "0: Redundancy check started on Array 0!\n");
    advanceClockTo(200);
    EXPECT_EQ(told("rc"), kNoCheck);
    EXPECT_EQ(told("rc -a start -l 0 -i 0"), "0: Redundancy check started on Array 0!\n");
    advanceClockTo(300);
    EXPECT_EQ(told("rc"), kNoCheck);
    EXPECT_EQ(told("rc -a start -l 0 -i 0"), "0: Redundancy check started on Array 0!\n");
    advanceClockTo(400);
    EXPECT_EQ(told("rc"), kNoCheck);
    const std::string found = "Logical drive 0: redundancy check found ", newestFirst = events();
    const std::size_t third = newestFirst.find(found + "0 inconsistencies\n");
    const std::size_t second = newestFirst.find(found + "4 inconsistencies, mended\n", third);
    EXPECT_NE(newestFirst.find(found + "4 inconsistencies, left as they are\n", second), std::string::npos);
    EXPECT_LT(third, second);
    EXPECT_NE(second, std::string::npos);
}

TEST_F(Activities, AreRefusedWhereThereIsNoRedundancy) {
    EXPECT_EQ(add("1 2", "name=a,raid=raid0,capacity=1600"), "0: ");
    const std::string before = s.worldText();
    EXPECT_EQ(told("rc -a start -l 0 -i 0"), "8: Redundancy check failed to start on Array 0!\n");
    EXPECT_EQ(told("sync -l 0 -i 0"), "8: Synchronization failed to start on Array 0!\n");
    EXPECT_EQ(s.worldText(), before);
    EXPECT_EQ(told("init -a start -l 0 -i 0"), "0: Initialization started on Array 0 Type 4\n");
}

TEST_F(Activities, FollowTheControllersRate) {
    EXPECT_EQ(add("1 2", "name=a,raid=raid1,capacity=800"), "0: ");
    advanceClockTo(10); // 80 of 800 MB done; from now on 40 MB a second
    EXPECT_EQ(told("ctrl -a mod -s syncrate=5"), "0: ");
    advanceClockTo(14);
    EXPECT_EQ(bga(0), "0: Array activity status : Synchronizing\nArray synchronization progress : 30 %\n");
}

TEST_F(Activities, NameDrivesThatDoNotExist) {
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
        EXPECT_EQ(told(line), message);
}

TEST_F(Activities, ActionsThatDoNotExistAreUnknown) {
    for (const char* word : {"init", "sync", "rc", "migrate", "rb", "bga"})
        EXPECT_EQ(told(std::string(word) + " -a nothing"),
                  "9: Invalid command for \"" + std::string(word) + "\"\n");
    EXPECT_EQ(told("sync -a start -l 0 -i 0"), "9: Invalid command for \"sync\"\n");
    EXPECT_EQ(told("rb -a stop -l 0 -i 0"), "9: Invalid command for \"rb\"\n");
    EXPECT_EQ(told("migrate -a stop -l 0 -i 0"), "9: Invalid command for \"migrate\"\n");
}

TEST_F(Activities, AreReadFromALineTypedBefore) {
    addRaid5();
    EXPECT_EQ(told("init -a start -l 0 -i 0"), "0: Initialization started on Array 0 Type 4\n");
    const std::string lines = "Array activity status : Initializing\nArray initialization progress : 0 %\n";
    const ProcessOutcome outcome = s.prompt("bga -l 0 -i 0\nbga -l 7\nbga -l\n\nexit\n");
    // The third line's value is the second one's; the fourth runs the third again, without its words.
    const std::string missing = "No array with ID 7 in controller #0 is existed\n";
    EXPECT_EQ(outcome,
              (ProcessOutcome{
                  0, "cli>" + lines + "cli>" + missing + "cli>" + missing + "cli>" + lines + "cli>", ""}));
}
