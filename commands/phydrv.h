// The phydrv command. Its functions take the word table and return a result code. Users type drive
// IDs from 1; the adapter, and some of the messages, count from 0.
#pragma once

// phydrv [-a list] [-p id] [-i id] [-c count] [-v]: a table of the drives, or a block for each.
int ListPhyDrvInfo(int wordCount, char** words);

// phydrv -a mod -p id -i id -s settings: changes a drive's settings, all items or none.
int SetPhyDrvSettings(int wordCount, char** words);

// phydrv -a locate -p id -i id -d seconds: blinks a drive's light; 0 seconds stops it.
int LocatePhyDrv(int wordCount, char** words);

// phydrv -a wipe -p id -i id: clears a drive's reserved configuration sectors.
int WipePhyDrvMDD(int wordCount, char** words);

// phydrv -a set3G -p id -i id -e setting; phydrv -a list3G -p id -i id: the 3 Gb/s option.
int Set3GSpeed(int wordCount, char** words);
int List3GSpeed(int wordCount, char** words);
