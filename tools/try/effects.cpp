// Advances the clock of a copy until no job runs, and notes the jobs that started meanwhile.
#include "tools/try/effects.h"

#include <algorithm>

#include "simulator/engine/activities.h"
#include "simulator/engine/advance.h"
#include "simulator/engine/progress.h"

static std::string part(std::int64_t count, const char* unit) {
    return std::to_string(count) + " " + unit + (count == 1 ? "" : "s");
}

std::string durationText(std::int64_t seconds) {
    const std::int64_t hours = seconds / 3600, minutes = seconds / 60 % 60;
    if (hours > 0)
        return part(hours, "hour") + (minutes > 0 ? " " + part(minutes, "minute") : "");
    if (minutes > 0)
        return part(minutes, "minute") + (seconds % 60 > 0 ? " " + part(seconds % 60, "second") : "");
    return part(seconds, "second");
}

// Identifies a job, even if its logical drive is renamed while it runs. A logical drive that a command
// created is not the captured one with the same ID.
struct JobKey {
    std::size_t controller;
    std::uint8_t kind;     // one ActivityBit; 0: media patrol
    std::uint16_t id;      // of the logical drive or the drive
    bool captured = false; // of the logical drive
    bool operator==(const JobKey&) const = default;
};

// A job that runs on a logical drive, or a media patrol of a drive.
struct Job {
    JobKey key;
    std::string name;
    std::int64_t due = q5sim::kNoDeadline;
    bool paused = false;
};

static void addJobs(const q5sim::Controller& controller, std::size_t id, std::vector<Job>* jobs) {
    for (const q5sim::LogicalDrive& drive : controller.logicalDrives)
        if (drive.activity.kind != 0)
            jobs->push_back({{id, drive.activity.kind, drive.logDrvId, drive.captured},
                             nameOf(id, drive) + ": " + q5sim::activityName(drive.activity.kind),
                             q5sim::dueTime(controller, drive.activity),
                             drive.activity.paused});
    for (const q5sim::Drive& drive : controller.drives)
        if (drive.patrol.state == kPatrolRunning)
            jobs->push_back({{id, 0, drive.id},
                             "controller " + std::to_string(id) + ": drive " + std::to_string(drive.id + 1) +
                                 ": media patrol",
                             q5sim::patrolDueTime(controller, drive),
                             false});
}

static std::vector<Job> jobsOf(const q5sim::World& world) {
    std::vector<Job> jobs;
    for (std::size_t id = 0; id < world.controllers.size(); id++)
        addJobs(world.controllers[id], id, &jobs);
    return jobs;
}

static const Job* findJob(const std::vector<Job>& jobs, const Job& wanted) {
    const auto found =
        std::find_if(jobs.begin(), jobs.end(), [&](const Job& job) { return job.key == wanted.key; });
    return found == jobs.end() ? nullptr : &*found;
}

// A job that has been started or resumed since the earlier ones.
static void noteStarted(const std::vector<Job>& earlier, const std::vector<Job>& now, std::int64_t time,
                        TextLines* started) {
    for (const Job& job : now) {
        const Job* before = findJob(earlier, job);
        if (job.paused || (before != nullptr && !before->paused))
            continue;
        started->push_back(job.name + ", " + durationText(std::max<std::int64_t>(0, job.due - time)));
    }
}

static constexpr int kMaxSteps = 10000; // more than any world needs; a damaged one must not loop forever

// Advances until no job runs. Notes the jobs that are not among the earlier ones.
static void advanceUntilIdle(q5sim::World* world, std::vector<Job> earlier, std::int64_t now,
                             TextLines* started) {
    for (int step = 0; step < kMaxSteps; step++) {
        const std::vector<Job> jobs = jobsOf(*world);
        noteStarted(earlier, jobs, now, started);
        earlier = jobs;
        const std::int64_t next = q5sim::nextActivityTime(*world);
        if (next == q5sim::kNoDeadline)
            return;
        now = std::max(now, next);
        q5sim::advanceTo(*world, now);
    }
}

Effects followEffects(const q5sim::World& before, const q5sim::World& after, std::int64_t now) {
    Effects effects = {before, before, after, {}};
    TextLines running;
    advanceUntilIdle(&effects.expected, jobsOf(before), now, &running);
    advanceUntilIdle(&effects.end, jobsOf(before), now, &effects.started);
    return effects;
}
