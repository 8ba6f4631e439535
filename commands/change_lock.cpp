// The lock is on the event file's directory, which all sessions with the same adapters share.
#include "commands/change_lock.h"

#include "commands/event_path.h"
#include "util/advisory_lock.h"

int lockChanges() {
    char path[kEventPathSize];
    GetEventBufferFilePath(path);
    return lockDirectoryOf(path, kLockSeconds);
}

void unlockChanges(int lock) {
    unlockDirectory(lock);
}
