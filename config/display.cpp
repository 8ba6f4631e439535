// Prints the frame and the lines of displayed records.
#include "config/display.h"

#include <cstdio>

static void printFrame() {
    std::puts("-----------------------------------------------------------");
}

void openDisplay(const char* kind, int setIndex) {
    printFrame();
    std::printf("<<%s #%d>>\n", kind, setIndex);
}

void closeDisplay() {
    printFrame();
}

void showWord(const char* label, const char* value) {
    std::printf("%s : %s\n", label, value);
}

void showNumber(const char* label, int value) {
    std::printf("%s : %d\n", label, value);
}

const char* onOffText(int flag) {
    return flag != 0 ? "On" : "Off";
}
