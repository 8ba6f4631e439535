// Executes one step of a plan. These are the only calls of changing operations in programs other than cli.
#pragma once

#include "tools/restore/plan.h"

// Runs the command function of the step, which prints its own messages. Whether the step had its effect shows
// when the controller is read again: not every command reports a failure.
void runStep(const Step& step);
