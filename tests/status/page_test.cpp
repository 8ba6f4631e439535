// The HTML page: whole for one world, and well-formed and inert for any adapter text.
#include "tools/status/page.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "snapshot/json.h"
#include "tests/status/page_markup.h"
#include "tests/status/page_samples.h"
#include "tools/common/regular_file.h"
#include "tools/status/page_parts.h"
#include "tools/status/rules.h"

static std::string pageOf(const Snapshot& snapshot, const std::string& host = "storage1") {
    const Limits limits;
    const Findings findings = evaluate(snapshot, limits, nullptr);
    return formatPage({snapshot, findings, limits}, {host, 1700000000});
}

static std::string source(const std::string& name) {
    std::string text, problem;
    readRegularFile(std::string(STATUS_SOURCES) + "/" + name, &text, &problem);
    EXPECT_EQ(problem, "");
    return text;
}

static void replaceOnce(std::string* text, const std::string& old, const std::string& now) {
    const std::size_t at = text->find(old);
    ASSERT_NE(at, std::string::npos) << old;
    text->replace(at, old.size(), now);
}

TEST(Page, OfARebuildingWorldMatchesTheExpectedFile) {
    const Json changes = Json::parse(source("cases/rebuilding.json"))["json"];
    Snapshot snapshot;
    ASSERT_EQ(snapshotFromText(Json::parse(source("healthy.expected.json")).patch(changes).dump(), &snapshot),
              "");
    std::string page = pageOf(snapshot);
    replaceOnce(&page, kPageStyleDigest, "@DIGEST@");
    replaceOnce(&page, kPageStyle, "@STYLE@");
    EXPECT_EQ(page, source("rebuilding.expected.html"));
}

TEST(Page, SamplesAreWellFormed) {
    for (const PageSample& sample : pageSamples())
        EXPECT_EQ(readMarkup(pageOf(sample.make())).problem, "") << sample.name;
}

TEST(Page, StripsAddUpToTheWhole) {
    for (const PageSample& sample : pageSamples())
        for (const double width : readMarkup(pageOf(sample.make())).strips)
            EXPECT_NEAR(width, 100, 0.001) << sample.name;
    EXPECT_EQ(readMarkup(pageOf(pageSamples()[0].make())).strips.size(), kMaxSnapshotDrives);
}

TEST(Page, ATextChangesNoTag) {
    const Markup plain = readMarkup(pageOf(withTexts("plain")));
    ASSERT_EQ(plain.problem, "");
    for (const std::string_view text : untrustedTexts()) {
        const Markup markup = readMarkup(pageOf(withTexts(text)));
        EXPECT_EQ(markup.problem, "") << text;
        const bool blank = text.find_first_not_of(' ') == std::string_view::npos;
        EXPECT_EQ(markup.skeleton == plain.skeleton, !blank) << text;
    }
}

TEST(Page, AHostNameChangesNoTag) {
    const Markup plain = readMarkup(pageOf({}, "plain"));
    for (const std::string_view text : {"</title><script>x=1</script>", "a\"b'c&d\xFF"})
        EXPECT_EQ(readMarkup(pageOf({}, std::string(text))).skeleton, plain.skeleton) << text;
}

TEST(Page, RandomRecordsKeepItWellFormed) {
    static constexpr std::uint32_t seeds = 20;
    for (std::uint32_t seed = 0; seed < seeds; ++seed) {
        const Markup markup = readMarkup(pageOf(withRandomRecords(seed)));
        EXPECT_EQ(markup.problem, "") << seed;
        for (const double width : markup.strips)
            EXPECT_NEAR(width, 100, 0.001) << seed;
    }
}

TEST(Page, EscapesHtmlSpecialCharacters) {
    EXPECT_EQ(htmlText("a<b>&\"c'"), "a&lt;b&gt;&amp;&quot;c&#39;");
}

TEST(Page, EscapesWhatCannotBeShown) {
    EXPECT_EQ(htmlText("a\tb\xFF\\"), "a\\x09b\\xff\\\\");
    EXPECT_EQ(htmlText("\xE2\x80\xAE"), "\\xe2\\x80\\xae");
}

TEST(Page, EscapesCharactersThatHtmlForbids) {
    EXPECT_EQ(htmlText("\xEF\xBF\xBE"), "\\xef\\xbf\\xbe");          // U+FFFE
    EXPECT_EQ(htmlText("\xEF\xB7\x90"), "\\xef\\xb7\\x90");          // U+FDD0
    EXPECT_EQ(htmlText("\xF0\x9F\xBF\xBF"), "\\xf0\\x9f\\xbf\\xbf"); // U+1FFFF
    EXPECT_EQ(htmlText("\xEF\xBF\xBD\xEF\xB7\x8F\xEF\xB7\xB0"), "\xEF\xBF\xBD\xEF\xB7\x8F\xEF\xB7\xB0");
    EXPECT_EQ(htmlText("\xF0\x9F\x92\xBE"), "\xF0\x9F\x92\xBE"); // a diskette
}

TEST(Page, IsolatesTextsAndNamesEmptyOnes) {
    EXPECT_EQ(isolatedText("<"), "<bdi>&lt;</bdi>");
    EXPECT_EQ(isolatedText("  "), "(empty)");
}

