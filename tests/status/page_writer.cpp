// Writes the page of each sample to a directory: page_writer DIRECTORY. For checks by other programs.
#include <cstdio>

#include "snapshot/files.h"
#include "tests/status/page_samples.h"
#include "tools/status/page.h"
#include "tools/status/rules.h"

int main(int argc, char** argv) {
    if (argc != 2)
        return 2;
    for (const PageSample& sample : pageSamples()) {
        const Snapshot snapshot = sample.make();
        const Limits limits;
        const Findings findings = evaluate(snapshot, limits, nullptr);
        const std::string page = formatPage({snapshot, findings, limits}, {"storage1", 1700000000});
        if (const std::string problem = replaceFile(std::string(argv[1]) + "/" + sample.name + ".html", page);
            !problem.empty())
            return std::fprintf(stderr, "%s\n", problem.c_str()), 1;
    }
    return 0;
}
