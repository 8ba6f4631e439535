// The migrate command. The command functions take the word table and return a result code.
#pragma once

// migrate [-a list] [-l id] [-i id]; migrate -a start -l id -i id [-p drives -e extents] -s settings;
// migrate -a pause|resume -l id -i id
int ListLogDrvMigrateStatus(int wordCount, char** words);
int StartLogDrvMigrate(int wordCount, char** words);
int PauseLogDrvMigrate(int wordCount, char** words);
int ResumeLogDrvMigrate(int wordCount, char** words);

// The rank of a RAID level code, 10 for the lowest to 100; 0 for JBOD and unknown codes.
int GetRaidLevelValue(int code);

// Whether a drive can be migrated from one level to the other: never to one of a lower rank.
bool IsAllowDoMigrate(int current, int target);