TEST(Page, GroupsDigits) {
    EXPECT_EQ(megabytesText(0), "0 MB");
    EXPECT_EQ(megabytesText(999 * 2048 + 2047), "999 MB");
    EXPECT_EQ(megabytesText(1000 * 2048), "1,000 MB");
    EXPECT_EQ(megabytesText(UINT64_MAX), "9,007,199,254,740,991 MB");
}

static Snapshot driveWith(std::initializer_list<ExtentEntry> all, std::uint64_t capacity) {
    Snapshot snapshot;
    snapshot.controllers.emplace_back();
    Drive& drive = snapshot.controllers[0].drives.emplace_back();
    drive.number = 1;
    drive.info.capacity = capacity;
    drive.info.extentCount = static_cast<std::uint8_t>(all.size());
    std::copy(all.begin(), all.end(), drive.info.extent);
    return snapshot;
}

static ExtentEntry freeExtent(std::uint64_t start, std::uint64_t size) {
    ExtentEntry extent = {};
    extent.access = kExtentAccessible | kExtentFree;
    extent.arrayId = kNoArray;
    extent.start = start;
    extent.size = size;
    return extent;
}

static std::string spaceOf(const Snapshot& snapshot) {
    std::string space;
    addSpace(snapshot.controllers[0], snapshot.controllers[0].drives[0], &space);
    return space.substr(0, space.find("</svg>"));
}

static const std::string kStripHead =
    "<svg class=\"strip\" role=\"img\" aria-label=\"Space of drive 1, as the list after it says\" "
    "width=\"100%\" height=\"28\">\n";

TEST(PageStrip, ShowsGapsBetweenExtents) {
    EXPECT_EQ(spaceOf(driveWith({freeExtent(300, 300)}, 1000)),
              kStripHead + "<g class=\"gap\"><rect x=\"0.00%\" width=\"30.00%\" height=\"100%\"/></g>\n"
                           "<g class=\"free\"><rect x=\"30.00%\" width=\"30.00%\" height=\"100%\"/>"
                           "<text x=\"45.00%\" y=\"50%\">F</text></g>\n"
                           "<g class=\"gap\"><rect x=\"60.00%\" width=\"40.00%\" height=\"100%\"/></g>\n");
}

TEST(PageStrip, GivesOverlappingSpaceToTheFirstExtent) {
    EXPECT_EQ(spaceOf(driveWith({freeExtent(500, 500), freeExtent(0, 600)}, 1000)),
              kStripHead + "<g class=\"free\"><rect x=\"0.00%\" width=\"60.00%\" height=\"100%\"/>"
                           "<text x=\"30.00%\" y=\"50%\">F</text></g>\n"
                           "<g class=\"free\"><rect x=\"60.00%\" width=\"40.00%\" height=\"100%\"/>"
                           "<text x=\"80.00%\" y=\"50%\">F</text></g>\n");
}

TEST(PageStrip, GrowsWithAnExtentBeyondTheDrive) {
    EXPECT_EQ(spaceOf(driveWith({freeExtent(UINT64_MAX, UINT64_MAX)}, 1)),
              kStripHead + "<g class=\"gap\"><rect x=\"0.00%\" width=\"100.00%\" height=\"100%\"/></g>\n");
}

TEST(PageStrip, LeavesOutACodeWithoutRoom) {
    EXPECT_EQ(spaceOf(driveWith({freeExtent(0, 4)}, 100)),
              kStripHead + "<g class=\"free\"><rect x=\"0.00%\" width=\"4.00%\" height=\"100%\"/></g>\n"
                           "<g class=\"gap\"><rect x=\"4.00%\" width=\"96.00%\" height=\"100%\"/></g>\n");
}

TEST(PageStrip, IsMissingWithoutSpace) {
    EXPECT_EQ(spaceOf(driveWith({}, 0)), "<p>It reports no space.</p>\n");
}

static std::string enclosuresOf(const Controller& controller) {
    const Snapshot snapshot = {1, {controller}, {}};
    std::string part;
    addEnclosures({snapshot, {}, {}}, snapshot.controllers[0], &part);
    return part;
}

static Controller withDrivesIn(std::initializer_list<std::uint16_t> enclosures, std::uint8_t ports) {
    Controller controller;
    controller.info = ControllerInfo{};
    controller.info->maxPorts = ports;
    for (const std::uint16_t id : enclosures) {
        Drive& drive = controller.drives.emplace_back();
        drive.number = static_cast<std::uint32_t>(controller.drives.size());
        drive.info.channel = static_cast<std::uint16_t>(controller.drives.size() - 1);
        drive.info.enclosureId = id;
    }
    return controller;
}

static std::string slot(int channel) {
    const std::string drive = std::to_string(channel + 1);
    return "<li class=\"slot\"><span class=\"where\">Channel " + std::to_string(channel) +
           "</span> <a href=\"#c0-d" + drive + "\">Drive " + drive +
           "</a> <span class=\"badge ok\">ok</span> <span class=\"use\">no extents</span></li>\n";
}

