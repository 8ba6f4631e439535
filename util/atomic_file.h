// Atomic replacement of a file: whoever opens it finds the complete old or the complete new
// content, even if the program or the machine stops in between.
#pragma once

#include <cstdio>
#include <sys/types.h>

#include "util/path.h"

// A file being replaced. One at a time: a signal that ends the program removes its temporary file.
struct FileReplacement {
    std::FILE* stream;         // takes the new content
    int target;                // an existing regular file, open for writing; else -1
    char path[kPathSize];      // where the new content goes
    char temporary[kPathSize]; // the file beside it that becomes it; empty when written in place
};

// What to do with a link in the file's place: replace the file it leads to, or the link itself. In the
// second case anything but a regular file is replaced without being opened.
enum class LinkPolicy { follow, replace };

// Opens the replacement. An existing file keeps its owner and its permissions as far as the system allows,
// but no more than mostMode. The content is written in place only when name is no regular file or its
// directory cannot be written. False when the file cannot be opened for writing or created; an existing
// one is unchanged then.
bool openReplacement(FileReplacement* replacement, const char* name, LinkPolicy links = LinkPolicy::follow,
                     ::mode_t mostMode = 0777);

// Puts what was written to the stream in the file's place and closes the stream. False when that failed;
// the old file is then unchanged, unless it was to be written in place.
bool commitReplacement(FileReplacement* replacement);
