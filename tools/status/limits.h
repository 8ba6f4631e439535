// The thresholds of the rules, and the small file that changes them.
#pragma once

#include <string>
#include <string_view>

struct Limits {
    int patrolErrors = 0;          // a media patrol with more errors is a problem
    int batteryWarmCelsius = 45;   // a warning from this temperature of the battery on
    int batteryHotCelsius = 60;    // critical from this one on
    int enclosureWarmCelsius = 50; // likewise
    int enclosureHotCelsius = 60;
    int voltageWarningPercent = 5; // deviation of a 5 V or 12 V rail
    int voltageCriticalPercent = 10;
    int fanStoppedRpm = 0; // a fan at this speed or below has stopped
};

// One threshold: its key in the file, its field, its unit and its range. margin: added to it for a reading
// that was a problem before, so that one that swings around the threshold is not reported each time.
struct LimitRow {
    const char* key;
    int Limits::*value;
    const char* unit;
    int min, max;
    int margin;
};

inline constexpr LimitRow kLimitRows[] = {
    {"patrol-errors", &Limits::patrolErrors, "errors", 0, 65535, 0},
    {"battery-warm", &Limits::batteryWarmCelsius, "degrees Celsius", -40, 200, -2},
    {"battery-hot", &Limits::batteryHotCelsius, "degrees Celsius", -40, 200, -2},
    {"enclosure-warm", &Limits::enclosureWarmCelsius, "degrees Celsius", -40, 200, -2},
    {"enclosure-hot", &Limits::enclosureHotCelsius, "degrees Celsius", -40, 200, -2},
    {"voltage-warning", &Limits::voltageWarningPercent, "percent", 1, 100, -1},
    {"voltage-critical", &Limits::voltageCriticalPercent, "percent", 1, 100, -1},
    {"fan-stopped", &Limits::fanStoppedRpm, "revolutions per minute", 0, 100000, 100},
};

// The limits with their margins added, within their ranges.
Limits withMargins(Limits limits);

// Applies the text of a limits file: lines "key = number", blank lines, and comments from "#" on.
// Returns an error message with the line number, empty on success.
std::string applyLimits(std::string_view text, Limits* limits);
