// The event command. Takes the word table and returns a result code.
#pragma once

// event [-a list] [-i id] [-c count] [-v]: fetches events and shows the newest of the event buffer,
// which they leave.
int ListEventInfo(int wordCount, char** words);
