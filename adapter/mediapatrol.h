// Media patrol, the background surface scan of a physical drive. All operations return 0 on success;
// the argument called reserved is always 0.
#pragma once

#include "adapter/phydrv.h"

enum MediaPatrolState : std::uint16_t { // any other value: idle
    kPatrolRunning = 1,
    kPatrolAborted = 2,
    kPatrolPaused = 3,
    kPatrolStopped = 4,
};

// Progress of a media patrol on one drive.
struct MediaPatrolProgress {
    ReplyHeader header;
    std::uint8_t reserved64[22];
    std::uint16_t state;     // MediaPatrolState
    std::uint16_t loopCount; // completed passes
    std::uint16_t errorCount;
    std::uint16_t progress; // percent of the running pass
    std::uint8_t reserved94[30];
};
ASSERT_SIZE(MediaPatrolProgress, 124);
ASSERT_OFFSET(MediaPatrolProgress, state, 86);
ASSERT_OFFSET(MediaPatrolProgress, loopCount, 88);
ASSERT_OFFSET(MediaPatrolProgress, errorCount, 90);
ASSERT_OFFSET(MediaPatrolProgress, progress, 92);

extern "C" {
int q5_getHBAMediaPatrolProgress(HbaAddress address, std::uint32_t reserved, const DriveSelector* drive,
                                 MediaPatrolProgress* progress, std::uint32_t size);
int q5_startHBAMediaPatrol(HbaAddress address, std::uint32_t reserved, const DriveSelector* drive);
int q5_stopHBAMediaPatrol(HbaAddress address, std::uint32_t reserved, const DriveSelector* drive);
int q5_pauseHBAMediaPatrol(HbaAddress address, std::uint32_t reserved, const DriveSelector* drive);
int q5_resumeHBAMediaPatrol(HbaAddress address, std::uint32_t reserved, const DriveSelector* drive);
}
