// Prints the blocks of an export of two controllers with so many drives each.
#pragma once

void printExportedDrives(int count);
void printExportedLogDrvs(int count);
