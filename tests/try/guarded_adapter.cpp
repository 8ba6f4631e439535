// Wraps the simulated adapters in a read-only adapter library: every other operation records its
// name in the file $GUARDED_CALLS and ends the program. Requesting events counts as a change.
#include <cstdio>
#include <cstdlib>

#define FOR_EACH_CHANGING_OPERATION(X) \
    X(q5_PauseMigration)               \
    X(q5_ResumeMigration)              \
    X(q5_activateLogDrv)               \
    X(q5_addHBAArray)                  \
    X(q5_addHBAExtentToArray)          \
    X(q5_delDiskArray)                 \
    X(q5_deleteHBAExtent)              \
    X(q5_freeHBAExtent)                \
    X(q5_getHBAEvents)                 \
    X(q5_locateLogDrv)                 \
    X(q5_locatePhyDrv)                 \
    X(q5_migrateHBAArray)              \
    X(q5_pauseHBAMediaPatrol)          \
    X(q5_pauseLogDrvInit)              \
    X(q5_pauseRebuild)                 \
    X(q5_pauseRedundancyCheck)         \
    X(q5_removeHBADiskMDD)             \
    X(q5_restartRebuild)               \
    X(q5_resumeHBAMediaPatrol)         \
    X(q5_resumeLogDrvInit)             \
    X(q5_resumeRebuild)                \
    X(q5_resumeRedundancyCheck)        \
    X(q5_setControllerSettings)        \
    X(q5_setDataTransferSpeed)         \
    X(q5_setLogDrvSettings)            \
    X(q5_setPhyDrvSettings)            \
    X(q5_spareHBAExtent)               \
    X(q5_splitHBAExtent)               \
    X(q5_startHBAMediaPatrol)          \
    X(q5_startHBARebuildExtent)        \
    X(q5_startLogDrvInit)              \
    X(q5_startRedundancyCheck)         \
    X(q5_stopHBAMediaPatrol)           \
    X(q5_stopLocateLogDrv)             \
    X(q5_stopLocatePhyDrv)             \
    X(q5_stopLogDrvInit)               \
    X(q5_stopRebuild)                  \
    X(q5_stopRedundancyCheck)          \
    X(q5_turnOffBuzzer)                \
    X(q5_turnOnBuzzer)

[[noreturn]] static void refuse(const char* operation) {
    const char* path = std::getenv("GUARDED_CALLS");
    if (std::FILE* calls = std::fopen(path != nullptr ? path : "/dev/stderr", "a")) {
        std::fprintf(calls, "%s\n", operation);
        std::fclose(calls);
    }
    std::abort();
}

// The arguments do not matter.
#define DEFINE_REFUSED(operation)            \
    extern "C" [[noreturn]] int operation(); \
    extern "C" int operation() {             \
        refuse(#operation);                  \
    }
FOR_EACH_CHANGING_OPERATION(DEFINE_REFUSED)

#define COUNT(operation) +1
static_assert(0 FOR_EACH_CHANGING_OPERATION(COUNT) == 40, "25 of the 65 operations only read");
