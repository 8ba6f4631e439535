// cli-status over simulated worlds: the complete output of every case in every format. A case in cases/
// lists how its world differs from healthy.world.json, the expected output of each format, and the changes
// since the healthy world. JSON and metrics are listed as differences from those of the healthy world, which
// are in healthy.expected.*; the detailed text and the page are derived from the expected JSON.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/status/expected_report.h"

using Json = nlohmann::ordered_json;

static std::string source(const std::string& name) {
    return readFile(std::string(STATUS_SOURCES) + "/" + name);
}

static std::string joinedLines(const Json& lines) {
    std::string text;
    for (const Json& line : lines)
        text += line.get<std::string>() + "\n";
    return text;
}

// A session of cli-status over the world of a case. The clock is at 0 to make the simulated sensor readings
// predictable.
struct StatusSession : Session {
    explicit StatusSession(const Json& world) {
        program = CLI_STATUS;
        useWorld(world.dump());
        setClock(0);
    }
};

using Lines = std::vector<std::string>;

static Lines linesOf(const std::string& text) {
    std::istringstream stream(text);
    Lines lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

// The series or the comment that a line of metrics is, without its value.
static std::string seriesOf(const std::string& line) {
    return line.starts_with("#") ? line : line.substr(0, line.rfind(' '));
}

static std::string familyOf(const std::string& line) {
    const std::string name = line.starts_with("#") ? line.substr(std::string("# HELP ").size()) : line;
    return name.substr(0, name.find_first_of(" {"));
}

// The families, in the order of the manual.
static Lines families() {
    Lines names;
    for (const std::string& line : linesOf(readFile(std::string(STATUS_ROOT) + "/../docs/man/cli-status.8")))
        if (line.starts_with(".It Va sataraid_"))
            names.push_back(line.substr(std::string(".It Va ").size()));
    return names;
}

static std::size_t rankOf(const std::string& line) {
    static const Lines names = families();
    const auto found = std::find(names.begin(), names.end(), familyOf(line));
    EXPECT_NE(found, names.end()) << line;
    return static_cast<std::size_t>(found - names.begin());
}

// Removes a line and, if its series has a new value, inserts that in its place.
static void replaceLine(Lines* lines, const std::string& old, Lines* added) {
    const auto at = std::find(lines->begin(), lines->end(), old);
    ASSERT_NE(at, lines->end()) << old;
    const auto value = std::find_if(added->begin(), added->end(),
                                    [&](const std::string& each) { return seriesOf(each) == seriesOf(old); });
    if (value == added->end()) {
        lines->erase(at);
        return;
    }
    *at = *value;
    added->erase(value);
}

// The healthy metrics with the differences of a case. New series come after those of their family.
static std::string metricsWith(const Json& differences) {
    Lines lines = linesOf(source("healthy.expected.prom"));
    Lines added = differences["with"].get<Lines>();
    for (const Json& old : differences["without"])
        replaceLine(&lines, old, &added);
    for (const std::string& line : added)
        lines.insert(std::find_if(lines.begin(), lines.end(),
                                  [&](const std::string& each) { return rankOf(each) > rankOf(line); }),
                     line);
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    return text;
}

class StatusCase : public testing::TestWithParam<std::string> {
protected:
    Json expected = Json::parse(source("cases/" + GetParam() + ".json"));
    Json world = Json::parse(source("healthy.world.json")).patch(expected["world"]);
    int status = expected["status"];

    std::string document() const {
        return Json::parse(source("healthy.expected.json")).patch(expected["json"]).dump(2) + "\n";
    }

    void expectRun(const std::vector<std::string>& words, const std::string& output) const {
        StatusSession session(world);
        const ProcessOutcome outcome = session.run(words);
        EXPECT_EQ(outcome.out, output);
        EXPECT_EQ(outcome.status, status);
        EXPECT_EQ(outcome.err, "");
    }
};

TEST_P(StatusCase, Text) {
    expectRun({}, joinedLines(expected["text"]));
}

TEST_P(StatusCase, QuietTextHasOnlyProblems) {
    std::string problems;
    for (const Json& line : expected["text"]) {
        const std::string text = line;
        for (const char* severity : {"critical: ", "unknown: ", "warning: "})
            if (text.starts_with(severity))
                problems += text + "\n";
    }
    expectRun({"-q"}, problems);
}

// The findings come after the line with the performance data, without bars.
TEST_P(StatusCase, Plugin) {
    std::string output = expected["plugin"].get<std::string>() + "\n";
    for (const Json& line : expected["text"]) {
        const std::string text = line;
        for (const char* severity : {"critical: ", "unknown: ", "warning: ", "info: "})
            if (text.starts_with(severity))
                for (const char character : text + "\n")
                    output += character == '|' ? "\\x7c" : std::string(1, character);
    }
    expectRun({"--plugin"}, output);
}

TEST_P(StatusCase, Metrics) {
    expectRun({"--metrics"}, metricsWith(expected["metrics"]));
}

TEST_P(StatusCase, Json) {
    expectRun({"--json"}, document());
}

// Since the healthy world. What disappeared counts in the exit status.
// The file says which sensors or operations a finding with readings is about.
static std::string withoutParts(const std::string& text) {
    Json state = Json::parse(text);
    for (Json& finding : state["findings"])
        finding.erase("parts");
    return state.dump(2) + "\n";
}

TEST_P(StatusCase, Changes) {
    StatusSession session(world);
    const std::string kept = session.path("kept");
    writeFile(kept, source("healthy.expected.json"));
    EXPECT_EQ(session.run({"--changes", kept}), (ProcessOutcome{expected.value("changesStatus", status),
                                                                joinedLines(expected["changes"]), ""}));
    // What could not be read stays as it was.
    const Json healthy = Json::parse(source("healthy.expected.json"));
    Json saved = Json::parse(document());
    for (const char* key : {"place", "battery"})
        if (saved["controllers"][0][key].is_null())
            saved["controllers"][0][key] = healthy["controllers"][0][key];
    EXPECT_EQ(withoutParts(readFile(kept)), saved.dump(2) + "\n");
}

TEST_P(StatusCase, VerboseTextIsThatDerivedFromTheJson) {
    StatusSession session(world);
    EXPECT_EQ(session.run({"-v"}), (ProcessOutcome{status, expectedVerbose(session, document()), ""}));
}

TEST_P(StatusCase, PageIsThatDerivedFromTheJson) {
    StatusSession session(world);
    expectPage(&session, status, document());
}

static std::vector<std::string> caseNames() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(std::string(STATUS_SOURCES) + "/cases"))
        names.push_back(entry.path().stem());
    std::sort(names.begin(), names.end());
    return names;
}

INSTANTIATE_TEST_SUITE_P(Worlds, StatusCase, testing::ValuesIn(caseNames()), [](const auto& each) {
    std::string name = each.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

TEST(StatusHealthy, MetricsMatchTheExpectedFileInOrder) {
    StatusSession session(Json::parse(source("healthy.world.json")));
    EXPECT_EQ(session.run({"--metrics"}), (ProcessOutcome{0, source("healthy.expected.prom"), ""}));
}

TEST(StatusHealthy, VerboseTextListsEveryObject) {
    StatusSession session(Json::parse(source("healthy.world.json")));
    EXPECT_EQ(session.run({"-v"}), (ProcessOutcome{0, source("healthy.expected.verbose"), ""}));
}
