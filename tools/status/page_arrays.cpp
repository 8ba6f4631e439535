// The logical drives of the HTML page: state, members and progress of each.
#include <algorithm>

#include "snapshot/fields.h"
#include "snapshot/text.h"
#include "tools/status/facts.h"
#include "tools/status/page_parts.h"
#include "tools/status/rules.h"

std::string arrayName(const LogicalDrive& drive) {
    return objectName(
        {ObjectKind::logicalDrive, 0, drive.info.logDrvId, std::string(fieldText(drive.info.name))});
}

static std::string cacheText(const LogicalDrive& drive) {
    const RecordType& type = recordType<LogDrvInfo>();
    std::string text;
    for (const std::string& word :
         wordsOf(type, *findField(type, "writeCacheMode"))->words(drive.info.writeCacheMode))
        text += (text.empty() ? "" : ", ") + word;
    return text.empty() ? "write through" : text;
}

static void addArrayFacts(const LogicalDrive& drive, std::string* page) {
    *page += "<dl>\n";
    addFact(page, "State", arrayStateText(arrayState(drive)));
    addFact(page, "RAID level", raidLevelText(drive.info.raidLevel));
    addFact(page, "Size", megabytesText(drive.info.sectorCount));
    addFact(page, "Write cache", cacheText(drive));
    *page += "</dl>\n";
}

// The percentage is shown as the adapter reports it, the bar is limited to 100.
static void addProgress(const std::string& anchor, const Activity& activity, std::string* page) {
    static constexpr unsigned full = 100;
    const std::string id = anchor + "-a" + std::to_string(activity.kind);
    const std::string percent = std::to_string(activity.percent) + "%";
    *page += "<p class=\"progress\"><label for=\"" + id + "\">" + activityText(activity.kind) +
             (isPaused(activity) ? " paused" : " running") + " at " + percent + "</label> <progress id=\"" +
             id + "\" max=\"100\" value=\"" + std::to_string(std::min<unsigned>(activity.percent, full)) +
             "\">" + percent + "</progress></p>\n";
}

static bool isRebuilding(const Drive& drive, std::uint16_t arrayId) {
    const auto all = extents(drive.info);
    return std::any_of(all.begin(), all.end(), [&](const ExtentEntry& extent) {
        return extent.arrayId == arrayId && (extent.state & kExtentRebuilding) != 0;
    });
}

static std::string memberState(const Controller& controller, const LogicalDrive& drive,
                               const Member& member) {
    if (member.lost)
        return badge("lost", "critical");
    const Drive* own = findDrive(controller, member.number);
    if (own == nullptr)
        return badge("not listed", "unknown");
    return isRebuilding(*own, drive.info.arrayId) ? badge("rebuilding", "info") : badge("present", "ok");
}

static std::string memberName(const Controller& controller, const Member& member) {
    const std::string number = std::to_string(member.number);
    if (!member.listed)
        return "Drive " + number;
    return "<a href=\"#" + anchorOf({ObjectKind::drive, controller.id, member.number, ""}) + "\">Drive " +
           number + "</a>";
}

static std::string memberPlace(const Member& member) {
    if (!member.listed)
        return "not listed";
    const std::string channel = "channel " + std::to_string(member.channel);
    return member.enclosureId == kNoEnclosureId
               ? channel
               : channel + ", enclosure " + std::to_string(member.enclosureId);
}

static void addMember(const Controller& controller, const LogicalDrive& drive, const Member& member,
                      std::string* page) {
    const std::string serial = member.listed ? isolatedText(trimmed(member.serial)) : "unknown";
    *page += "<tr><th scope=\"row\">" + memberName(controller, member) + "</th><td>" + memberPlace(member) +
             "</td><td>" + serial + "</td><td>" + memberState(controller, drive, member) + "</td></tr>\n";
}

static bool isMember(const LogicalDrive& drive, std::uint32_t number) {
    return std::any_of(drive.members.begin(), drive.members.end(),
                       [&](const Member& member) { return member.number == number; });
}

// A drive that is being rebuilt as a member, but is not listed as one yet.
static Member newMember(const Drive& drive) {
    return {drive.number,
            false,
            false,
            true,
            std::string(fieldText(drive.info.serial)),
            drive.info.channel,
            drive.info.enclosureId};
}

static void addMembers(const Controller& controller, const LogicalDrive& drive, std::string* page) {
    *page += "<table class=\"members\">\n<caption>Members of logical drive " +
             std::to_string(drive.info.logDrvId) +
             "</caption>\n<thead><tr><th scope=\"col\">Drive</th><th scope=\"col\">Place</th>"
             "<th scope=\"col\">Serial number</th><th scope=\"col\">State</th></tr></thead>\n<tbody>\n";
    for (const Member& member : drive.members)
        addMember(controller, drive, member, page);
    for (const Drive& each : controller.drives)
        if (!isMember(drive, each.number) && isRebuilding(each, drive.info.arrayId))
            addMember(controller, drive, newMember(each), page);
    *page += "</tbody>\n</table>\n";
}

static void addLogicalDrive(const Report& report, const Controller& controller, const LogicalDrive& drive,
                            std::string* page) {
    const Object object = objectOf(controller, drive);
    std::string name = objectName(object);
    name[0] = 'L';
    openCard(report, object, name, page);
    addArrayFacts(drive, page);
    for (const Activity& activity : drive.activities)
        addProgress(anchorOf(object), activity, page);
    if (drive.members.empty())
        *page += "<p>It names no members.</p>\n";
    else
        addMembers(controller, drive, page);
    closeCard(page);
}

void addLogicalDrives(const Report& report, const Controller& controller, std::string* page) {
    *page += "<h3>Logical drives</h3>\n";
    if (controller.logicalDrives.empty()) {
        *page += hasAllLogicalDrives(controller) ? "<p>There are no logical drives.</p>\n"
                                                 : "<p>The logical drives could not be read.</p>\n";
        return;
    }
    *page += "<div class=\"cards\">\n";
    for (const LogicalDrive& drive : controller.logicalDrives)
        addLogicalDrive(report, controller, drive, page);
    *page += "</div>\n";
}
