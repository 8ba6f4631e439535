// The drives of the HTML page: a card each.
#include "snapshot/serials.h"
#include "snapshot/text.h"
#include "snapshot/words.h"
#include "tools/status/facts.h"
#include "tools/status/page_parts.h"
#include "tools/status/rules.h"

static std::string placeOf(const PhyDrvInfo& info) {
    const std::string channel = "channel " + std::to_string(info.channel);
    return info.enclosureId == kNoEnclosureId ? channel + ", in no enclosure"
                                              : channel + ", enclosure " + std::to_string(info.enclosureId);
}

static std::string patrolText(const Drive& drive) {
    if (!drive.patrol)
        return "could not be read";
    std::string text = patrolStateText(drive.patrol->state);
    if (drive.patrol->state == kPatrolRunning || drive.patrol->state == kPatrolPaused)
        text += " at " + std::to_string(drive.patrol->progress) + "%";
    return text + ", " + counted(drive.patrol->errorCount, "error");
}

static void addDriveFacts(const Drive& drive, std::string* page) {
    *page += "<dl>\n";
    addFact(page, "Model", isolatedText(trimmed(fieldText(drive.info.model))));
    addFact(page, "Serial number", isolatedText(serialOf(drive)));
    addFact(page, "Firmware", isolatedText(trimmed(fieldText(drive.info.firmware))));
    addFact(page, "Size", megabytesText(drive.info.capacity));
    addFact(page, "Place", placeOf(drive.info));
    addFact(page, "Media patrol", patrolText(drive));
    if (drive.locate.value_or(0) != 0)
        addFact(page, "Locate light", "on");
    *page += "</dl>\n";
}

void addDrives(const Report& report, const Controller& controller, std::string* page) {
    *page += "<h3>Drives</h3>\n";
    if (controller.drives.empty()) {
        *page += hasAllDrives(controller) ? "<p>There are no drives.</p>\n"
                                          : "<p>The drives could not be read.</p>\n";
        return;
    }
    *page +=
        "<p>The strips show the space of each drive. A number is that of the logical drive it belongs to; "
        "GS is a global and DS a dedicated spare, F is free, X cannot be accessed.</p>\n"
        "<div class=\"cards\">\n";
    for (const Drive& drive : controller.drives) {
        openCard(report, objectOf(controller, drive), "Drive " + std::to_string(drive.number), page);
        addDriveFacts(drive, page);
        addSpace(controller, drive, page);
        closeCard(page);
    }
    *page += "</div>\n";
}
