// cli-status --changes: lists that cannot be read for a while, problems of the same kind, and lines that
// belong together.
#include <filesystem>

#include "tests/status/history.h"

// Logical drives that the saved state does not contain.

TEST_F(Changes, ReportTheLogicalDrivesOfANewController) {
    expectChanges(0, "");
    world["controllers"].push_back(controller());
    Json& added = world["controllers"][1];
    added["autoRebuild"] = false;
    added["drives"][1]["failed"] = true;
    expectChanges(2, "critical: drive 2 of controller 1 lost; logical drive 0 Data is critical\n"
                     "info: controller 1: is new\n"
                     "warning: logical drive 0 Data of controller 1: no replacement is coming: automatic "
                     "rebuild is off\n");
}

TEST_F(Changes, ReportAPausedActivityOfANewController) {
    expectChanges(0, "");
    world["controllers"].push_back(controller());
    world["controllers"][1]["logicalDrives"][0]["activity"] = {
        {"kind", "redundancyCheck"}, {"paused", true}, {"doneMb", 170}, {"totalMb", 500}};
    expectChanges(1, "warning: redundancy check of logical drive 0 Data of controller 1 paused at 34%\n"
                     "info: controller 1: is new\n");
}
