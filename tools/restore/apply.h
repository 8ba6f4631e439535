// Doing a plan, step by step.
#pragma once

#include "tools/restore/log.h"
#include "tools/restore/plan.h"

// What a plan is made from, again after each step.
struct Restore {
    const Controller& saved;
    std::uint32_t controller; // the present one
    DriveMap drives;
};

enum class ApplyResult {
    done,
    stopped, // at a step, or because the state was another one than planned; the reason was printed
    failed,  // the log could not be written; the reason was printed
};

// Does the steps of a plan without obstacles. After each one, the controller is read and must be as planned.
ApplyResult applyPlan(const Restore& restore, Plan plan, const Log& log);
