// Stores g_EventBuffer in the event file between sessions. Sessions may run at the same time: none loses an
// event that another one stored, or restores one that another one displayed.
#pragma once

// Loads the file at startup. Anything but a regular file is treated as missing; the buffer is then empty.
void loadEventBuffer(const char* path);

// Saves the buffer at exit. The file is replaced atomically. It is not written if it already equals the
// buffer or could not be read. Failures are not reported.
void saveEventBuffer(const char* path);
