// The mp command: a lookup of the drive, then one operation.
#include "commands/mediapatrol.h"

#include "tests/mock_adapter.h"

using MediaPatrol = MockAdapterTest;
using Words = std::vector<std::string>;

namespace {
// An action of mp, with the operation it calls and its messages.
struct Action {
    const char* word;
    int (*function)(int, char**);
    const char* operation;
    const char* countMessage;
    const char* failure; // for drive 2; null: the result is ignored
};
} // namespace

static const Action kActions[] = {
    {"list", ListPhyDrvMediaPatrol, "q5_getHBAMediaPatrolProgress",
     "Invalid number of parameters for \"mp -a list\" defined\n", nullptr},
    {"start", StartPhyDrvMediaPatrol, "q5_startHBAMediaPatrol",
     "Invalid number of parameters for \"mp -a start\" defined\n",
     "Failed to start media patrol operation on disk with ID 2!\n"},
    {"stop", StopPhyDrvMediaPatrol, "q5_stopHBAMediaPatrol",
     "Invalid number of parameters for \"mp\" defined\n",
     "Failed to stop media patrol operation on disk with ID 2!\n"},
    {"pause", PausePhyDrvMediaPatrol, "q5_pauseHBAMediaPatrol",
     "Invalid number of parameters for \"mp\" defined\n",
     "Failed to pause media patrol operation on disk with ID 2!\n"},
    {"resume", ResumePhyDrvMediaPatrol, "q5_resumeHBAMediaPatrol",
     "Invalid number of parameters for \"mp\" defined\n",
     "Failed to resume media patrol operation on disk with ID 2!\n"},
};
static const Action& kList = kActions[0];

static std::string outcomeOf(const Action& action, const std::string& options) {
    const CommandOutcome outcome =
        run(action.function, splitWords(std::string("mp -a ") + action.word + " " + options));
    return std::to_string(outcome.result) + ": " + outcome.output;
}

static PhyDrvInfo drive(std::uint16_t id) {
    PhyDrvInfo info;
    std::memset(&info, 0xA5, sizeof info);
    info.driveId = id;
    return info;
}

static void expectLookup(std::uint32_t controller, std::uint32_t id, const Bytes& reply, int result = 0) {
    expectCall("q5_getPhyDrvInfo", queryFor(controller, PhyDrvQuery{id, 1, 255, {}}, 10688), reply, result);
}

static Bytes found(std::uint16_t id) {
    return listReply<PhyDrvInfo>({drive(id)});
}

// Expects the operation of an action on drive 2 of controller 1, which returns this result.
static void expectOperation(const Action& action, int result) {
    const Bytes arguments = bytesOf(hbaAddress(1), std::uint32_t{0}, DriveSelector{2, 1});
    if (&action == &kList)
        expectCall(action.operation, concat({arguments, bytesOf(std::uint32_t{124})}), {}, result);
    else
        expectCall(action.operation, arguments, {}, result);
}

static const std::string kIdle =
    "Media patrol status : idle\nMedia patrol loop count : 0\nMedia patrol error count : 0\n";

TEST_F(MediaPatrol, ActsOnExistingDrive) {
    for (const Action& action : kActions)
        for (const char* options : {"-p 3 -i 1", "-i 1 -p 3", "-P 3 -I 1"}) {
            expectLookup(1, 2, found(2), -1);
            expectOperation(action, 0);
            EXPECT_EQ(outcomeOf(action, options), "0: " + (&action == &kList ? kIdle : ""));
        }
}

TEST_F(MediaPatrol, ReportsFailure) {
    for (const Action& action : kActions)
        for (const int result : {1, -1}) {
            expectLookup(1, 2, found(2));
            expectOperation(action, result);
            EXPECT_EQ(outcomeOf(action, "-p 3 -i 1"),
                      action.failure != nullptr ? std::string("8: ") + action.failure : "0: " + kIdle);
        }
}

TEST_F(MediaPatrol, RequiresSevenWords) {
    for (const Action& action : kActions)
        for (const char* options : {"", "-p 3", "-p 3 -i", "-p x -i 1 -z", "-p 3 -i 1 -p 3"})
            EXPECT_EQ(outcomeOf(action, options), std::string("2: ") + action.countMessage) << options;
}

