// What stands between the scripted operations and the plan.
#pragma once

#include "tests/mock_adapter.h"

struct CallAnswer {
    Bytes reply;
    int result;
};

// Takes the next planned call off the plan and returns its answer, after reporting whatever differs;
// a call beyond the plan is answered with nothing and the result 1.
CallAnswer takeCall(const char* operation, const Bytes& handedOver);
