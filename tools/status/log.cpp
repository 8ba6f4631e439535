// Sending lines to syslog.
#include "tools/status/log.h"

#include <syslog.h>

static int priorityOf(Severity severity) {
    static constexpr int priorities[] = {LOG_INFO, LOG_WARNING, LOG_CRIT, LOG_ERR};
    return priorities[static_cast<std::size_t>(severity)];
}

void sendToSyslog(const Lines& lines) {
    openlog("cli-status", LOG_PID, LOG_DAEMON);
    for (const Line& line : lines)
        syslog(priorityOf(line.severity), "%s: %s", severityText(line.severity), line.text.c_str());
    closelog();
}
