// The export's blocks printed by themselves, of two controllers of so many drives.
#pragma once

void printExportedDrives(int count);
void printExportedLogDrvs(int count);
