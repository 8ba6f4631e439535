// The clock of a copy.
#include <algorithm>
#include <cstdlib>
#include <ctime>

#include "tools/capture/capture.h"

static constexpr std::int64_t kLatestNow = std::int64_t{1} << 40; // as the simulated adapters limit it

std::int64_t captureTime() {
    const char* fixed = std::getenv("Q5SIM_NOW");
    if (fixed == nullptr || fixed[0] == '\0')
        return static_cast<std::int64_t>(std::time(nullptr));
    return std::clamp<std::int64_t>(std::strtoll(fixed, nullptr, 10), 0, kLatestNow);
}
