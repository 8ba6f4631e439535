// Reports the failure of a command.
#include "util/result.h"

#include <cstdio>

int fail(Result::Code code, const char* message) {
    std::puts(message);
    return code;
}
