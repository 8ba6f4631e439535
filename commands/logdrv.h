// The logdrv command, except for creation (see creation.h). Its functions take the word table and
// return a result code.
#pragma once

// logdrv [-a list] [-l id] [-i id] [-c count] [-v]: a table of the logical drives, or a block for each.
int ListLogDrvInfo(int wordCount, char** words);

// logdrv -a mod -l id [-i id] -s settings: changes a drive's settings, all items or none.
int SetLogDrvSettings(int wordCount, char** words);

// logdrv -a locate -l id [-i id] -d seconds: blinks a drive's members; 0 seconds stops it.
int LocateLogDrv(int wordCount, char** words);

// logdrv -a del -l id [-i id]
int DeleteLogDrv(int wordCount, char** words);
