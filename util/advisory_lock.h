// An advisory lock on a directory: programs that take it run one after the other. It needs no file of its
// own and ends with its holder, even one that is killed.
#pragma once

// How long a program waits for another one. A holder that hangs must not block all others.
inline constexpr int kLockSeconds = 30;

// Locks the directory that contains path. Waits for its holder at most the given number of seconds. Returns
// the argument for unlockDirectory(), or -1 if the directory could not be locked.
int lockDirectoryOf(const char* path, int seconds);
void unlockDirectory(int lock);
