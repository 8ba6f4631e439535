// The mp command: shows and controls the background surface scan of a drive.
#include "commands/mediapatrol.h"

#include <cstdio>

#include "adapter/reply.h"
#include "commands/options.h"

MediaPatrolProgress readMediaPatrol(std::uint32_t controller, std::uint32_t drive) {
    const DriveSelector selector = {drive, 1};
    MediaPatrolProgress patrol = {};
    q5_getHBAMediaPatrolProgress(hbaAddress(controller), 0, &selector, &patrol, sizeof patrol);
    return patrol;
}

void printMediaPatrol(const MediaPatrolProgress& patrol) {
    switch (patrol.state) {
    case kPatrolRunning:
        std::puts("Media patrol status : Running");
        std::printf("Media patrol progress : %d\n", patrol.progress);
        break;
    case kPatrolStopped:
        std::puts("Media patrol status : stopped");
        break;
    case kPatrolPaused:
        std::puts("Media patrol status : paused");
        break;
    case kPatrolAborted:
        std::puts("Media patrol status : aborted");
        break;
    default:
        std::puts("Media patrol status : idle");
        break;
    }
    std::printf("Media patrol loop count : %d\n", patrol.loopCount);
    std::printf("Media patrol error count : %d\n", patrol.errorCount);
}

// Whether the drive exists: the first entry of the reply must be the drive requested.
static bool driveExists(std::uint32_t controller, std::uint32_t drive) {
    const PhyDrvQuery query = {drive, 1, kAllDrives, {}};
    Reply<PhyDrvInfo, kMaxDrives> reply = {};
    q5_getPhyDrvInfo(hbaAddress(controller), 0, &query, &reply, sizeof reply);
    return !records(reply).empty() && reply.record[0].driveId == drive;
}

// The first steps of all five actions: check the word count, parse the options, look up the drive.
static int parsePatrolArgs(int wordCount, char** words, const char* countMessage, std::uint32_t* controller,
                           std::uint32_t* drive) {
    if (wordCount != 7)
        return fail(Result::badCount, countMessage);
    const Option options[] = {
        driveOption("-p", "physical drive ID", drive),
        numberOption("-i", "controller ID", controller, Result::badId),
    };
    if (const int result = readOptions(wordCount, words, 3, options, "Invalid parameters defined"))
        return result;
    if (!driveExists(*controller, *drive)) {
        std::printf("Disk with ID %d in controller #%d is not existed\n", static_cast<int>(*drive),
                    static_cast<int>(*controller));
        return Result::notFound;
    }
    return Result::done;
}

int ListPhyDrvMediaPatrol(int wordCount, char** words) {
    std::uint32_t controller = 0, drive = 0;
    if (const int result = parsePatrolArgs(
            wordCount, words, "Invalid number of parameters for \"mp -a list\" defined", &controller, &drive))
        return result;
    printMediaPatrol(readMediaPatrol(controller, drive));
    return Result::done;
}

namespace {
struct PatrolControl {
    int (*operation)(HbaAddress address, const DriveSelector* drive);
    const char* countMessage;
    const char* failure; // takes the drive's ID
};
} // namespace

static int controlPatrol(int wordCount, char** words, const PatrolControl& control) {
    std::uint32_t controller = 0, drive = 0;
    if (const int result = parsePatrolArgs(wordCount, words, control.countMessage, &controller, &drive))
        return result;
    const DriveSelector selector = {drive, 1};
    if (control.operation(hbaAddress(controller), &selector) != 0) {
        std::printf(control.failure, static_cast<int>(drive));
        return Result::refused;
    }
    return Result::done;
}

int StartPhyDrvMediaPatrol(int wordCount, char** words) {
    return controlPatrol(wordCount, words,
                         {invoke<q5_startHBAMediaPatrol>,
                          "Invalid number of parameters for \"mp -a start\" defined",
                          "Failed to start media patrol operation on disk with ID %d!\n"});
}

int StopPhyDrvMediaPatrol(int wordCount, char** words) {
    return controlPatrol(wordCount, words,
                         {invoke<q5_stopHBAMediaPatrol>, "Invalid number of parameters for \"mp\" defined",
                          "Failed to stop media patrol operation on disk with ID %d!\n"});
}

int PausePhyDrvMediaPatrol(int wordCount, char** words) {
    return controlPatrol(wordCount, words,
                         {invoke<q5_pauseHBAMediaPatrol>, "Invalid number of parameters for \"mp\" defined",
                          "Failed to pause media patrol operation on disk with ID %d!\n"});
}

int ResumePhyDrvMediaPatrol(int wordCount, char** words) {
    return controlPatrol(wordCount, words,
                         {invoke<q5_resumeHBAMediaPatrol>, "Invalid number of parameters for \"mp\" defined",
                          "Failed to resume media patrol operation on disk with ID %d!\n"});
}
