// Metrics of logical drives.
#include <algorithm>

#include "tools/status/facts.h"
#include "tools/status/metrics.h"

static Labels arrayLabels(const Controller& controller, const LogicalDrive& drive) {
    Labels labels = controllerLabels(controller);
    labels.emplace_back("logical_drive", std::to_string(drive.info.logDrvId));
    return labels;
}

template <typename Apply>
static void forEachArray(const Report& report, Apply apply) {
    for (const Controller& controller : report.snapshot.controllers)
        for (const LogicalDrive& drive : controller.logicalDrives)
            apply(arrayLabels(controller, drive), drive);
}

static void addArrayInfo(const Report& report, Series* series) {
    forEachArray(report, [&](Labels labels, const LogicalDrive& drive) {
        labels.emplace_back("name", fieldText(drive.info.name));
        labels.emplace_back("level", raidLevelText(drive.info.raidLevel));
        addSeries(series, labels, "1");
    });
}

static void addArraySize(const Report& report, Series* series) {
    static constexpr std::uint64_t sectorSize = 512;
    forEachArray(report, [&](const Labels& labels, const LogicalDrive& drive) {
        addSeries(series, labels, std::to_string(drive.info.sectorCount * sectorSize));
    });
}

static void addArrayState(const Report& report, Series* series) {
    forEachArray(report, [&](const Labels& labels, const LogicalDrive& drive) {
        for (const ArrayState state :
             {ArrayState::online, ArrayState::degraded, ArrayState::critical, ArrayState::offline}) {
            Labels all = labels;
            all.emplace_back("state", arrayStateText(state));
            addSeries(series, all, yesNo(arrayState(drive) == state));
        }
    });
}

static void addMembers(const Report& report, Series* series) {
    forEachArray(report, [&](const Labels& labels, const LogicalDrive& drive) {
        addSeries(series, labels, std::to_string(drive.members.size()));
    });
}

static void addLostMembers(const Report& report, Series* series) {
    forEachArray(report, [&](const Labels& labels, const LogicalDrive& drive) {
        const auto lost = std::count_if(drive.members.begin(), drive.members.end(),
                                        [](const Member& member) { return member.lost; });
        addSeries(series, labels, std::to_string(lost));
    });
}

// The word of an activity in labels.
static std::string activityLabel(ActivityBit kind) {
    std::string word = activityText(kind);
    std::replace(word.begin(), word.end(), ' ', '_');
    return word;
}

static constexpr ActivityBit kActivities[] = {kRebuilding, kInitializing, kRedundancyChecking, kSynchronizing,
                                              kMigrating};

static const Activity* findActivity(const LogicalDrive& drive, ActivityBit kind) {
    for (const Activity& activity : drive.activities)
        if (activity.kind == kind)
            return &activity;
    return nullptr;
}

static void addActivities(const Report& report, Series* series) {
    forEachArray(report, [&](const Labels& labels, const LogicalDrive& drive) {
        for (const ActivityBit kind : kActivities)
            for (const bool paused : {false, true}) {
                const Activity* activity = findActivity(drive, kind);
                Labels all = labels;
                all.emplace_back("activity", activityLabel(kind));
                all.emplace_back("state", paused ? "paused" : "running");
                addSeries(series, all, yesNo(activity != nullptr && isPaused(*activity) == paused));
            }
    });
}

static void addProgress(const Report& report, Series* series) {
    forEachArray(report, [&](const Labels& labels, const LogicalDrive& drive) {
        for (const Activity& activity : drive.activities) {
            Labels all = labels;
            all.emplace_back("activity", activityLabel(activity.kind));
            addSeries(series, all, ratio(activity.percent));
        }
    });
}

std::span<const MetricFamily> logicalDriveMetrics() {
    static constexpr MetricFamily families[] = {
        {"sataraid_logical_drive_info", "Name and RAID level of a logical drive; the value is always 1.",
         addArrayInfo},
        {"sataraid_logical_drive_size_bytes", "Capacity of a logical drive.", addArraySize},
        {"sataraid_logical_drive_state",
         "Whether this is the state of a logical drive: 1 for one of the states, 0 for the others.",
         addArrayState},
        {"sataraid_logical_drive_members", "Members of a logical drive, lost ones included.", addMembers},
        {"sataraid_logical_drive_lost_members", "Lost members of a logical drive.", addLostMembers},
        {"sataraid_logical_drive_activity",
         "Whether a background activity is in this state: 1 when it is, 0 when it is not.", addActivities},
        {"sataraid_logical_drive_activity_progress_ratio", "Progress of a background activity.", addProgress},
    };
    return families;
}
