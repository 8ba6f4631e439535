// Atomic replacement of a file: a reader finds the complete old or the complete new content, even if the
// program or the machine stops in between.
#pragma once

#include <cstdio>
#include <sys/types.h>

#include "util/path.h"

// A file being replaced. One at a time: a signal that ends the program removes its temporary file.
struct FileReplacement {
    std::FILE* stream;         // for the new content
    int target;                // an existing regular file, open for writing; else -1
    char path[kPathSize];      // the file to replace
    char temporary[kPathSize]; // to be renamed to path; empty when written in place
    bool locked;               // no other process replaces a file in this directory
};

// What to do if the path is a symbolic link: replace the file it points to, or the link itself. In the
// second case, anything but a regular file is replaced without being opened.
enum class LinkPolicy { follow, replace };

// Opens the replacement. The new file gets the owner of an existing one, if the system allows it, and those
// of its permissions that are in maxMode. The content is written in place only if name is not a regular file
// or its directory is not writable. False, with errno set, if the file cannot be opened for writing or
// created; an existing file is then unchanged. With locked, the caller holds a lock on the directory: the
// name of the temporary file is always the same, and one that a killed process has left is removed.
bool openReplacement(FileReplacement* replacement, const char* name, LinkPolicy links = LinkPolicy::follow,
                     ::mode_t maxMode = 0777, bool locked = false);

// Replaces the file with the content of the stream and closes the stream. False, with errno set, if that
// failed; the old file is then unchanged, unless it was written in place.
bool commitReplacement(FileReplacement* replacement);
