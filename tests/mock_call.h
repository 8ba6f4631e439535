// The interface between the mock operations and the plan.
#pragma once

#include "tests/mock_adapter.h"

struct PlannedReply {
    Bytes reply;
    int result;
};

// Removes the next call from the plan and returns its reply, after reporting any difference. An
// unplanned call gets an empty reply and the result 1.
PlannedReply nextPlannedReply(const char* operation, const Bytes& arguments);
