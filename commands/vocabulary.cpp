// The keywords for RAID levels, write modes, initialization modes and rounding schemes. In each table
// the first keyword that occurs in a text wins, so their order matters.
#include "commands/vocabulary.h"

#include <cstdio>
#include <span>

#include "adapter/logdrv.h"
#include "util/utils.h"

namespace {
struct Keyword {
    const char* text;
    int code;
};
} // namespace

static const Keyword* findKeyword(std::span<const Keyword> keywords, const char* text) {
    for (const Keyword& keyword : keywords)
        if (strstrNoCase(text, keyword.text) != nullptr)
            return &keyword;
    return nullptr;
}

static const char* nameForCode(std::span<const Keyword> keywords, int code, const char* fallback) {
    for (const Keyword& keyword : keywords)
        if (keyword.code == code)
            return keyword.text;
    return fallback;
}

// A longer keyword precedes its prefixes.
static const Keyword raidLevels[] = {
    {"RAID0", kRaid0}, {"RAID10", kRaid10}, {"RAID1", kRaid1}, {"RAID50", kRaid50},
    {"RAID5", kRaid5}, {"RAIDMF", kRaidMf}, {"JBOD", kJbod},
};

int TranslateRaidLevel(const char* text) {
    if (const Keyword* keyword = findKeyword(raidLevels, text))
        return keyword->code;
    std::printf("Unknown RAID level '%s' specified!\n", text);
    return kUnknownRaid;
}

const char* TranslateRaidLevel2Str(int code) {
    return nameForCode(raidLevels, code & 0xFF, "Unknown raid mode");
}

// "auto" takes precedence: "Auto - Write Back" is the automatic mode.
static const Keyword writeModes[] = {
    {"Auto", kAutoMode},
    {"Write Back", kWriteBack},
    {"Write Through", 0},
    {"By Pass", kBypass},
};

int TranslateWriteMode(const char* text) {
    const Keyword* keyword = findKeyword(writeModes, text);
    return keyword != nullptr ? keyword->code : -1;
}

const char* TranslateWriteMode2Str(int code) {
    if (code & kAutoMode)
        return code & kWriteBack ? "Auto - Write Back" : "Auto - Write Through";
    return code & kWriteBack ? "Write Back" : "Write Through";
}

const char* TranslateWriteMode2StrForImport(int code) {
    if (code & kAutoMode)
        return "auto";
    return code & kWriteBack ? "writeback" : "writethru";
}

// Compatibility: foreground initialization cannot be selected; it fails silently.
static const Keyword initializations[] = {{"NONE", 0}, {"QUICK", 1}, {"FORE", -1}, {"BACK", 4}};

int TranslateInitialization(const char* text) {
    if (const Keyword* keyword = findKeyword(initializations, text))
        return keyword->code;
    std::printf("Unknown initialization '%s' specified!\n", text);
    return -1;
}

const char* TranslateLDInitOption2Str(int code) {
    static const Keyword options[] = {{"NONE", 0}, {"QUICK", 1}, {"FORE", 2}, {"BACK", 4}};
    return nameForCode(options, code, "NONE");
}

const char* TranslateInitialization2Str(int code) {
    static const Keyword phrases[] = {
        {"None Initialization", 0},
        {"Quick Initialization", 1},
        {"Foreground Initialization", 2},
        {"Background Initialization", 4},
    };
    return nameForCode(phrases, code, "Unknown Initialization");
}

int TranslateRoundingScheme(const char* text) {
    // Compatibility: "10GBB" contains "GBB" and means the same; code 2 has no keyword.
    static const Keyword schemes[] = {{"NONE", 0}, {"GBB", 1}};
    if (const Keyword* keyword = findKeyword(schemes, text))
        return keyword->code;
    std::printf("Unknown rounding scheme '%s' specified!\n", text);
    return 255;
}

const char* enableText(int flag) {
    return flag != 0 ? "Enable" : "Disable";
}

double SectorCount2MB(std::uint64_t sectors) {
    return static_cast<double>(sectors * 512) * 9.5367431640625e-7;
}

double SectorCount2MBBase1000(std::uint64_t sectors) {
    return static_cast<double>(sectors * 512) / 1000000.0;
}
