// What happens when a signal would end or stop the program in the middle of something.
#pragma once

#include <csignal>

// Holds back the signals that a user, a terminal or a closed connection stops the program with. They are
// delivered by releaseSignals(), which puts back what was blocked before.
void holdSignals(sigset_t* before);
void releaseSignals(const sigset_t* before);

// From now on a signal that ends the program removes this file first. The path must stay as it is until
// keepOnSignal(). One file at a time.
void removeOnSignal(const char* path);
void keepOnSignal();
