// Opening and closing the library, and counting its controllers.
#include "adapter/session.h"

#include "simulator/operations/operation.h"

using namespace q5sim;

// The result that the rules impose on an operation without a controller.
static int ruledResult(const char* operation) {
    beginCall();
    const Effect effect = applyRules(operation);
    if (effect.result != kDone)
        recordReason(operation);
    return effect.result;
}

int q5_initialize(const ApiInitRecord* record) {
    if (record == nullptr || record->signature != kApiSignature || record->mode != 1)
        return kRefused;
    return catchAll([] {
        if (!openWorld())
            return kRefused;
        const int result = ruledResult("q5_initialize");
        if (result != kDone)
            closeWorld();
        return result;
    });
}

int q5_discover(int always1) {
    if (always1 != 1 || !isWorldOpen())
        return kRefused;
    return catchAll([] { return ruledResult("q5_discover"); });
}

int q5_getNumberOfHBA(std::uint32_t* count) {
    if (count == nullptr)
        return kRefused;
    *count = 0;
    return runCall(Caller({}, "q5_getNumberOfHBA"), [&] {
        const Effect effect = applyRules("q5_getNumberOfHBA");
        if (effect.ends)
            return effect.result;
        const World* world = currentWorld();
        if (world != nullptr)
            *count = static_cast<std::uint32_t>(world->controllers.size());
        return world != nullptr ? kDone : kRefused;
    });
}

int q5_finalize() {
    if (!isWorldOpen())
        return kRefused;
    return runCall(Caller({}, "q5_finalize"), [] {
        const Effect effect = applyRules("q5_finalize");
        if (!effect.ends)
            closeWorld();
        return effect.result;
    });
}
