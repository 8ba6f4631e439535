// The operations of the adapters' library that a snapshot may call: those that only read. The one that
// fetches events is not among them, since it might consume them.
#pragma once

#include "adapter/activity.h"
#include "adapter/battery.h"
#include "adapter/controller.h"
#include "adapter/enclosure.h"
#include "adapter/logdrv.h"
#include "adapter/mediapatrol.h"
#include "adapter/phydrv.h"
#include "adapter/session.h"

// Defined for read-only operations only: callReadOnly() compiles with nothing else.
template <auto operation>
struct ReadOnlyOperation;

#define READ_ONLY_OPERATION(operation)                  \
    template <>                                         \
    struct ReadOnlyOperation<operation> {               \
        static constexpr const char* name = #operation; \
    }

READ_ONLY_OPERATION(q5_initialize);
READ_ONLY_OPERATION(q5_discover);
READ_ONLY_OPERATION(q5_getNumberOfHBA);
READ_ONLY_OPERATION(q5_finalize);
READ_ONLY_OPERATION(q5_getControllerInfo);
READ_ONLY_OPERATION(q5_getControllerSettings);
READ_ONLY_OPERATION(q5_getDriverInfo);
READ_ONLY_OPERATION(q5_getDiscoverPath);
READ_ONLY_OPERATION(q5_getBatteryInfo);
READ_ONLY_OPERATION(q5_getBuzzerStatus);
READ_ONLY_OPERATION(q5_getEnclosureInfo);
READ_ONLY_OPERATION(q5_getEnclosureStatus);
READ_ONLY_OPERATION(q5_getPhyDrvInfo);
READ_ONLY_OPERATION(q5_getPhyDrvSettings);
READ_ONLY_OPERATION(q5_getPhyDrvLocateStatus);
READ_ONLY_OPERATION(q5_getDataTransferSpeed);
READ_ONLY_OPERATION(q5_getHBAMediaPatrolProgress);
READ_ONLY_OPERATION(q5_getLogDrvInfo);
READ_ONLY_OPERATION(q5_getLogDrvSettings);
READ_ONLY_OPERATION(q5_getAryLostDisk);
READ_ONLY_OPERATION(q5_getLogDrvInitProgress);
READ_ONLY_OPERATION(q5_getLogDrvSynchProgress);
READ_ONLY_OPERATION(q5_getRedundancyCheckProgress);
READ_ONLY_OPERATION(q5_getMigrationProgress);
READ_ONLY_OPERATION(q5_getRebuildProgress);

#undef READ_ONLY_OPERATION

// Every call of a snapshot goes through here.
template <auto operation, typename... Arguments>
int callReadOnly(Arguments... arguments) {
    static_assert(ReadOnlyOperation<operation>::name != nullptr);
    return operation(arguments...);
}
