// The operations that list, over controllers that have nothing to show: success, and the zeroes that the
// caller cleared its buffer to.
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
