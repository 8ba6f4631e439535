// The space of a drive on the HTML page: a strip of its extents by array, and the same as a list.
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "snapshot/words.h"
#include "tools/status/facts.h"
#include "tools/status/page_parts.h"

static constexpr std::size_t kArrayColors = 6; // the style sheet has a0 to a5

static const LogicalDrive* ownerOf(const Controller& controller, const ExtentEntry& extent) {
    return extent.arrayId == kNoArray ? nullptr : findArray(controller, extent.arrayId);
}

static std::string ownerText(const Controller& controller, const ExtentEntry& extent, bool named) {
    const LogicalDrive* owner = ownerOf(controller, extent);
    if (owner != nullptr && !named)
        return "logical drive " + std::to_string(owner->info.logDrvId);
    return owner != nullptr ? arrayName(*owner)
                            : "array " + std::to_string(extent.arrayId) + ", which no logical drive uses";
}

static std::string assignmentText(const Controller& controller, const ExtentEntry& extent, bool named) {
    if ((extent.assignment & kExtentAssigned) != 0)
        return ownerText(controller, extent, named);
    if ((extent.assignment & kExtentGlobalSpare) != 0)
        return "global spare";
    if ((extent.assignment & kExtentDedicatedSpare) != 0)
        return "dedicated spare of " + ownerText(controller, extent, named);
    return (extent.access & kExtentFree) != 0 ? "free" : "unknown use";
}

std::string extentUse(const Controller& controller, const ExtentEntry& extent, bool named) {
    struct Condition {
        bool applies;
        const char* text;
    };
    const Condition conditions[] = {
        {!isAccessible(extent), ", no access"},
        {(extent.access & kExtentSmartFailed) != 0, ", SMART failure"},
        {(extent.state & kExtentRebuilding) != 0, ", rebuilding"},
        {(extent.maintenance & kExtentInitializing) != 0, ", initializing"},
        {(extent.maintenance & kExtentSynchronizing) != 0, ", synchronizing"},
        {(extent.maintenance & kExtentMigrating) != 0, ", migrating"},
    };
    std::string use = assignmentText(controller, extent, named);
    for (const Condition& condition : conditions)
        if (condition.applies)
            use += condition.text;
    return use;
}

// The appearance of an extent in the strip: a short code, so that color is not needed, and a class.
struct Appearance {
    std::string code, kind;
};

static Appearance appearanceOf(const Controller& controller, const ExtentEntry& extent) {
    if (!isAccessible(extent))
        return {"X", "lost"};
    if ((extent.assignment & kExtentAssigned) != 0) {
        const LogicalDrive* owner = ownerOf(controller, extent);
        if (owner == nullptr)
            return {"?", "other"};
        const auto place = static_cast<std::size_t>(owner - controller.logicalDrives.data());
        return {std::to_string(owner->info.logDrvId),
                std::string("a") + std::to_string(place % kArrayColors)};
    }
    if (isSpare(extent))
        return {(extent.assignment & kExtentGlobalSpare) != 0 ? "GS" : "DS", "spare"};
    return (extent.access & kExtentFree) != 0 ? Appearance{"F", "free"} : Appearance{"?", "other"};
}

// A part of the strip, in sectors.
struct Segment {
    std::uint64_t start, end;
    const ExtentEntry* extent; // nullptr: no extent is there
};

static std::uint64_t endOf(const ExtentEntry& extent) {
    return extent.size > UINT64_MAX - extent.start ? UINT64_MAX : extent.start + extent.size;
}

static std::vector<const ExtentEntry*> inOrder(const PhyDrvInfo& drive) {
    std::vector<const ExtentEntry*> sorted;
    for (const ExtentEntry& extent : extents(drive))
        sorted.push_back(&extent);
    std::stable_sort(sorted.begin(), sorted.end(), [](const ExtentEntry* left, const ExtentEntry* right) {
        return left->start < right->start;
    });
    return sorted;
}

// Without gaps and overlaps, from 0 to the drive's end, for any reply of the adapter.
static std::vector<Segment> segmentsOf(const PhyDrvInfo& drive) {
    std::vector<Segment> segments;
    std::uint64_t at = 0;
    for (const ExtentEntry* extent : inOrder(drive)) {
        if (extent->start > at) {
            segments.push_back({at, extent->start, nullptr});
            at = extent->start;
        }
        if (endOf(*extent) > at) {
            segments.push_back({at, endOf(*extent), extent});
            at = endOf(*extent);
        }
    }
    if (drive.capacity > at)
        segments.push_back({at, drive.capacity, nullptr});
    return segments;
}

static constexpr int kWhole = 10000; // a strip's width in hundredths of a percent

static int placeIn(std::uint64_t sector, std::uint64_t total) {
    return static_cast<int>(std::lround(static_cast<double>(sector) / static_cast<double>(total) * kWhole));
}

static std::string percentText(int hundredths) {
    char text[16];
    std::snprintf(text, sizeof text, "%d.%02d%%", hundredths / 100, hundredths % 100);
    return text;
}

// Whether the code fits, even in the narrow strip of a phone.
static bool hasRoom(const std::string& code, int width) {
    static constexpr int margin = 200, character = 300;
    return width >= margin + character * static_cast<int>(code.size());
}

// Widths are differences of rounded places, so that they add up to the whole.
static void addSegment(const Controller& controller, const Segment& segment, std::uint64_t total,
                       std::string* page) {
    const int start = placeIn(segment.start, total);
    const int width = placeIn(segment.end, total) - start;
    const Appearance appearance =
        segment.extent != nullptr ? appearanceOf(controller, *segment.extent) : Appearance{"", "gap"};
    *page += "<g class=\"" + appearance.kind + "\"><rect x=\"" + percentText(start) + "\" width=\"" +
             percentText(width) + "\" height=\"100%\"/>";
    if (!appearance.code.empty() && hasRoom(appearance.code, width))
        *page +=
            "<text x=\"" + percentText(start + width / 2) + "\" y=\"50%\">" + appearance.code + "</text>";
    *page += "</g>\n";
}

static void addStrip(const Controller& controller, const Drive& drive, const std::vector<Segment>& segments,
                     std::string* page) {
    *page += "<svg class=\"strip\" role=\"img\" aria-label=\"Space of drive " + std::to_string(drive.number) +
             ", as the list after it says\" width=\"100%\" height=\"28\">\n";
    for (const Segment& segment : segments)
        addSegment(controller, segment, segments.back().end, page);
    *page += "</svg>\n";
}

static void addListed(const Controller& controller, const Segment& segment, std::string* page) {
    if (segment.extent == nullptr) {
        *page += "<li><span class=\"key gap\" aria-hidden=\"true\">–</span> " +
                 megabytesText(segment.end - segment.start) + " in no extent</li>\n";
        return;
    }
    const Appearance appearance = appearanceOf(controller, *segment.extent);
    *page += "<li><span class=\"key " + appearance.kind + "\" aria-hidden=\"true\">" + appearance.code +
             "</span> Extent " + std::to_string(segment.extent->index) + ": " +
             megabytesText(segment.extent->size) + ", " + extentUse(controller, *segment.extent, true) +
             "</li>\n";
}

void addSpace(const Controller& controller, const Drive& drive, std::string* page) {
    const std::vector<Segment> segments = segmentsOf(drive.info);
    if (segments.empty()) {
        *page += "<p>It reports no space.</p>\n";
        return;
    }
    addStrip(controller, drive, segments, page);
    *page += "<ul class=\"extents\">\n";
    for (const Segment& segment : segments)
        addListed(controller, segment, page);
    *page += "</ul>\n";
}
