// The enclosures of the HTML page: a map of the slots of each, and its sensors. An adapter identifies a slot
// by its channel. It does not report which channels belong to which enclosure: an empty channel is shown in
// the map if there is only one place where it can be.
#include <algorithm>

#include "snapshot/text.h"
#include "tools/status/facts.h"
#include "tools/status/page_parts.h"
#include "tools/status/rules.h"

// What a drive is used for, each use once.
static std::vector<std::string> driveUses(const Controller& controller, const Drive& drive) {
    std::vector<std::string> uses;
    for (const LogicalDrive& array : controller.logicalDrives)
        for (const Member& member : array.members)
            if (member.lost && member.number == drive.number)
                uses.push_back("lost by logical drive " + std::to_string(array.info.logDrvId));
    for (const ExtentEntry& extent : extents(drive.info))
        if (const std::string use = extentUse(controller, extent, false);
            std::find(uses.begin(), uses.end(), use) == uses.end())
            uses.push_back(use);
    if (uses.empty())
        uses.emplace_back("no extents");
    return uses;
}

static void addSlot(const Report& report, const Controller& controller, const Drive& drive,
                    std::string* page) {
    const Object object = objectOf(controller, drive);
    *page += "<li class=\"slot\"><span class=\"where\">Channel " + std::to_string(drive.info.channel) +
             "</span> <a href=\"#" + anchorOf(object) + "\">Drive " + std::to_string(drive.number) + "</a> " +
             statusBadge(worstOf(report, object));
    if (drive.locate.value_or(0) != 0)
        page->append(" ").append(badge("locate light on", "info"));
    for (const std::string& use : driveUses(controller, drive))
        *page += " <span class=\"use\">" + use + "</span>";
    *page += "</li>\n";
}

// The slot may not be empty if the list of drives is incomplete.
static void addEmptySlot(const Controller& controller, std::uint32_t channel, std::string* page) {
    *page += "<li class=\"slot empty\"><span class=\"where\">Channel " + std::to_string(channel) +
             "</span> " + (hasAllDrives(controller) ? "empty" : "no drive listed") + "</li>\n";
}

// A place in the map: a drive, or an empty channel.
struct Slot {
    std::uint32_t channel;
    const Drive* drive; // nullptr: empty
};

static std::vector<Slot> slotsOf(const Controller& controller, std::uint16_t enclosureId) {
    std::vector<Slot> slots;
    for (const Drive& drive : controller.drives)
        if (drive.info.enclosureId == enclosureId)
            slots.push_back({drive.info.channel, &drive});
    return slots;
}

static std::vector<std::uint32_t> emptyChannels(const Controller& controller) {
    static constexpr std::uint32_t kMaxChannels = 64; // more than that is an invalid reply
    std::vector<std::uint32_t> channels;
    for (std::uint32_t channel = 0;
         controller.info && channel < std::min<std::uint32_t>(kMaxChannels, controller.info->maxPorts);
         ++channel)
        if (std::none_of(controller.drives.begin(), controller.drives.end(),
                         [&](const Drive& drive) { return drive.info.channel == channel; }))
            channels.push_back(channel);
    return channels;
}

static bool isOnlyPlace(const Controller& controller, std::uint16_t enclosureId) {
    return controller.enclosures.size() <= 1 &&
           std::all_of(controller.drives.begin(), controller.drives.end(),
                       [&](const Drive& drive) { return drive.info.enclosureId == enclosureId; });
}

static std::vector<Slot> mapOf(const Controller& controller, std::uint16_t enclosureId) {
    std::vector<Slot> slots = slotsOf(controller, enclosureId);
    if (isOnlyPlace(controller, enclosureId))
        for (const std::uint32_t channel : emptyChannels(controller))
            slots.push_back({channel, nullptr});
    std::stable_sort(slots.begin(), slots.end(),
                     [](const Slot& left, const Slot& right) { return left.channel < right.channel; });
    return slots;
}

static void addMap(const Report& report, const Controller& controller, std::uint16_t enclosureId,
                   const std::string& label, std::string* page) {
    const std::vector<Slot> slots = mapOf(controller, enclosureId);
    if (slots.empty()) {
        *page += "<p>No drive is listed in it.</p>\n";
        return;
    }
    *page += "<ul class=\"slots\" aria-label=\"" + label + "\">\n";
    for (const Slot& slot : slots)
        if (slot.drive != nullptr)
            addSlot(report, controller, *slot.drive, page);
        else
            addEmptySlot(controller, slot.channel, page);
    *page += "</ul>\n";
}

static std::string rangeText(int volts, const Limits& limits) {
    const long long millivolts = 1000LL * volts;
    const long long slack =
        millivolts * std::min(limits.voltageWarningPercent, limits.voltageCriticalPercent) / 100;
    return "above " + decimal(millivolts - slack, 3) + " and below " + decimal(millivolts + slack, 3) + " V";
}

