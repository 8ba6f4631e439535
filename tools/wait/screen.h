// Standard output: plain lines, or on a terminal a display that is redrawn in place below them.
#pragma once

#include <string>
#include <vector>

struct ScreenSize {
    unsigned columns, rows;
};

struct Screen {
    bool isTerminal = false;
    std::vector<std::size_t> drawn; // the columns of each line of the current display
};

// Until closeScreen(), the cursor of a terminal is hidden while there is a display. It is shown
// again when a signal ends or stops the program.
void openScreen(Screen* screen);
void closeScreen(Screen* screen);

// For handlers of signals that end the program: shows the cursor below the display. Async-signal-safe.
void leaveDisplay();

// 80 columns and 24 rows if the terminal does not report its size.
ScreenSize screenSize();

// Replaces the display with these lines, which stay, and a new display below them. Returns whether it could
// be written.
bool updateScreen(Screen* screen, const std::vector<std::string>& lines,
                  const std::vector<std::string>& display);

// Waits; a signal or a new size of the terminal may end it early.
void pauseFor(std::int64_t milliseconds);
