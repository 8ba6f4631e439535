// Executes the steps and reads the controller after each one.
#include "tools/restore/apply.h"

#include <algorithm>
#include <cstdio>

#include "snapshot/read.h"
#include "tools/restore/steps.h"
#include "util/signals.h"

// Whether a step may disappear from the plan without having been done: the settings of a new logical drive
// are unknown until it exists, and may need no change.
static bool mayBeMissing(const Step& step) {
    return step.kind == StepKind::array;
}

// For the same reason, such a step may set less than planned: only the start of its text, which names the
// logical drive, is compared.
static bool isSameStep(const Step& a, const Step& b) {
    return a.kind == b.kind && (a.kind == StepKind::array
                                    ? a.text.substr(0, a.text.find(':')) == b.text.substr(0, b.text.find(':'))
                                    : a.text == b.text);
}

// Compares the new plan with the rest of the old one. Returns the first difference; empty if there is none.
static std::string differenceInPlan(const Plan& wanted, const Plan& plan) {
    if (!plan.obstacles.empty())
        return plan.obstacles[0];
    std::size_t next = 1;
    for (const Step& step : plan.steps) {
        while (next < wanted.steps.size() && !isSameStep(wanted.steps[next], step) &&
               mayBeMissing(wanted.steps[next]))
            ++next;
        if (next >= wanted.steps.size() || !isSameStep(wanted.steps[next], step))
            return "still to do: " + step.text;
        ++next;
    }
    while (next < wanted.steps.size() && mayBeMissing(wanted.steps[next]))
        ++next;
    return next < wanted.steps.size() ? "no longer to do: " + wanted.steps[next].text : "";
}

static void printNewRebuilds(const Plan& before, const Plan& after) {
    for (const std::string& rebuild : after.rebuilds)
        if (std::find(before.rebuilds.begin(), before.rebuilds.end(), rebuild) == before.rebuilds.end())
            std::printf("A rebuild of %s was started.\n", rebuild.c_str());
}

static void printError(const std::string& problem) {
    std::fprintf(stderr, "cli-restore: %s\n", problem.c_str());
}

// Logs, executes and checks the first step; the plan then contains the remaining ones.
static ApplyResult doFirstStep(const Restore& restore, const Log& log, Plan* plan) {
    const std::string text = plan->steps[0].text;
    std::string problem = addToLog(log, std::string(kStep) + " " + text);
    if (!problem.empty()) {
        printError(problem);
        return ApplyResult::failed;
    }
    runStep(plan->steps[0]);
    const Plan left = makePlan(restore.saved, readController(restore.controller), restore.drives);
    printNewRebuilds(*plan, left);
    const std::string difference = differenceInPlan(*plan, left);
    *plan = left;
    if (!difference.empty()) {
        addToLog(log, "stopped " + difference);
        printError("stopped after \"" + text + "\": " + difference);
        return ApplyResult::stopped;
    }
    problem = addToLog(log, kStepDone);
    if (problem.empty())
        return ApplyResult::done;
    printError(problem);
    return ApplyResult::failed;
}

// A signal ends the program only between two steps.
ApplyResult applyPlan(const Restore& restore, Plan plan, const Log& log) {
    for (int number = 1; !plan.steps.empty(); ++number) {
        std::printf("%d. %s\n", number, plan.steps[0].text.c_str());
        std::fflush(stdout);
        sigset_t before;
        blockSignals(&before);
        const ApplyResult result = doFirstStep(restore, log, &plan);
        restoreSignals(&before);
        if (result != ApplyResult::done)
            return result;
    }
    std::string problem = addToLog(log, kFinished);
    if (problem.empty())
        return ApplyResult::done;
    printError(problem);
    return ApplyResult::failed;
}
