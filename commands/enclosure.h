// The enclosure command. Both functions take the word table and return a result code.
#pragma once

// enclosure [-a list] [-e id] [-i id]: the sensors of an enclosure.
int ListEnclosureInfo(int wordCount, char** words);

// enclosure -a locate [-e id] [-i id] [-s seconds]: blinks the drives of an enclosure, or stops
// blinking them.
int LocateEnclosure(int wordCount, char** words);
