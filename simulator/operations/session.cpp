// Opening and closing the library, and counting its controllers.
#include "adapter/session.h"

#include "simulator/operations/operation.h"

using namespace q5sim;

int q5_initialize(const ApiInitRecord* record) {
    if (record == nullptr || record->signature != kApiSignature || record->mode != 1)
        return kRefused;
    return catchAll([] { return openWorld() ? kDone : kRefused; });
}

int q5_discover(int always1) {
    return always1 == 1 && worldIsOpen() ? kDone : kRefused;
}

int q5_getNumberOfHBA(std::uint32_t* count) {
    if (count == nullptr)
        return kRefused;
    *count = 0;
    return catchAll([&] {
        const World* world = currentWorld();
        if (world != nullptr)
            *count = static_cast<std::uint32_t>(world->controllers.size());
        return world != nullptr ? kDone : kRefused;
    });
}

int q5_finalize() {
    if (!worldIsOpen())
        return kRefused;
    closeWorld();
    return kDone;
}
