// Opening and closing the adapter library, and counting the controllers.
#include "snapshot/read.h"

static ApiInitRecord initRecord() {
    ApiInitRecord record = {};
    record.signature = kApiSignature;
    record.mode = 1;
    record.time = 60;
    return record;
}

// The result is not checked: like cli, this uses the count.
static void countControllers(Snapshot* snapshot) {
    Guarded<std::uint32_t> count;
    readRecord<q5_getNumberOfHBA>(&snapshot->faults, &count, [](std::uint32_t* controllers) {
        return callReadOnly<q5_getNumberOfHBA>(controllers);
    });
    snapshot->controllerCount = count.record;
    if (count.record > kMaxSnapshotControllers)
        addFault<q5_getNumberOfHBA>(&snapshot->faults, FaultKind::impossible, count.record);
}

// A library that cannot be opened is a fault of the whole snapshot.
OpenResult openAdapters(Snapshot* snapshot) {
    const ApiInitRecord record = initRecord();
    if (const int result = callReadOnly<q5_initialize>(&record); result != 0) {
        addFault<q5_initialize>(&snapshot->faults, FaultKind::refused, result);
        return OpenResult::failed;
    }
    if (const int result = callReadOnly<q5_discover>(1); result != 0) {
        addFault<q5_discover>(&snapshot->faults, FaultKind::refused, result);
        return OpenResult::failed;
    }
    countControllers(snapshot);
    return snapshot->controllerCount > 0 ? OpenResult::opened : OpenResult::noController;
}

void closeAdapters() {
    callReadOnly<q5_finalize>();
}

void readControllers(Snapshot* snapshot) {
    const std::uint32_t count = std::min(snapshot->controllerCount, kMaxSnapshotControllers);
    for (std::uint32_t id = 0; id < count; ++id)
        snapshot->controllers.push_back(readController(id));
}
