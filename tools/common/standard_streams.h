// The standard streams of a program.
#pragma once

// Opens each stream that is closed, so that no file opened later gets its descriptor and receives what is
// printed. Reading from such a stream, or writing to it, fails.
void openStandardStreams();
