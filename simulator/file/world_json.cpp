// The keys of the world file, each named once for reading and writing.
#include <algorithm>

#include "simulator/file/json_reader.h"

namespace q5sim {

static constexpr std::int64_t kMaxSectors = std::int64_t{1} << 48;
static constexpr std::int64_t kMaxArraySectors = kMaxSectors * std::int64_t{kMaxArrayMembers};
static constexpr std::int64_t kMaxSeconds = std::int64_t{1} << 50; // far beyond any clock
static constexpr std::int64_t kMaxOffset = std::int64_t{1} << 40;
static constexpr std::int64_t kMaxMb = std::int64_t{1} << 40;
static constexpr std::int64_t kMaxSigned32 = 0x7FFFFFFF;
static constexpr std::int64_t kMaxUnsigned32 = 0xFFFFFFFF;

static constexpr Word kUseWords[] = {{"free", kUseFree},
                                     {"array", kUseArray},
                                     {"globalSpare", kUseGlobalSpare},
                                     {"dedicatedSpare", kUseDedicatedSpare}};
static constexpr Word kPatrolWords[] = {{"idle", 0},
                                        {"running", kPatrolRunning},
                                        {"aborted", kPatrolAborted},
                                        {"paused", kPatrolPaused},
                                        {"stopped", kPatrolStopped}};
static constexpr Word kLevelWords[] = {{"RAID0", kRaid0},  {"RAID1", kRaid1},   {"RAID5", kRaid5},
                                       {"JBOD", kJbod},    {"RAID10", kRaid10}, {"RAID50", kRaid50},
                                       {"RAIDMF", kRaidMf}};
static constexpr Word kStateWords[] = {{"offline", 0},
                                       {"online", kOnline},
                                       {"critical", kCritical},
                                       {"degraded", kDegraded},
                                       {"unreported", kStateNotReported}};
static constexpr Word kActivityWords[] = {{"none", 0},
                                          {"rebuild", kRebuilding},
                                          {"initialization", kInitializing},
                                          {"redundancyCheck", kRedundancyChecking},
                                          {"synchronization", kSynchronizing},
                                          {"migration", kMigrating}};
static constexpr Word kInitWords[] = {{"none", 0}, {"quick", 1}, {"foreground", 2}, {"background", 4}};
static constexpr Word kEnclosureWords[] = {{"Traybox 400", kTraybox400},
                                           {"Traybox 100", kTraybox100},
                                           {"OEM-A", kOemA},
                                           {"OEM-B", kOemB},
                                           {"OEM-C", kOemC},
                                           {"Traybox 400R", kTraybox400R}};
static constexpr Word kSensorWords[] = {{"none", 0},
                                        {"fan", kFanSensor},
                                        {"rail5V", kRail5VSensor},
                                        {"rail12V", kRail12VSensor},
                                        {"temperature", kTemperatureSensor}};
static constexpr Word kBatteryWords[] = {{"charging", kBatteryCharging},
                                         {"discharging", kBatteryDischarging},
                                         {"full", kBatteryFull},
                                         {"failed", kBatteryFailed},
                                         {"reconditioning", kBatteryReconditioning}};

// A reader insists on these keys; a writer always writes all of them.
static void require(Writer&, const char*) {}
static void require(Reader& io, const char* key) {
    io.require(key);
}

template <typename Io>
static void describe(Io& io, Extent& extent) {
    io.word("use", extent.use, std::span(kUseWords));
    io.number("array", extent.array, 0, 255);
    require(io, "start");
    io.number("start", extent.start, 0, kMaxSectors);
    require(io, "size");
    io.number("size", extent.size, 1, kMaxSectors);
}

template <typename Io>
static void describe(Io& io, Patrol& patrol) {
    io.word("state", patrol.state, std::span(kPatrolWords));
    io.number("since", patrol.since, 0, kMaxSeconds);
    io.number("doneMb", patrol.completedMb, 0, kMaxMb);
    io.number("loops", patrol.loops, 0, 65535);
    io.number("errors", patrol.errors, 0, 65535);
}

template <typename Io>
static void describe(Io& io, Drive& drive) {
    require(io, "id");
    io.number("id", drive.id, 0, kMaxDriveId);
    io.number("channel", drive.channel, 0, 65535);
    io.number("enclosure", drive.enclosure, 0, kNoEnclosureId);
    io.text("model", drive.model, 21);
    io.text("serial", drive.serial, 23);
    io.text("firmware", drive.firmware, 37);
    require(io, "sectors");
    io.number("sectors", drive.sectors, kSectorsPerMb, kMaxSectors);
    io.number("dmaMode", drive.dmaMode, 0, 255);
    io.flag("failed", drive.failed);
    io.flag("failureReported", drive.failureReported);
    io.flag("smartFailure", drive.smartFailure);
    io.flag("writeCache", drive.writeCache);
    io.flag("smartCheck", drive.smartCheck);
    io.flag("tcqSupported", drive.tcqSupported);
    io.flag("ncqSupported", drive.ncqSupported);
    io.flag("tcqEnabled", drive.tcqEnabled);
    io.flag("ncqEnabled", drive.ncqEnabled);
    io.number("mediaErrors", drive.mediaErrors, 0, 65535);
    io.number("locateUntil", drive.locateUntil, 0, kMaxSeconds);
    io.object("mediaPatrol", drive.patrol);
    io.list("extents", drive.extents, kMaxExtents);
}

template <typename Io>
static void describe(Io& io, RebuildTarget& target) {
    require(io, "drive");
    io.number("drive", target.drive, 0, kMaxDriveId);
    require(io, "position");
    io.number("position", target.position, 0, kMaxArrayMembers - 1);
}

template <typename Io>
static void describe(Io& io, MigrationTarget& goal) {
    io.word("level", goal.level, std::span(kLevelWords));
    io.number("stripe", goal.stripe, 0, 1024);
    io.number("parity", goal.parity, 0, 255);
    io.number("subArrays", goal.subArrays, 0, 255);
    io.numbers("members", goal.members, kMaxDriveId, kMaxArrayMembers);
}

template <typename Io>
static void describe(Io& io, Activity& activity) {
    require(io, "kind");
    io.word("kind", activity.kind, std::span(kActivityWords));
    io.flag("paused", activity.paused);
    io.number("since", activity.since, 0, kMaxSeconds);
    io.number("doneMb", activity.completedMb, 0, kMaxMb);
    require(io, "totalMb");
    io.number("totalMb", activity.totalMb, 1, kMaxMb);
    io.word("initType", activity.initType, std::span(kInitWords));
    io.flag("noFix", activity.noFix);
    io.list("targets", activity.targets, kMaxArrayMembers);
    io.object("goal", activity.goal);
}

template <typename Io>
static void describe(Io& io, LogicalDrive& drive) {
    require(io, "arrayId");
    io.number("arrayId", drive.arrayId, 0, 254);
    require(io, "logDrvId");
    io.number("logDrvId", drive.logDrvId, 0, 254);
    io.text("name", drive.name, 63);
    require(io, "level");
    io.word("level", drive.level, std::span(kLevelWords));
    io.number("stripe", drive.stripe, 1, 65535);
    io.number("sectorSize", drive.sectorSize, 512, 4096);
    require(io, "sectors");
    io.number("sectors", drive.sectors, 1, kMaxArraySectors);
    require(io, "memberSectors");
    io.number("memberSectors", drive.memberSectors, 1, kMaxSectors);
    io.number("parity", drive.parity, 0, 255);
    io.number("symmetric", drive.symmetric, 0, 1);
    io.number("shift", drive.shift, -32768, 32767);
    io.number("subArrays", drive.subArrays, 0, 255);
    io.number("cacheFlags", drive.cacheFlags, 0, 255);
    io.flag("consolidation", drive.consolidation);
    io.number("lookahead", drive.lookahead, 0, 65535);
    io.flag("active", drive.active);
    io.flag("synchronized", drive.synchronized);
    io.flag("rebuildHeld", drive.autoRebuildInhibited);
    io.number("inconsistencies", drive.inconsistencies, 0, kMaxUnsigned32);
    io.word("reportedState", drive.reportedState, std::span(kStateWords));
    require(io, "members");
    io.numbers("members", drive.members, kMaxDriveId, kMaxArrayMembers);
    bool busy = drive.activity.kind != 0;
    io.optional("activity", busy, drive.activity);
}

template <typename Io>
static void describe(Io& io, Sensor& sensor) {
    io.word("type", sensor.type, std::span(kSensorWords));
    io.number("reading", sensor.reading, -kMaxSigned32, kMaxSigned32);
}

template <typename Io>
static void describe(Io& io, Enclosure& enclosure) {
    require(io, "id");
    io.number("id", enclosure.id, 0, kMaxEnclosures - 1);
    require(io, "type");
    io.word("type", enclosure.type, std::span(kEnclosureWords));
    io.list("sensors", enclosure.sensors, 6);
}

template <typename Io>
static void describe(Io& io, Battery& battery) {
    io.number("temperatureTenths", battery.temperature, -1000, 2000);
    io.number("millivolts", battery.voltage, -1, 65535);
    io.word("state", battery.state, std::span(kBatteryWords));
}

template <typename Io>
static void describe(Io& io, BusLocation& location) {
    io.number("irq", location.irq, 0, kMaxSigned32);
    io.number("slot", location.slot, 0, kMaxSigned32);
    io.number("biosMemoryStart", location.biosMemoryStart, 0, kMaxUnsigned32);
    io.number("biosMemoryRange", location.biosMemoryRange, 0, kMaxSigned32);
    io.number("busMasterBase", location.busMasterBase, 0, 255);
    io.number("ata", location.ata, 0, kMaxUnsigned32);
    io.number("xor", location.xorEngine, 0, kMaxUnsigned32);
    io.number("sequencer", location.sequencer, 0, kMaxUnsigned32);
    io.number("mmio", location.mmio, 0, kMaxUnsigned32);
    io.number("sdram", location.sdram, 0, kMaxUnsigned32);
}

template <typename Io>
static void describe(Io& io, Rates& rates) {
    io.number("rebuild", rates.rebuild, 1, 255);
    io.number("synchronization", rates.sync, 1, 255);
    io.number("mediaPatrol", rates.patrol, 1, 255);
    io.number("initialization", rates.init, 1, 255);
    io.number("migration", rates.migrate, 1, 255);
}

template <typename Io>
static void describe(Io& io, SpeedOption& option) {
    io.text("model", option.model, 21);
    io.text("firmware", option.firmware, 37);
    io.number("setting", option.setting, -kMaxSigned32 - 1, kMaxSigned32);
}

template <typename Io>
static void describe(Io& io, Event& event) {
    require(io, "id");
    io.number("id", event.id, 0, kMaxUnsigned32 - 1);
    io.number("time", event.time, 0, kMaxSeconds);
    io.text("text", event.text, 323);
}

template <typename Io>
static void describe(Io& io, Controller& controller) {
    io.version("biosVersion", controller.bios);
    io.version("firmwareVersion", controller.firmware);
    io.version("driverVersion", controller.driver);
    io.flag("eccMemory", controller.ecc);
    io.number("memoryMb", controller.memoryMb, 0, kMaxSigned32);
    io.number("maxExtentsPerDisk", controller.maxExtentsPerDisk, 1, kMaxExtents);
    io.number("maxPorts", controller.maxPorts, 0, 255);
    io.object("busPlace", controller.busLocation);
    io.object("rates", controller.rates);
    io.flag("autoRebuild", controller.autoRebuild);
    io.flag("rebuildPolicy", controller.rebuildPolicy);
    io.flag("smartCheck", controller.smartCheck);
    io.number("smartPollMinutes", controller.smartPoll, 1, 255);
    io.number("enclosurePollMinutes", controller.encPoll, 1, 255);
    io.flag("buzzer", controller.buzzer);
    io.optional("battery", controller.hasBattery, controller.battery);
    io.list("enclosures", controller.enclosures, kMaxEnclosures);
    io.list("drives", controller.drives, kMaxDriveId + 1);
    io.list("logicalDrives", controller.logicalDrives, kMaxLogDrvs);
    io.list("speedOptions", controller.speedOptions, kMaxSpeedOptions);
    io.list("events", controller.events, 4 * kMaxEventsKept);
}

template <typename Io>
static void describe(Io& io, World& world) {
    io.number("clockOffset", world.clockOffset, 0, kMaxOffset);
    require(io, "controllers");
    io.list("controllers", world.controllers, kMaxControllers);
}

// The text from the bracket at open to its closing one, at close, on one line. Empty when it contains
// other brackets or gets too long.
static std::string joinLines(const std::string& text, std::size_t open, std::size_t& close) {
    static constexpr std::size_t kMaxLineLength = 100;
    std::string line(1, text[open]);
    bool quoted = false;
    for (std::size_t i = open + 1; i < text.size() && line.size() < kMaxLineLength; i++) {
        const char c = text[i];
        if (quoted && c == '\\')
            line += text[i++];
        else if (c == '"')
            quoted = !quoted;
        else if (!quoted && (c == '{' || c == '['))
            return "";
        if (quoted || c != '\n')
            line += text[i];
        else
            i = text.find_first_not_of(' ', i + 1) - 1;
        if (!quoted && c == ',')
            line += ' ';
        close = i;
        if (!quoted && (c == '}' || c == ']'))
            return line;
    }
    return "";
}

// Small records and lists of numbers on one line each, so that a world can be read and edited.
static std::string compacted(const std::string& text) {
    std::string result;
    bool quoted = false;
    for (std::size_t i = 0; i < text.size(); i++) {
        std::size_t close = i;
        const bool opens = !quoted && (text[i] == '{' || text[i] == '[');
        const std::string line = opens ? joinLines(text, i, close) : "";
        if (!line.empty()) {
            result += line;
            i = close;
            continue;
        }
        if (quoted && text[i] == '\\')
            result += text[i++];
        else if (text[i] == '"')
            quoted = !quoted;
        result += text[i];
    }
    return result;
}

std::string worldToJson(const World& world) {
    Writer io;
    describe(io, const_cast<World&>(world));
    return compacted(io.json.dump(2, ' ', false, Json::error_handler_t::replace)) + "\n";
}

static std::string pathText(const FieldPath& path) {
    std::string text;
    for (const std::string& step : path) {
        const bool position = !step.empty() && step.find_first_not_of("0123456789") == std::string::npos;
        text += position ? "[" + step + "]" : (text.empty() ? "" : ".") + step;
    }
    return text.empty() ? "" : text + ": ";
}

// Listings are in order of ID, whatever the order in a hand-edited file.
static void normalizeOrder(Controller& controller) {
    std::ranges::sort(controller.drives, {}, &Drive::id);
    std::ranges::sort(controller.logicalDrives, {}, &LogicalDrive::logDrvId);
}

// The parser's message about a number quotes it but gives no position.
static int lineOfQuoted(const std::string& text, const std::string& message) {
    const std::size_t open = message.find('\'');
    const std::size_t close = message.rfind('\'');
    if (open == std::string::npos || open == close)
        return 1;
    const std::size_t at = text.find(message.substr(open + 1, close - open - 1));
    return at == std::string::npos ? 1 : lineOfByte(text, at);
}

// A world needs about eight levels. The parser takes memory for each one, and a hostile text has millions.
static constexpr int kMaxNesting = 32;

// What the parser would accept, or take too much memory for. Returns false with error filled.
static bool checkText(const std::string& text, ValidationError& error) {
    // The parser would take a NUL for the end of the text.
    if (const std::size_t nul = text.find('\0'); nul != std::string::npos)
        error = {lineOfByte(text, nul), "this is not valid JSON"};
    else if (const std::size_t deep = findDeepNesting(text, kMaxNesting); deep != std::string::npos)
        error = {lineOfByte(text, deep), "this is nested too deeply"};
    else
        return true;
    return false;
}

bool worldFromJson(const std::string& text, World& world, ValidationError& error) {
    try {
        World read;
        if (!checkText(text, error))
            return false;
        const ParsedJson json = ParsedJson::parse(text);
        if (const std::size_t duplicate = findDuplicateKey(text); duplicate != std::string::npos) {
            error = {lineOfByte(text, duplicate), "a key is given twice in one object"};
            return false;
        }
        Reader::readRecord(json, {}, read);
        checkWorld(read);
        for (Controller& controller : read.controllers)
            normalizeOrder(controller);
        world = std::move(read);
        return true;
    } catch (const WorldError& invalid) {
        error = {lineForPath(text, invalid.path), pathText(invalid.path) + invalid.reason};
    } catch (const ParsedJson::out_of_range& invalid) {
        error = {lineOfQuoted(text, invalid.what()), "a number is far too large"};
    } catch (const ParsedJson::parse_error& invalid) {
        error = {lineOfByte(text, invalid.byte > 0 ? invalid.byte - 1 : 0), "this is not valid JSON"};
    }
    return false;
}

} // namespace q5sim
