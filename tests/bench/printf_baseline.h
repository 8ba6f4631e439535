// Prints the blocks of an export of two controllers with this number of drives each.
#pragma once

void printExportedDrives(int count);
void printExportedLogDrvs(int count);
