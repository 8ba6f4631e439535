// Runs the programs that derive the expected text and page.
#include "tests/status/expected_report.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>

static const std::string kSources = STATUS_SOURCES;

static std::string derived(const Session& session, const std::string& program, const std::string& document,
                           const std::string& arguments) {
    const std::string input = session.path("document"), output = session.path("derived");
    writeFile(input, document);
    const std::string command =
        "/usr/bin/python3 " + kSources + "/" + program + " " + input + arguments + " >" + output;
    const int status = std::system(command.c_str());
    EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, 0) << program;
    return readFile(output);
}

std::string expectedVerbose(const Session& session, const std::string& document) {
    return derived(session, "derive_verbose", document, "");
}

static std::string hostName() {
    char name[256] = {};
    EXPECT_EQ(gethostname(name, sizeof name - 1), 0);
    return name;
}

static std::string timeOn(const std::string& page) {
    static const std::string start = "<time datetime=\"";
    const std::size_t at = page.find(start);
    return at == std::string::npos ? "" : page.substr(at + start.size(), 20);
}

// The time, from earliest to latest, that the page shows; 0: none of these.
static std::time_t writtenAt(const std::string& page, std::time_t earliest, std::time_t latest) {
    const std::string named = timeOn(page);
    for (std::time_t second = earliest; second <= latest; ++second) {
        char text[32];
        std::tm parts = {};
        gmtime_r(&second, &parts);
        std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
        if (named == text)
            return second;
    }
    return 0;
}

void expectPage(Session* session, int status, const std::string& document) {
    const std::string file = session->path("page.html");
    const std::time_t start = std::time(nullptr);
    EXPECT_EQ(session->run({"--page=" + file}), (ProcessOutcome{status, "", ""}));
    const std::string page = readFile(file);
    const std::time_t written = writtenAt(page, start, std::time(nullptr));
    EXPECT_NE(written, 0) << "not the time of the run: " << timeOn(page);
    const std::string style = kSources + "/../../tools/status/page_style.cpp";
    EXPECT_EQ(page, derived(*session, "derive_page", document,
                            " " + style + " '" + hostName() + "' " + std::to_string(written)));
}
