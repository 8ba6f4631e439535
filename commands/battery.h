// The battery command. Takes the word table and returns a result code.
#pragma once

// battery: the state of controller 0's battery.
int ListBatteryInfo(int wordCount, char** words);
