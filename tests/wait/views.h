// Views and activities for the tests of cli-wait.
#pragma once

#include "adapter/mediapatrol.h"
#include "tools/wait/watch.h"

inline Target arrayTarget(std::uint32_t controller = 0, std::uint32_t number = 0,
                          const std::string& name = "Archive") {
    return {controller, false, number, name, 0};
}

inline Target driveTarget(std::uint32_t number) {
    return {0, true, number, "", 0};
}

// A logical drive in this state, without activities.
inline View quietView(ArrayState state) {
    View view;
    view.arrays.push_back({arrayTarget(), state});
    return view;
}

// A critical logical drive with an activity.
inline View activeView(unsigned kind, std::optional<unsigned> percent, bool paused = false) {
    View view = quietView(ArrayState::critical);
    view.activities.push_back({kind, arrayTarget(), percent, paused});
    return view;
}

// A drive with this state of its media patrol.
inline View patrolView(std::uint16_t state, unsigned percent = 0) {
    View view;
    view.drives.push_back({driveTarget(3), state});
    if (state == kPatrolRunning || state == kPatrolPaused)
        view.activities.push_back({kMediaPatrol, driveTarget(3), percent, state == kPatrolPaused});
    return view;
}

inline View failedView() {
    View view;
    view.problem = "controller 0: q5_getLogDrvInfo failed with result 1";
    return view;
}
