// Fuzzes cli-status: takes snapshots of an adapter whose replies and result codes are the input, and checks
// that every format is valid, that the JSON holds the whole state, and that every change is one line.
#include <cstdlib>

#include "snapshot/json.h"
#include "snapshot/read.h"
#include "snapshot/text.h"
#include "tests/fuzz/fuzzed_reply_stub.h"
#include "tests/status/metrics_text.h"
#include "tests/status/page_markup.h"
#include "tools/status/changes.h"
#include "tools/status/format.h"
#include "tools/status/page.h"
#include "tools/status/rules.h"

static void check(bool valid) {
    if (!valid)
        std::abort();
}

static void checkLine(const std::string& line) {
    check(isUtf8(line));
    for (const char each : line)
        check(static_cast<unsigned char>(each) >= 0x20);
}

static void checkFormats(const Report& report) {
    for (const std::string& text : {formatText(report, {true, false, false}), formatPlugin(report)})
        for (const char each : text)
            check(each == '\n' || static_cast<unsigned char>(each) >= 0x20);
    check(isUtf8(formatText(report, {})) && metricsProblem(formatMetrics(report)).empty());
    check(readMarkup(formatPage(report, {"storage1", 0})).problem.empty());
    const std::string plugin = formatPlugin(report);
    check(plugin.find('|') < plugin.find('\n') && plugin.find('|') == plugin.rfind('|'));
    Snapshot again;
    check(snapshotFromText(formatJson(report), &again).empty());
    check(snapshotToJson(again) == snapshotToJson(report.snapshot));
    check(changeLines(&again, report.snapshot, report.limits).empty());
}

// earlier is the baseline as well.
static void checkChanges(const Snapshot& earlier, const Snapshot& now) {
    const Limits limits;
    for (const Line& line : changeLines(&earlier, now, limits, &earlier))
        checkLine(line.text);
    for (const Line& line : changeLines(nullptr, now, limits, &earlier))
        checkLine(line.text);
    checkFormats({now, evaluate(now, limits, &earlier), limits});
}

static void readSnapshot(Snapshot* snapshot) {
    if (openAdapters(snapshot) == OpenResult::opened) {
        readControllers(snapshot);
        closeAdapters();
    }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    fuzzedReplies = {bytes, size};
    Snapshot snapshot, later;
    readSnapshot(&snapshot);
    readSnapshot(&later);
    const Limits limits;
    checkFormats({snapshot, evaluate(snapshot, limits, nullptr), limits});
    checkChanges(snapshot, later);
    checkChanges(later, snapshot);
    return 0;
}
