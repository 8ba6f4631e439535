// Metrics of drives.
#include <algorithm>

#include "snapshot/serials.h"
#include "snapshot/text.h"
#include "tools/status/facts.h"
#include "tools/status/metrics.h"

static Labels driveLabels(const Controller& controller, const Drive& drive) {
    Labels labels = controllerLabels(controller);
    labels.emplace_back("drive", std::to_string(drive.number));
    return labels;
}

// value(drive): the text of the value; empty: no series.
template <typename Value>
static void addForEachDrive(const Report& report, Series* series, Value value) {
    for (const Controller& controller : report.snapshot.controllers)
        for (const Drive& drive : controller.drives)
            if (const std::string text = value(drive); !text.empty())
                addSeries(series, driveLabels(controller, drive), text);
}

static void addDriveInfo(const Report& report, Series* series) {
    for (const Controller& controller : report.snapshot.controllers)
        for (const Drive& drive : controller.drives) {
            Labels labels = driveLabels(controller, drive);
            labels.emplace_back("channel", std::to_string(drive.info.channel));
            labels.emplace_back("enclosure", drive.info.enclosureId == kNoEnclosureId
                                                 ? ""
                                                 : std::to_string(drive.info.enclosureId));
            labels.emplace_back("model", trimmed(fieldText(drive.info.model)));
            labels.emplace_back("serial", serialOf(drive));
            labels.emplace_back("firmware", trimmed(fieldText(drive.info.firmware)));
            addSeries(series, labels, "1");
        }
}

static std::string bytesOf(std::uint64_t sectors) {
    static constexpr std::uint64_t sectorSize = 512;
    return std::to_string(sectors * sectorSize);
}

static void addSize(const Report& report, Series* series) {
    addForEachDrive(report, series, [](const Drive& drive) { return bytesOf(drive.info.capacity); });
}

static void addAccessible(const Report& report, Series* series) {
    addForEachDrive(report, series, [](const Drive& drive) { return yesNo(!isInaccessible(drive)); });
}

template <typename Test>
static bool hasExtent(const Drive& drive, Test test) {
    const auto all = extents(drive.info);
    return std::any_of(all.begin(), all.end(), test);
}

static void addSmart(const Report& report, Series* series) {
    addForEachDrive(report, series, [](const Drive& drive) {
        return yesNo(hasExtent(
            drive, [](const ExtentEntry& extent) { return (extent.access & kExtentSmartFailed) != 0; }));
    });
}

static void addSpare(const Report& report, Series* series) {
    addForEachDrive(report, series, [](const Drive& drive) { return yesNo(hasExtent(drive, isSpare)); });
}

static void addPatrolErrors(const Report& report, Series* series) {
    addForEachDrive(report, series, [](const Drive& drive) {
        return drive.patrol ? std::to_string(drive.patrol->errorCount) : "";
    });
}

static void addPatrolPasses(const Report& report, Series* series) {
    addForEachDrive(report, series, [](const Drive& drive) {
        return drive.patrol ? std::to_string(drive.patrol->loopCount) : "";
    });
}

static void addPatrolProgress(const Report& report, Series* series) {
    addForEachDrive(report, series, [](const Drive& drive) {
        return drive.patrol && drive.patrol->state == kPatrolRunning ? ratio(drive.patrol->progress) : "";
    });
}

std::span<const MetricFamily> driveMetrics() {
    static constexpr MetricFamily families[] = {
        {"sataraid_drive_info", "Place, model, serial and firmware of a drive; the value is always 1.",
         addDriveInfo},
        {"sataraid_drive_size_bytes", "Capacity of a drive.", addSize},
        {"sataraid_drive_accessible", "Whether any extent of a drive can be accessed.", addAccessible},
        {"sataraid_drive_smart_failed", "Whether a drive predicts its failure.", addSmart},
        {"sataraid_drive_spare", "Whether a drive holds a spare extent.", addSpare},
        {"sataraid_drive_patrol_errors", "Errors that media patrol has found on a drive.", addPatrolErrors},
        {"sataraid_drive_patrol_passes", "Passes that media patrol has completed on a drive.",
         addPatrolPasses},
        {"sataraid_drive_patrol_progress_ratio", "Progress of the running pass of media patrol on a drive.",
         addPatrolProgress},
    };
    return families;
}
