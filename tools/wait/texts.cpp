// How objects, activities and their progress are named.
#include "tools/wait/texts.h"

#include <cstdio>

#include "snapshot/words.h"

static std::string numberText(const Target& target) {
    return (target.isDrive ? "drive " : "logical drive ") + std::to_string(target.number);
}

static std::string nameText(const Target& target) {
    return target.name.empty() ? "" : " " + target.name;
}

std::string targetText(const Target& target) {
    return numberText(target) + nameText(target) + " of controller " + std::to_string(target.controller);
}

std::string kindsText(unsigned kinds) {
    if (kinds == kMediaPatrol)
        return "media patrol";
    const bool single = (kinds & (kinds - 1)) == 0;
    return single ? activityText(static_cast<ActivityBit>(kinds)) : "activity";
}

std::string activityText(const Track& track) {
    return kindsText(track.kind) + " of " + targetText(track.target);
}

std::string barLabel(const Track& track, bool withController, bool withName) {
    return (withController ? "controller " + std::to_string(track.target.controller) + ": " : "") +
           kindsText(track.kind) + " of " + numberText(track.target) +
           (withName ? nameText(track.target) : "");
}

std::string percentText(const Track& track) {
    return track.progress.percent ? std::to_string(*track.progress.percent) + "%" : "?%";
}

std::string durationText(std::int64_t duration) {
    const long long seconds = duration < 0 ? 0 : duration / 1000;
    char text[40];
    std::snprintf(text, sizeof text, "%lld:%02d:%02d", seconds / 3600, static_cast<int>(seconds / 60 % 60),
                  static_cast<int>(seconds % 60));
    return text;
}

std::string rateText(double rate) {
    const double perMinute = rate * 60'000;
    char text[40];
    if (perMinute >= 1)
        std::snprintf(text, sizeof text, "%.1f%%/min", perMinute);
    else
        std::snprintf(text, sizeof text, "%.1f%%/h", perMinute * 60);
    return text;
}

std::string endText(std::time_t now, std::int64_t left) {
    static constexpr std::int64_t halfDay = 12 * 3600;
    const std::time_t end = now + static_cast<std::time_t>(left / 1000);
    std::tm parts = {};
    char text[40];
    localtime_r(&end, &parts);
    return std::string(
        text, std::strftime(text, sizeof text, left / 1000 < halfDay ? "%H:%M" : "%b %d %H:%M", &parts));
}
