// Behavior specific to the init command: its word counts.
#include "commands/init.h"

#include "tests/commands/logdrv_records.h"

using Init = MockAdapterTest;

TEST_F(Init, StartRequiresSevenWords) {
    for (const char* line : {"", "init", "init -a start", "init -a start -l 0", "init start -l 0 -i 0",
                             "init -a start -l 0 -i 0 -l", "init -a start -l 0 -i 0 -l 0"})
        EXPECT_EQ(outcomeOf(StartLogDrvInit, line), "1: Invalid command for \"init\"!\n") << line;
}

TEST_F(Init, StartDefaultsToDriveZeroOfControllerZero) {
    Bytes request(524);
    request[4] = 4;
    request[6] = request[7] = request[8] = request[9] = 0xFF;
    expectLookup(0, 0, driveWithActivities(0, 0));
    expectCall("q5_startLogDrvInit",
               concat({bytesOf(hbaAddress(0), std::uint32_t{0}), request, bytesOf(std::uint32_t{524})}));
    EXPECT_EQ(outcomeOf(StartLogDrvInit, "init -a start -l 0 -i 0"),
              "0: Initialization started on Array 0 Type 4\n");
}

TEST_F(Init, StartShowsIdsSigned) {
    InitStartRequest request = {};
    request.logDrvId = 4294967295;
    request.initType = 4;
    request.word6 = request.word8 = 0xFFFF;
    expectLookup(0, 4294967295, driveWithActivities(0));
    expectCall("q5_startLogDrvInit", queryFor(0, request, 524), {}, 1);
    EXPECT_EQ(outcomeOf(StartLogDrvInit, "init -a start -l 4294967295 -i 0"),
              "8: Initialization is failed to start on Array -1 Type 4\n");
}
