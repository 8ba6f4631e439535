// An advisory lock on a directory: programs that take it run one after the other. It needs no file of its
// own and ends with its holder, however that ends.
#pragma once

// How long a program waits for another one. A holder that hangs must not stop everybody else.
inline constexpr int kLockSeconds = 30;

// Locks the directory that path is in. Waits for its holder at most the given number of seconds. Returns what
// unlockDirectory() takes, or -1 if there is no lock; the caller then continues without it.
int lockDirectoryOf(const char* path, int seconds);
void unlockDirectory(int lock);
