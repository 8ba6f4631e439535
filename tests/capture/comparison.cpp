// Lists, exports and JSON of two sessions, for comparison.
#include "tests/capture/comparison.h"

#include <gtest/gtest.h>

#include <filesystem>

static const std::string programs = PROGRAMS;

static std::string text(std::size_t number) {
    return std::to_string(number);
}

// The lists of a controller, at the prompt. Events are fetched, not listed: that changes them.
static std::string listsOfController(std::size_t id) {
    std::string lines;
    for (const char* list : {"ctrl",
                             "ctrl -v",
                             "phydrv",
                             "phydrv -v",
                             "phydrv -c 32",
                             "phydrv -v -c 32",
                             "extent",
                             "extent -c 32",
                             "logdrv",
                             "logdrv -v",
                             "logdrv -c 128 -v",
                             "enclosure",
                             "buzz",
                             "bga",
                             "mp",
                             "init -a list",
                             "sync -a list",
                             "rc -a list",
                             "migrate -a list",
                             "rb -a list",
                             "bga -a list",
                             "ctrl -a list -v",
                             "battery"})
        lines += std::string(list) + " -i " + text(id) + "\n";
    return lines;
}

static std::string listsOfObjects(std::size_t id) {
    std::string lines;
    const std::string controller = " -i " + text(id) + "\n";
    for (std::size_t drive = 1; drive <= 16; ++drive)
        for (const char* list :
             {"phydrv -v -p ", "extent -v -p ", "extent -p ", "mp -p ", "phydrv -a list3G -p "})
            lines += list + text(drive) + controller;
    for (std::size_t logical = 0; logical < 9; ++logical)
        for (const char* list :
             {"logdrv -v -l ", "logdrv -l ", "init -a list -l ", "sync -a list -l ", "rc -a list -l ",
              "migrate -a list -l ", "rb -a list -l ", "bga -a list -l "})
            lines += list + text(logical) + controller;
    for (std::size_t enclosure = 0; enclosure < 16; ++enclosure)
        lines += "enclosure -e " + text(enclosure) + controller;
    return lines;
}

static std::string exportsOf(Session* session) {
    std::string all;
    for (const char* types : {"1 2 3", "0", "1", "2", "3"}) {
        const ProcessOutcome outcome = session->run({"export", "-t", types, "-f", session->path("exported")});
        all += outcome.out + text(static_cast<std::size_t>(outcome.status)) +
               readFile(session->path("exported"));
        std::filesystem::remove(session->path("exported"));
    }
    return all;
}

static std::string everyList() {
    std::string lines = "ctrl\nctrl -v\nctrl -c 16\nbattery\nbuzz\nbuzz -c 16\n";
    for (std::size_t id = 0; id < 2; ++id)
        lines += listsOfController(id) + listsOfObjects(id);
    return lines + "exit\n";
}

std::string everythingOf(Session* session) {
    std::string all = session->prompt(everyList()).out + exportsOf(session);
    const std::string program = session->program;
    session->program = programs + "/cli-status";
    all += session->run({"--json"}).out;
    session->program = program;
    for (std::size_t at; (at = all.find(session->directory)) != std::string::npos;)
        all.replace(at, session->directory.size(), "DIRECTORY");
    return all;
}

ProcessOutcome capture(Session* session, Session* copy) {
    const std::string program = session->program;
    session->program = programs + "/cli-capture";
    const ProcessOutcome outcome = session->run({"-o", copy->world()});
    session->program = program;
    copy->variables["Q5SIM_NOW"] = session->variables["Q5SIM_NOW"];
    return outcome;
}

void expectEqualCopy(Session* session) {
    Session copy;
    const std::string expected = everythingOf(session);
    const ProcessOutcome outcome = capture(session, &copy);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(everythingOf(&copy), expected);
}
