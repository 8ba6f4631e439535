// Deferring signals while files or settings are changed, and removing a temporary file when a signal ends the
// program.
#pragma once

#include <csignal>

// Blocks the signals by which a user, a terminal or a closed connection ends or stops the program. They are
// delivered by restoreSignals(), which restores the previous mask.
void blockSignals(sigset_t* before);
void restoreSignals(const sigset_t* before);

// From now on a signal that ends the program removes this file first. The path must remain unchanged until
// keepOnSignal(). One file at a time.
void removeOnSignal(const char* path);
void keepOnSignal();
