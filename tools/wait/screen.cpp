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
static constexpr char kShowCursor[] = "\x1b[?25h\n"; // the cursor is below the display

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

extern "C" {
// The default action of the signal follows when it is unblocked, as the handler returns.
static void leaveTerminal(int signal) {
    const int error = errno;
    writeAll(kShowCursor, sizeof kShowCursor - 1);
    struct sigaction action = {};
    action.sa_handler = SIG_DFL;
    sigaction(signal, &action, nullptr);
    raise(signal);
    errno = error;
}

// Nothing to do: it interrupts the pause.
static void noticeSignal(int) {}

static void stopInTerminal(int) {
    const int error = errno;
    writeAll(kShowCursor, sizeof kShowCursor - 1);
    raise(SIGSTOP);
    writeAll(kHideCursor, sizeof kHideCursor - 1);
    errno = error;
}
}

// A signal that is ignored stays ignored.
static void handle(int signal, void (*handler)(int)) {
    struct sigaction action = {}, former = {};
    action.sa_handler = handler;
    sigfillset(&action.sa_mask);
    if (sigaction(signal, nullptr, &former) == 0 && former.sa_handler != SIG_IGN)
        sigaction(signal, &action, nullptr);
}

// What the terminal is called decides too: a dumb one cannot move its cursor.
static bool isCapable() {
    const char* type = std::getenv("TERM");
    return isatty(STDOUT_FILENO) != 0 && type != nullptr && *type != '\0' && std::strcmp(type, "dumb") != 0;
}

void openScreen(Screen* screen) {
    screen->isTerminal = isCapable();
    if (!screen->isTerminal)
        return;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT})
        handle(signal, leaveTerminal);
    handle(SIGTSTP, stopInTerminal);
    struct sigaction action = {};
    action.sa_handler = noticeSignal;
    sigaction(SIGWINCH, &action, nullptr);
    writeAll(kHideCursor, sizeof kHideCursor - 1);
}

void closeScreen(Screen* screen) {
    if (screen->isTerminal)
        writeAll(kShowCursor, sizeof kShowCursor - 2); // without the line end
    screen->isTerminal = false;
}

ScreenSize screenSize() {
    winsize size = {};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0)
        return {80, 24};
    return {size.ws_col, size.ws_row};
}

// The rows that the display occupies. A terminal that has become narrower has wrapped its lines.
static std::size_t rowsOf(const std::vector<std::size_t>& drawn, std::size_t columns) {
    std::size_t rows = 0;
    for (const std::size_t own : drawn)
        rows += std::max<std::size_t>(1, (own + columns - 1) / columns);
    return rows;
}

// Output that carries no display is a copy of the lines.
bool updateScreen(Screen* screen, const std::vector<std::string>& lines,
                  const std::vector<std::string>& display) {
    std::string text;
    const std::size_t rows = rowsOf(screen->drawn, screenSize().columns);
    if (rows > 0)
        text += "\x1b[" + std::to_string(rows) + "A";
    if (screen->isTerminal)
        text += "\r\x1b[J";
    screen->drawn.clear();
    for (const std::string& line : lines)
        text += line + "\n";
    for (const std::string& line : display) {
        text += line + "\n";
        screen->drawn.push_back(columnsOf(line));
    }
    return writeAll(text.data(), text.size());
}

void pauseFor(std::int64_t milliseconds) {
    poll(nullptr, 0, static_cast<int>(std::min<std::int64_t>(milliseconds, INT_MAX)));
}
