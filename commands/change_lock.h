// The lock of every command that changes something on an adapter. Settings are read, changed and written
// back as whole records: without it, one of two commands at the same time would undo the other one's
// change.
#pragma once

// Waits for other sessions, but not forever. Every lock is given back by unlockChanges(), and a command
// takes it only once.
int lockChanges();
void unlockChanges(int lock);
