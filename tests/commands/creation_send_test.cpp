// Sending the request of a creation, and the activation of arrays.
#include "commands/creation.h"

#include "tests/commands/creation_request.h"

using Creation = MockAdapterTest;

static void expectAddition(std::uint32_t controller, std::uint8_t origin, int result) {
    CreateArrayRequest request = plainRequest();
    request.origin = origin;
    expectCall("q5_addHBAArray", bytesOf(hbaAddress(controller), std::uint32_t{0}, request), {}, result);
}

TEST_F(Creation, SendsTheOrigin) {
    expectAddition(0, 0, 0);
    EXPECT_EQ(outcomeOf(CreateLogDrv, addWords({"-p", "1 2"}, "name=a,raid=raid0,capacity=5")),
              kSilentSuccess);
    expectAddition(3, 1, 0);
    EXPECT_EQ(outcomeOf(CreateLogDrv2, addWords({"-i", "3", "-p", "1 2 "}, "name=a,raid=raid0,capacity=5")),
              kSilentSuccess);
}

TEST_F(Creation, ReportsFailure) {
    for (const int result : {1, -1}) {
        expectAddition(0, 0, result);
        EXPECT_EQ(outcomeOf(CreateLogDrv, addWords({"-p", "1 2"}, "name=a,raid=raid0,capacity=5")),
                  "8: Failed to create an array specified\n");
        expectAddition(0, 1, result);
        EXPECT_EQ(outcomeOf(CreateLogDrv2, addWords({"-p", "1 2"}, "name=a,raid=raid0,capacity=5")),
                  "8: Failed to create an array specified\n");
    }
}

TEST_F(Creation, ReturnsTheSameCodeForEveryFailure) {
    for (int (*create)(int, char**) : {CreateLogDrv, CreateLogDrv2}) {
        EXPECT_EQ(outcomeOf(create, "logdrv -a add"),
                  "8: Invalid number of parameters defined for \"logdrv -a add\" \"add\"!\n");
        EXPECT_EQ(outcomeOf(create, "logdrv -a add -i x -p 1 -z raid=jbod"),
                  "8: Invalid controller ID 'x' specified\n");
        EXPECT_EQ(outcomeOf(create, "logdrv -a add -p 1 -z stripe=5"),
                  "8: Incorrect stripe size!\nIncorrect parameters!\n");
        EXPECT_EQ(outcomeOf(create, "logdrv -a add -p 1 -z init=fore"), "8: ");
    }
}

TEST_F(Creation, ActivationRequiresThreeWords) {
    for (const char* line : {"", "activate 3", "logdrv -a", "logdrv -a activate 3"})
        EXPECT_EQ(outcomeOf(ActivateArray, line), "2: Invalid number of parameters defined\n") << line;
}

TEST_F(Creation, ActivationUsesOneIdForArrayAndController) {
    for (const int result : {0, 1}) {
        expectCall("q5_activateLogDrv", bytesOf(hbaAddress(3), std::uint32_t{0}, std::uint16_t{3}), {},
                   result);
        EXPECT_EQ(outcomeOf(ActivateArray, "logdrv activate 3"), kSilentSuccess);
    }
    expectCall("q5_activateLogDrv", bytesOf(hbaAddress(4464), std::uint32_t{0}, std::uint16_t{4464}));
    EXPECT_EQ(outcomeOf(ActivateArray, "logdrv activate 70000"), kSilentSuccess);
    EXPECT_EQ(outcomeOf(ActivateArray, "logdrv activate x"), "6: Invalid array ID 'x' specified\n");
}
