// A logical drive exists if the reply holds a record; the result of the call is ignored.
#include "commands/logdrv_lookup.h"

#include "adapter/reply.h"

bool findLogDrv(std::uint32_t controller, std::uint32_t logDrvId, LogDrvInfo* drive) {
    const LogDrvQuery query = {logDrvId, 1};
    Reply<LogDrvInfo, 1> reply = {};
    q5_getLogDrvInfo(hbaAddress(controller), 0, &query, &reply, sizeof reply);
    *drive = reply.record[0];
    return !records(reply).empty();
}