// Where a reading is neither a warning nor critical.
static std::string limitText(const EnclosureSensor& sensor, const Limits& limits) {
    switch (sensor.type) {
    case kFanSensor:
        return "above " + std::to_string(limits.fanStoppedRpm) + " rpm";
    case kRail5VSensor:
        return rangeText(5, limits);
    case kRail12VSensor:
        return rangeText(12, limits);
    default:
        return "below " + std::to_string(std::min(limits.enclosureWarmCelsius, limits.enclosureHotCelsius)) +
               " °C";
    }
}

static std::string readingText(const EnclosureSensor& sensor) {
    const auto reading = static_cast<std::int32_t>(sensor.reading);
    if (sensor.type == kFanSensor)
        return std::to_string(reading) + " rpm";
    if (sensor.type == kTemperatureSensor)
        return std::to_string(reading) + " °C";
    return decimal(sensor.reading, 3) + " V";
}

// Sensors count from 1, separately for each type, as in the findings.
static std::string sensorRows(const EnclosureStatus& status, const Limits& limits) {
    int counts[256] = {};
    std::string rows;
    for (const EnclosureSensor& sensor : status.sensor)
        if (const char* type = sensorTypeText(sensor.type))
            rows += "<tr><th scope=\"row\">" + std::string(type) + " " +
                    std::to_string(++counts[sensor.type]) + "</th><td>" + readingText(sensor) + "</td><td>" +
                    limitText(sensor, limits) + "</td></tr>\n";
    return rows;
}

static void addSensors(const Report& report, const Enclosure& enclosure, std::string* page) {
    const std::string rows = enclosure.status ? sensorRows(*enclosure.status, report.limits) : "";
    if (rows.empty())
        *page += enclosure.status ? "<p>It has no sensors.</p>\n" : "<p>Its sensors could not be read.</p>\n";
    else
        *page += "<table class=\"sensors\">\n<caption>Sensors of enclosure " + std::to_string(enclosure.id) +
                 "</caption>\n<thead><tr><th scope=\"col\">Sensor</th><th scope=\"col\">Reading</th>"
                 "<th scope=\"col\">Expected</th></tr></thead>\n<tbody>\n" +
                 rows + "</tbody>\n</table>\n";
}

static void addEnclosure(const Report& report, const Controller& controller, const Enclosure& enclosure,
                         std::string* page) {
    const std::string id = std::to_string(enclosure.id);
    openCard(report, objectOf(controller, enclosure),
             "Enclosure " + id + ", " + enclosureTypeText(enclosure.entry.type), page);
    addMap(report, controller, static_cast<std::uint16_t>(enclosure.id), "Slots of enclosure " + id, page);
    addSensors(report, enclosure, page);
    closeCard(page);
}

static void addOtherPlace(const Report& report, const Controller& controller, std::uint16_t enclosureId,
                          std::string* page) {
    const std::string id = std::to_string(enclosureId);
    const bool none = enclosureId == kNoEnclosureId;
    *page += "<article class=\"card\">\n<h4>" +
             (none ? "Drives in no enclosure" : "Enclosure " + id + ", which the adapter does not list") +
             "</h4>\n";
    addMap(report, controller, enclosureId, none ? "Drives in no enclosure" : "Slots of enclosure " + id,
           page);
    *page += "</article>\n";
}

// Places that drives report, but no listed enclosure.
static std::vector<std::uint16_t> otherPlaces(const Controller& controller) {
    std::vector<std::uint16_t> places;
    for (const Drive& drive : controller.drives) {
        const std::uint16_t id = drive.info.enclosureId;
        const bool listed = std::any_of(controller.enclosures.begin(), controller.enclosures.end(),
                                        [&](const Enclosure& enclosure) { return enclosure.id == id; });
        if (!listed && std::find(places.begin(), places.end(), id) == places.end())
            places.push_back(id);
    }
    std::sort(places.begin(), places.end());
    return places;
}

static void addEmptyChannels(const Controller& controller, std::string* page) {
    std::string list;
    for (const std::uint32_t channel : emptyChannels(controller))
        list += (list.empty() ? "" : ", ") + std::to_string(channel);
    if (!list.empty())
        *page += std::string("<p>Channels without a ") + (hasAllDrives(controller) ? "" : "listed ") +
                 "drive: " + list + ".</p>\n";
}

void addEnclosures(const Report& report, const Controller& controller, std::string* page) {
    const std::vector<std::uint16_t> others = otherPlaces(controller);
    *page += "<h3>Enclosures</h3>\n";
    for (const Enclosure& enclosure : controller.enclosures)
        addEnclosure(report, controller, enclosure, page);
    for (const std::uint16_t id : others)
        addOtherPlace(report, controller, id, page);
    const std::size_t places = controller.enclosures.size() + others.size();
    if (places == 0)
        *page += isRefused(controller, "q5_getEnclosureInfo") ? "<p>The enclosures could not be read.</p>\n"
                                                              : "<p>There are no enclosures.</p>\n";
    if (places != 1)
        addEmptyChannels(controller, page);
}
