// Standard output: plain lines, or on a terminal a display that is redrawn in place below them.
#include "tools/wait/screen.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include "tools/wait/bars.h"

static constexpr char kHideCursor[] = "\x1b[?25l";
static constexpr char kShowCursor[] = "\x1b[?25h";

// The state of the terminal, shared with the signal handlers.
static volatile std::sig_atomic_t cursorHidden = 0;
static volatile std::sig_atomic_t wasStopped = 0; // other programs may have printed since

static bool writeAll(const char* text, std::size_t size) {
    while (size > 0) {
        const ssize_t written = write(STDOUT_FILENO, text, size);
        if (written < 0 && errno != EINTR)
            return false;
        if (written > 0) {
            text += written;
            size -= static_cast<std::size_t>(written);
        }
    }
    return true;
}

static void showCursor() {
    if (cursorHidden != 0)
        writeAll(kShowCursor, sizeof kShowCursor - 1);
    cursorHidden = 0;
}

// The next output begins on a new line, also after an echoed "^C".
void leaveDisplay() {
    if (cursorHidden == 0)
        return;
    showCursor();
    writeAll("\n", 1);
}

extern "C" {
// The default action of the signal follows when it is unblocked, as the handler returns.
static void endOnSignal(int signal) {
    leaveDisplay();
    struct sigaction action = {};
    action.sa_handler = SIG_DFL;
    sigaction(signal, &action, nullptr);
    raise(signal);
}

static void stopOnSignal(int) {
    const int error = errno;
    leaveDisplay();
    wasStopped = 1;
    raise(SIGSTOP);
    errno = error;
}

// Does nothing: the signal interrupts the pause.
static void onResize(int) {}
}

// A signal that is ignored stays ignored.
static void handle(int signal, void (*handler)(int)) {
    struct sigaction action = {}, former = {};
    action.sa_handler = handler;
    sigfillset(&action.sa_mask);
    if (sigaction(signal, nullptr, &former) == 0 && former.sa_handler != SIG_IGN)
        sigaction(signal, &action, nullptr);
}

// Whether standard output is a terminal that can move its cursor.
static bool isCapable() {
    const char* type = std::getenv("TERM");
    return isatty(STDOUT_FILENO) != 0 && type != nullptr && *type != '\0' && std::strcmp(type, "dumb") != 0;
}

void openScreen(Screen* screen) {
    screen->isTerminal = isCapable();
    if (!screen->isTerminal)
        return;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT})
        handle(signal, endOnSignal);
    handle(SIGTSTP, stopOnSignal);
    handle(SIGWINCH, onResize);
}

void closeScreen(Screen* screen) {
    showCursor();
    screen->isTerminal = false;
}

ScreenSize screenSize() {
    winsize size = {};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0)
        return {80, 24};
    return {size.ws_col, size.ws_row};
}

// The rows that the display occupies: a terminal that became narrower has wrapped its lines.
static std::size_t rowsOf(const std::vector<std::size_t>& drawn, std::size_t columns) {
    std::size_t rows = 0;
    for (const std::size_t own : drawn)
        rows += std::max<std::size_t>(1, (own + columns - 1) / columns);
    return rows;
}

// A job in the background must not disturb the line being typed.
static bool isInBackground() {
    const pid_t foreground = tcgetpgrp(STDOUT_FILENO);
    return foreground > 0 && foreground != getpgrp();
}

static std::string eraseDisplay(Screen* screen) {
    if (wasStopped != 0)
        screen->drawn.clear();
    wasStopped = 0;
    const std::size_t rows = rowsOf(screen->drawn, screenSize().columns);
    screen->drawn.clear();
    return rows == 0 ? "" : "\x1b[" + std::to_string(rows) + "A\r\x1b[J";
}

static std::string drawDisplay(Screen* screen, const std::vector<std::string>& display) {
    std::string text;
    for (const std::string& line : display) {
        text += line + "\n";
        screen->drawn.push_back(columnsOf(line));
    }
    if (!display.empty() && cursorHidden == 0) {
        cursorHidden = 1;
        text = kHideCursor + text;
    }
    return text;
}

bool updateScreen(Screen* screen, const std::vector<std::string>& lines,
                  const std::vector<std::string>& display) {
    std::string text = eraseDisplay(screen);
    for (const std::string& line : lines)
        text += line + "\n";
    if (screen->isTerminal && !isInBackground())
        text += drawDisplay(screen, display);
    return writeAll(text.data(), text.size());
}

void pauseFor(std::int64_t milliseconds) {
    poll(nullptr, 0, static_cast<int>(std::min<std::int64_t>(milliseconds, INT_MAX)));
}