TEST(PageEnclosures, ShowEmptyChannelsInTheOnlyPlace) {
    EXPECT_EQ(enclosuresOf(withDrivesIn({kNoEnclosureId}, 2)),
              "<h3>Enclosures</h3>\n<article class=\"card\">\n<h4>Drives in no enclosure</h4>\n"
              "<ul class=\"slots\" aria-label=\"Drives in no enclosure\">\n" +
                  slot(0) +
                  "<li class=\"slot empty\"><span class=\"where\">Channel 1</span> "
                  "empty</li>\n</ul>\n</article>\n");
}

TEST(PageEnclosures, ListEmptyChannelsSeparatelyWhenTheirPlaceIsUnknown) {
    EXPECT_EQ(enclosuresOf(withDrivesIn({kNoEnclosureId, 3}, 4)),
              "<h3>Enclosures</h3>\n"
              "<article class=\"card\">\n<h4>Enclosure 3, which the adapter does not list</h4>\n"
              "<ul class=\"slots\" aria-label=\"Slots of enclosure 3\">\n" +
                  slot(1) +
                  "</ul>\n</article>\n"
                  "<article class=\"card\">\n<h4>Drives in no enclosure</h4>\n"
                  "<ul class=\"slots\" aria-label=\"Drives in no enclosure\">\n" +
                  slot(0) + "</ul>\n</article>\n<p>Channels without a drive: 2, 3.</p>\n");
}

// A drive that is not listed may be in any channel.
TEST(PageEnclosures, DoNotCallChannelsEmptyIfDrivesAreNotListed) {
    Controller one = withDrivesIn({kNoEnclosureId}, 2);
    one.info->diskCount = 2;
    EXPECT_EQ(enclosuresOf(one),
              "<h3>Enclosures</h3>\n<article class=\"card\">\n<h4>Drives in no enclosure</h4>\n"
              "<ul class=\"slots\" aria-label=\"Drives in no enclosure\">\n" +
                  slot(0) +
                  "<li class=\"slot empty\"><span class=\"where\">Channel 1</span> "
                  "no drive listed</li>\n</ul>\n</article>\n");
    Controller none = withDrivesIn({}, 2);
    none.faults.push_back({"q5_getPhyDrvInfo", FaultKind::refused, 1});
    EXPECT_EQ(enclosuresOf(none), "<h3>Enclosures</h3>\n<p>There are no enclosures.</p>\n"
                                  "<p>Channels without a listed drive: 0, 1.</p>\n");
}

// Whether it was refused, or is empty although the controller counts some, or does not count them.
TEST(PageLists, SayWhenNothingCouldBeRead) {
    Snapshot snapshot = {1, {Controller()}, {}};
    Controller& controller = snapshot.controllers[0];
    const auto parts = [&] {
        std::string page;
        addLogicalDrives({snapshot, {}, {}}, controller, &page);
        addDrives({snapshot, {}, {}}, controller, &page);
        return page;
    };
    const std::string absent = "<h3>Logical drives</h3>\n<p>There are no logical drives.</p>\n"
                               "<h3>Drives</h3>\n<p>There are no drives.</p>\n";
    const std::string unread = "<h3>Logical drives</h3>\n<p>The logical drives could not be read.</p>\n"
                               "<h3>Drives</h3>\n<p>The drives could not be read.</p>\n";
    EXPECT_EQ(parts(), unread);
    controller.info.emplace();
    EXPECT_EQ(parts(), absent);
    controller.info->diskCount = controller.info->arrayCount = 1;
    EXPECT_EQ(parts(), unread);
    controller.info.emplace();
    controller.faults = {{"q5_getPhyDrvInfo", FaultKind::refused, 1},
                         {"q5_getLogDrvInfo", FaultKind::refused, 1}};
    EXPECT_EQ(parts(), unread);
}

TEST(PageEnclosures, SayWhenNoneCouldBeRead) {
    Controller controller;
    EXPECT_EQ(enclosuresOf(controller), "<h3>Enclosures</h3>\n<p>There are no enclosures.</p>\n");
    controller.faults.push_back({"q5_getEnclosureInfo", FaultKind::refused, 1});
    EXPECT_EQ(enclosuresOf(controller), "<h3>Enclosures</h3>\n<p>The enclosures could not be read.</p>\n");
}

// The page reader must detect errors.
TEST(PageMarkup, RefusesWhatNoPageHas) {
    for (const char* text :
         {"<script></script>", "<p onload=\"x\"></p>", "<p class=a></p>", "<p class=\"a></p>", "<p>", "</p>",
          "<p></h1>", "<a href=\"http://x\">a</a>", "<p>&x</p>", "<p>></p>", "<p>\x01</p>", "<p>\xFF</p>",
          "<!-- -->", "<h2 id=\"a\"></h2><h2 id=\"a\"></h2>", "<a href=\"#b\">b</a>"})
        EXPECT_NE(readMarkup(std::string("<!DOCTYPE html>\n") + text).problem, "") << text;
    EXPECT_EQ(readMarkup("<!DOCTYPE html>\n<p class=\"a\">&amp;</p>").problem, "");
}
