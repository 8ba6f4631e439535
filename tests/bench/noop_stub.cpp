// Operations that only return success. Declared without parameters, since none of them reads its arguments.
extern "C" {
int q5_PauseMigration() {
    return 0;
}
int q5_ResumeMigration() {
    return 0;
}
int q5_activateLogDrv() {
    return 0;
}
int q5_addHBAArray() {
    return 0;
}
int q5_addHBAExtentToArray() {
    return 0;
}
int q5_delDiskArray() {
    return 0;
}
int q5_deleteHBAExtent() {
    return 0;
}
int q5_discover() {
    return 0;
}
int q5_freeHBAExtent() {
    return 0;
}
int q5_getAryLostDisk() {
    return 0;
}
int q5_getBatteryInfo() {
    return 0;
}
int q5_getBuzzerStatus() {
    return 0;
}
int q5_getControllerSettings() {
    return 0;
}
int q5_getDataTransferSpeed() {
    return 0;
}
int q5_getDiscoverPath() {
    return 0;
}
int q5_getEnclosureInfo() {
    return 0;
}
int q5_getEnclosureStatus() {
    return 0;
}
int q5_getHBAMediaPatrolProgress() {
    return 0;
}
int q5_getLogDrvInitProgress() {
    return 0;
}
int q5_getLogDrvSynchProgress() {
    return 0;
}
int q5_getMigrationProgress() {
    return 0;
}
int q5_getPhyDrvLocateStatus() {
    return 0;
}
int q5_getRebuildProgress() {
    return 0;
}
int q5_getRedundancyCheckProgress() {
    return 0;
}
int q5_locateLogDrv() {
    return 0;
}
int q5_locatePhyDrv() {
    return 0;
}
int q5_migrateHBAArray() {
    return 0;
}
int q5_pauseHBAMediaPatrol() {
    return 0;
}
int q5_pauseLogDrvInit() {
    return 0;
}
int q5_pauseRebuild() {
    return 0;
}
int q5_pauseRedundancyCheck() {
    return 0;
}
int q5_removeHBADiskMDD() {
    return 0;
}
int q5_restartRebuild() {
    return 0;
}
int q5_resumeHBAMediaPatrol() {
    return 0;
}
int q5_resumeLogDrvInit() {
    return 0;
}
int q5_resumeRebuild() {
    return 0;
}
int q5_resumeRedundancyCheck() {
    return 0;
}
int q5_setControllerSettings() {
    return 0;
}
int q5_setDataTransferSpeed() {
    return 0;
}
int q5_setLogDrvSettings() {
    return 0;
}
int q5_setPhyDrvSettings() {
    return 0;
}
int q5_spareHBAExtent() {
    return 0;
}
int q5_splitHBAExtent() {
    return 0;
}
int q5_startHBAMediaPatrol() {
    return 0;
}
int q5_startHBARebuildExtent() {
    return 0;
}
int q5_startLogDrvInit() {
    return 0;
}
int q5_startRedundancyCheck() {
    return 0;
}
int q5_stopHBAMediaPatrol() {
    return 0;
}
int q5_stopLocateLogDrv() {
    return 0;
}
int q5_stopLocatePhyDrv() {
    return 0;
}
int q5_stopLogDrvInit() {
    return 0;
}
int q5_stopRebuild() {
    return 0;
}
int q5_stopRedundancyCheck() {
    return 0;
}
int q5_turnOffBuzzer() {
    return 0;
}
int q5_turnOnBuzzer() {
    return 0;
}
}
