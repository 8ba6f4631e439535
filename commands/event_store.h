// g_EventBuffer in the event file, from one session to the next. Sessions may run at the same time: none
// loses an event that another one stored, nor brings back one that another one displayed.
#pragma once

// Loads the file at start-up. Without one the buffer is empty. What is no regular file counts as none.
void loadEventBuffer(const char* path);

// Saves the buffer at the end. The file is replaced as a whole, or left alone when it already holds the
// buffer, and when it could not be read. Failures are not reported.
void saveEventBuffer(const char* path);
