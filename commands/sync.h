// The sync and rc commands. Their functions take the word table and return a result code.
#pragma once

// sync [-a list]; sync -l id -i id starts one.
int ListLogDrvSyncStatus(int wordCount, char** words);
int StartLogDrvSync(int wordCount, char** words);

// rc [-a list] [-l id] [-i id]; rc -a start -l id -i id [-n]; rc -a stop|pause|resume -l id -i id
int ListLogDrvRCStatus(int wordCount, char** words);
int StartLogDrvRC(int wordCount, char** words);
int StopLogDrvRC(int wordCount, char** words);
int PauseLogDrvRC(int wordCount, char** words);
int ResumeLogDrvRC(int wordCount, char** words);
