// The standard streams of a program.
#pragma once

// Opens each one that is closed, so that no other file gets its number: what is printed would be written to
// that file. Writing to such a stream fails.
void openStandardStreams();
