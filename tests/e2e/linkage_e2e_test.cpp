// Run-time dependencies of the programs, read from their dynamic sections. Not built with sanitizers, which
// add libraries.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "tests/e2e/harness.h"

#ifndef E2E_SANITIZED

static std::string dynamicSection(const std::string& file) {
    Launch launch;
    launch.words = {E2E_READELF, "-d", "-W", file};
    launch.variables = {"LC_ALL=C"};
    Session s;
    launch.directory = s.directory;
    const ProcessOutcome outcome = runProgram(launch, "");
    EXPECT_EQ(outcome.status, 0) << outcome;
    return outcome.out;
}

// The bracketed values of all rows with this tag, in order.
static std::vector<std::string> values(const std::string& section, const std::string& tag) {
    std::vector<std::string> found;
    std::istringstream lines(section);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t start = line.find('['), end = line.rfind(']');
        if (line.find("(" + tag + ")") != std::string::npos && start < end && end != std::string::npos)
            found.push_back(line.substr(start + 1, end - start - 1));
    }
    return found;
}

struct Linkage : testing::TestWithParam<const char*> {
    std::string section = dynamicSection(GetParam());
};

TEST_P(Linkage, NeedsClosedLibrariesAndCLibraryOnly) {
    std::vector<std::string> needed = values(section, "NEEDED");
    std::sort(needed.begin(), needed.end());
    ASSERT_EQ(needed.size(), 3u) << section;
    EXPECT_EQ(needed[0].substr(0, 8), "libc.so.");
    EXPECT_EQ(needed[1], "libzverrlog.so");
    EXPECT_EQ(needed[2], "libzvq5plugin.so");
}

TEST_P(Linkage, SearchesBuildTreeAfterUserDirectories) {
    EXPECT_EQ(values(section, "RUNPATH"), std::vector<std::string>{E2E_ADAPTERS}) << section;
    EXPECT_EQ(section.find("(RPATH)"), std::string::npos);
}

// A library that lacks an operation no command calls must load.
TEST_P(Linkage, BindsLazily) {
    EXPECT_EQ(section.find("BIND_NOW"), std::string::npos);
    EXPECT_EQ(section.find(" NOW"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Programs, Linkage, testing::Values(E2E_PRODUCT, E2E_REHEARSAL),
                         [](const auto& program) { return program.index == 0 ? "Product" : "Rehearsal"; });

#endif
