// The standard streams of a program.
#include "tools/common/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

void openStandardStreams() {
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream)
        if (fcntl(stream, F_GETFD) < 0 && open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY) < 0)
            return;
}
