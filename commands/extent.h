// The extent command. Its functions take the word table and return a result code. Users type drive
// IDs from 1; the adapter, and the messages, count from 0.
#pragma once

// extent [-a list] [-p id] [-i id] [-c count] [-v]: the extents of the drives.
int ListExtentInfo(int wordCount, char** words);

// extent -a spare -p id -e id -i id [-l id]: a spare for one logical drive, or for any.
int SpareExtent(int wordCount, char** words);

// extent -a free|delete -p id -e id -i id
int FreeExtent(int wordCount, char** words);
int DeleteExtent(int wordCount, char** words);

// extent -a add -p id -e id -i id -l id: adds the extent to a logical drive.
int AddExtent(int wordCount, char** words);

// extent -a split -p id -e id -i id -o offset
int SplitExtent(int wordCount, char** words);
