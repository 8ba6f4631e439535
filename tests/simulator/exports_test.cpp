// The exported symbols of the library: all sixty-five operations and nothing else.
#include <dlfcn.h>
#include <gtest/gtest.h>

static constexpr const char* kOperations[] = {"q5_PauseMigration",
                                              "q5_ResumeMigration",
                                              "q5_activateLogDrv",
                                              "q5_addHBAArray",
                                              "q5_addHBAExtentToArray",
                                              "q5_delDiskArray",
                                              "q5_deleteHBAExtent",
                                              "q5_discover",
                                              "q5_finalize",
                                              "q5_freeHBAExtent",
                                              "q5_getAryLostDisk",
                                              "q5_getBatteryInfo",
                                              "q5_getBuzzerStatus",
                                              "q5_getControllerInfo",
                                              "q5_getControllerSettings",
                                              "q5_getDataTransferSpeed",
                                              "q5_getDiscoverPath",
                                              "q5_getDriverInfo",
                                              "q5_getEnclosureInfo",
                                              "q5_getEnclosureStatus",
                                              "q5_getHBAEvents",
                                              "q5_getHBAMediaPatrolProgress",
                                              "q5_getLogDrvInfo",
                                              "q5_getLogDrvInitProgress",
                                              "q5_getLogDrvSettings",
                                              "q5_getLogDrvSynchProgress",
                                              "q5_getMigrationProgress",
                                              "q5_getNumberOfHBA",
                                              "q5_getPhyDrvInfo",
                                              "q5_getPhyDrvLocateStatus",
                                              "q5_getPhyDrvSettings",
                                              "q5_getRebuildProgress",
                                              "q5_getRedundancyCheckProgress",
                                              "q5_initialize",
                                              "q5_locateLogDrv",
                                              "q5_locatePhyDrv",
                                              "q5_migrateHBAArray",
                                              "q5_pauseHBAMediaPatrol",
                                              "q5_pauseLogDrvInit",
                                              "q5_pauseRebuild",
                                              "q5_pauseRedundancyCheck",
                                              "q5_removeHBADiskMDD",
                                              "q5_restartRebuild",
                                              "q5_resumeHBAMediaPatrol",
                                              "q5_resumeLogDrvInit",
                                              "q5_resumeRebuild",
                                              "q5_resumeRedundancyCheck",
                                              "q5_setControllerSettings",
                                              "q5_setDataTransferSpeed",
                                              "q5_setLogDrvSettings",
                                              "q5_setPhyDrvSettings",
                                              "q5_spareHBAExtent",
                                              "q5_splitHBAExtent",
                                              "q5_startHBAMediaPatrol",
                                              "q5_startHBARebuildExtent",
                                              "q5_startLogDrvInit",
                                              "q5_startRedundancyCheck",
                                              "q5_stopHBAMediaPatrol",
                                              "q5_stopLocateLogDrv",
                                              "q5_stopLocatePhyDrv",
                                              "q5_stopLogDrvInit",
                                              "q5_stopRebuild",
                                              "q5_stopRedundancyCheck",
                                              "q5_turnOffBuzzer",
                                              "q5_turnOnBuzzer"};

TEST(Exports, ExportsAllOperationsAndNothingElse) {
    EXPECT_EQ(std::size(kOperations), 65u);
    void* library = dlopen(LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    for (const char* name : kOperations)
        EXPECT_NE(dlsym(library, name), nullptr) << name;
    EXPECT_EQ(dlsym(library, "_ZN5q5sim9openWorldEv"), nullptr);
    EXPECT_EQ(dlsym(library, "_Z13worldFilePathPcm"), nullptr);
    dlclose(library);
}
