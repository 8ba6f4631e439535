// The advisory lock that commands hold while they change an adapter. Settings are read, changed and written
// back as whole records: without the lock, one of two concurrent commands could undo the change of the other.
#pragma once

// Waits for other sessions, for a limited time. unlockChanges() releases the lock. A command must not lock
// twice.
int lockChanges();
void unlockChanges(int lock);
