// Reads and appends to logs. A line is "TIME WORD REST".
#include "tools/restore/log.h"

#include <fcntl.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <sstream>
#include <string_view>

#include "tools/common/regular_file.h"

static std::string timeText() {
    const std::time_t now = std::time(nullptr);
    std::tm parts = {};
    gmtime_r(&now, &parts);
    char text[64];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
    return text;
}

std::string beginLine(const LogHeader& header) {
    return "begin backup=" + header.identity + " controller=" + header.controller +
           " drives=" + header.drives;
}

// The value of "key=" in a line of words.
static std::string valueOf(const std::string& line, const std::string& key) {
    const std::size_t start = line.find(" " + key + "=");
    if (start == std::string::npos)
        return "";
    const std::size_t value = start + key.size() + 2;
    return line.substr(value, line.find(' ', value) - value);
}

// An unfinished restore with the same header is continued.
static void beginRestore(const LogHeader& header, RestoreState* state) {
    const bool continued = state->begun && !state->finished && state->header == header;
    if (!continued)
        *state = {true, false, header, 0, false};
}

static void readLine(const std::string& line, RestoreState* state) {
    std::istringstream words(line);
    std::string time, word;
    words >> time >> word;
    if (word == "begin")
        beginRestore({valueOf(line, "backup"), valueOf(line, "controller"), valueOf(line, "drives")}, state);
    else if (word == kStepDone)
        ++state->steps;
    else if (word == kFinished)
        state->finished = true;
    if (word == kStep || word == kStepDone)
        state->isInStep = word == kStep;
}

// Whether the text begins like the first line of a log. A power failure may have cut that line after its
// time.
static bool beginsLikeLog(const std::string& text) {
    static constexpr std::string_view kTime = "0000-00-00T00:00:00Z ";
    static constexpr std::string_view kBegin = "begin backup=";
    if (text.size() < kTime.size())
        return false;
    for (std::size_t i = 0; i < kTime.size(); ++i)
        if (kTime[i] == '0' ? std::isdigit(static_cast<unsigned char>(text[i])) == 0 : text[i] != kTime[i])
            return false;
    const std::string line = text.substr(0, text.find('\n'));
    return line.compare(kTime.size(), kBegin.size(), kBegin.substr(0, line.size() - kTime.size())) == 0;
}

static std::string readLogText(const std::string& path, std::string* text) {
    std::string problem;
    const RegularFile result = readRegularFile(path, text, &problem);
    if (result == RegularFile::failed)
        return problem;
    if (result == RegularFile::notRegular || (!text->empty() && !beginsLikeLog(*text)))
        return path + " is not a log of cli-restore";
    return "";
}

std::string readLog(const std::string& path, RestoreState* state) {
    *state = {};
    std::string text;
    std::string problem = readLogText(path, &text);
    if (!problem.empty())
        return problem;
    for (std::size_t start = 0, end; (end = text.find('\n', start)) != std::string::npos; start = end + 1)
        readLine(text.substr(start, end - start), state);
    return "";
}

static std::string failure(const std::string& what) {
    return "cannot write the log" + what + ": " + std::strerror(errno);
}

static std::string directoryOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

// Completes an incomplete last line, so that the next one starts a new line.
static bool endLastLine(int file) {
    char last = '\n';
    const off_t size = lseek(file, 0, SEEK_END);
    if (size < 0 || (size > 0 && pread(file, &last, 1, size - 1) != 1))
        return false;
    return last == '\n' || write(file, "\n", 1) == 1;
}

std::string openLog(const std::string& path, Log* log) {
    log->file = open(path.c_str(), O_RDWR | O_APPEND | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0666);
    if (log->file < 0 || !endLastLine(log->file))
        return failure(" " + path);
    const int directory = open(directoryOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory >= 0) {
        fsync(directory);
        close(directory);
    }
    return "";
}

std::string addToLog(const Log& log, const std::string& line) {
    const std::string text = timeText() + " " + line + "\n";
    const ssize_t written = write(log.file, text.data(), text.size());
    if (written == static_cast<ssize_t>(text.size()) && (fsync(log.file) == 0 || errno == EINVAL))
        return "";
    return failure("");
}

void closeLog(Log* log) {
    if (log->file >= 0)
        close(log->file);
    log->file = -1;
}
