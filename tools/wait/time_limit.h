// Ends the program if the adapters do not answer in time.
#pragma once

#include <cstdint>

// After this time the program leaves the terminal clean, says so and exits with the status of a timeout, even
// from within a call that does not return.
void startTimeLimit(std::int64_t milliseconds);
void stopTimeLimit();
