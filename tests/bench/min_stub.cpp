// The listing operations of controllers without drives and events: they return success and leave the caller's
// cleared buffer unchanged.
extern "C" {
int q5_getControllerInfo() {
    return 0;
}
int q5_getHBAEvents() {
    return 0;
}
int q5_getLogDrvInfo() {
    return 0;
}
int q5_getLogDrvSettings() {
    return 0;
}
int q5_getPhyDrvInfo() {
    return 0;
}
int q5_getPhyDrvSettings() {
    return 0;
}
int q5_initialize() {
    return 0;
}
}
