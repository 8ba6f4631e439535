// The init command. Its functions take the word table and return a result code.
#pragma once

// init [-a list] [-l id] [-i id]; init -a start|pause|resume|stop -l id -i id
int ListLogDrvInitStatus(int wordCount, char** words);
int StartLogDrvInit(int wordCount, char** words);
int PauseLogDrvInit(int wordCount, char** words);
int ResumeLogDrvInit(int wordCount, char** words);
int StopLogDrvInit(int wordCount, char** words);
