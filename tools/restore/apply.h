// Executes a plan, step by step.
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
    stopped, // a step failed, or the state was not as planned; the reason was printed
    failed,  // the log could not be written; the reason was printed
};

// Executes a plan without obstacles. After each step, the controller is read and must be as planned.
ApplyResult applyPlan(const Restore& restore, Plan plan, const Log& log);
