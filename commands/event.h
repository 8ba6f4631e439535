// The event command. Takes the word table and returns a result code.
#pragma once

// event [-a list] [-i id] [-c count] [-v]: fetches events into the event buffer, then shows the newest
// events and removes them from it.
int ListEventInfo(int wordCount, char** words);
