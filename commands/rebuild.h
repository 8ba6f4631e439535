// The rb command. Its functions take the word table and return a result code.
#pragma once

// rb [-a list] [-l id] [-i id]; rb -a start -l id -i id -p drives -e extents;
// rb -a pause|resume|restart|abort -l id -i id
int ListLogDrvRebuildStatus(int wordCount, char** words);
int StartLogDrvRebuild(int wordCount, char** words);
int PauseLogDrvRebuild(int wordCount, char** words);
int ResumeLogDrvRebuild(int wordCount, char** words);
int RestartLogDrvRebuild(int wordCount, char** words);
int StopLogDrvRebuild(int wordCount, char** words);
