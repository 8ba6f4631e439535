// Fuzzes cli-status: takes a snapshot of an adapter whose replies and result codes are the input, and checks
// that every format is valid and that the JSON holds the whole state.
#include <cstdlib>

#include "snapshot/json.h"
#include "snapshot/read.h"
#include "snapshot/text.h"
#include "tests/fuzz/fuzzed_reply_stub.h"
#include "tools/status/changes.h"
#include "tools/status/format.h"
#include "tools/status/rules.h"

static void check(bool valid) {
    if (!valid)
        std::abort();
}

static void checkFormats(const Report& report) {
    for (const std::string& text : {formatText(report, {true, false, false}), formatPlugin(report)})
        for (const char each : text)
            check(each == '\n' || static_cast<unsigned char>(each) >= 0x20);
    check(isUtf8(formatText(report, {})) && isUtf8(formatMetrics(report)));
    const std::string plugin = formatPlugin(report);
    check(plugin.find('|') < plugin.find('\n') && plugin.find('|') == plugin.rfind('|'));
    Snapshot again;
    check(snapshotFromText(formatJson(report), &again).empty());
    check(snapshotToJson(again) == snapshotToJson(report.snapshot));
    check(changeLines(&again, report.snapshot, report.limits).empty());
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    fuzzedReplies = {bytes, size};
    Snapshot snapshot;
    if (openAdapters(&snapshot) == OpenResult::opened)
        readControllers(&snapshot);
    const Limits limits;
    checkFormats({snapshot, evaluate(snapshot, limits, nullptr), limits});
    return 0;
}