TEST_F(MediaPatrol, RejectsInvalidOptionsBeforeAnyCall) {
    for (const Action& action : kActions) {
        EXPECT_EQ(outcomeOf(action, "-p x -z 1"), "6: Invalid physical drive ID 'x' specified\n");
        EXPECT_EQ(outcomeOf(action, "-i -1 -p x"), "6: Invalid controller ID '-1' specified\n");
        EXPECT_EQ(outcomeOf(action, "-c 1 -p x"), "1: Invalid parameters defined\n");
        EXPECT_EQ(outcomeOf(action, "-p 3 -v -i"), "1: Invalid parameters defined\n");
    }
}

TEST_F(MediaPatrol, ReportsMissingDriveUnlessItIsTheFirstEntry) {
    const PhyDrvInfo wrongFirst[] = {drive(3), drive(2)};
    const Bytes replies[] = {{},
                             bytesOf(replyHeader(63), drive(2)),
                             bytesOf(replyHeader(64), drive(2)),
                             bytesOf(replyHeader(64 + 663), drive(2)),
                             found(3),
                             bytesOf(replyHeader(64 + 2 * 664), wrongFirst)};
    for (const Action& action : kActions)
        for (const Bytes& reply : replies) {
            expectLookup(1, 2, reply);
            EXPECT_EQ(outcomeOf(action, "-p 3 -i 1"), "5: Disk with ID 2 in controller #1 is not existed\n");
        }
}

TEST_F(MediaPatrol, ComparesTheFullId) {
    for (const Action& action : kActions) {
        expectLookup(0, 65538, found(2));
        EXPECT_EQ(outcomeOf(action, "-p 65539 -i 0"),
                  "5: Disk with ID 65538 in controller #0 is not existed\n");
        expectLookup(0, 0xFFFFFFFF, found(65535));
        EXPECT_EQ(outcomeOf(action, "-p 0 -i 65536"),
                  "5: Disk with ID -1 in controller #65536 is not existed\n");
    }
}

TEST_F(MediaPatrol, DefaultsMissingOptionsToZero) {
    for (const Action& action : kActions) {
        expectLookup(0, 2, {});
        EXPECT_EQ(outcomeOf(action, "-p 9 -p 3"), "5: Disk with ID 2 in controller #0 is not existed\n");
        expectLookup(1, 0, {});
        EXPECT_EQ(outcomeOf(action, "-i 9 -i 1"), "5: Disk with ID 0 in controller #1 is not existed\n");
    }
}

TEST_F(MediaPatrol, LimitsByteCounts) {
    expectLookup(1, 2, bytesOf(replyHeader(0xFFFFFFFF), drive(2)));
    expectOperation(kActions[1], 0);
    EXPECT_EQ(outcomeOf(kActions[1], "-p 3 -i 1"), "0: ");
}

static MediaPatrolProgress progressOf(std::uint16_t state) {
    MediaPatrolProgress progress;
    std::memset(&progress, 0xA5, sizeof progress);
    progress.state = state;
    progress.loopCount = 65535;
    progress.errorCount = 12;
    progress.progress = 99;
    return progress;
}

TEST_F(MediaPatrol, ShowsTheStateAndBothCounts) {
    const Words states = {"idle", "Running\nMedia patrol progress : 99", "aborted", "paused", "stopped",
                          "idle"};
    const std::string counts = "Media patrol loop count : 65535\nMedia patrol error count : 12\n";
    for (std::uint16_t state = 0; state < states.size(); ++state) {
        expectLookup(1, 2, found(2));
        expectCall("q5_getHBAMediaPatrolProgress", queryFor(1, DriveSelector{2, 1}, 124),
                   bytesOf(progressOf(state)), 3);
        EXPECT_EQ(outcomeOf(kList, "-p 3 -i 1"), "0: Media patrol status : " + states[state] + "\n" + counts);
    }
    for (const std::uint16_t state : std::vector<std::uint16_t>{6, 0x0101, 0xFFFF})
        EXPECT_EQ(outputOf([&] { printMediaPatrol(progressOf(state)); }),
                  "Media patrol status : idle\n" + counts);
}

TEST_F(MediaPatrol, ShowsOutOfRangeProgressUnchanged) {
    MediaPatrolProgress progress = progressOf(1);
    progress.progress = 65535;
    EXPECT_EQ(outputOf([&] { printMediaPatrol(progress); }),
              "Media patrol status : Running\nMedia patrol progress : 65535\n"
              "Media patrol loop count : 65535\nMedia patrol error count : 12\n");
}
