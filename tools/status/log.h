// Sending lines to syslog.
#pragma once

#include "tools/status/changes.h"

// Each line with the priority of its severity: LOG_CRIT, LOG_WARNING, LOG_ERR for unknown, LOG_INFO.
void sendToSyslog(const Lines& lines);
