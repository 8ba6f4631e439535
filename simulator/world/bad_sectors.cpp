// Lists of unreadable sectors.
#include "simulator/world/bad_sectors.h"

#include <algorithm>

namespace q5sim {

static constexpr std::uint64_t kMaxSpreadPlaces = 64; // ranges of bad sectors

// The part of a list from one sector to another.
static std::vector<BadSectors> cut(const std::vector<BadSectors>& all, std::uint64_t from, std::uint64_t to) {
    std::vector<BadSectors> part;
    for (const BadSectors& bad : all) {
        const std::uint64_t start = std::max(bad.start, from);
        const std::uint64_t end = std::min(bad.start + bad.count, to);
        if (start < end)
            part.push_back({start, end - start});
    }
    return part;
}

static std::uint64_t total(const std::vector<BadSectors>& list) {
    std::uint64_t sum = 0;
    for (const BadSectors& bad : list)
        sum += bad.count;
    return sum;
}

std::uint64_t countBadSectors(const Drive& drive, std::uint64_t start, std::uint64_t size) {
    return total(cut(drive.badSectors, start, start + size));
}

std::uint64_t countBadSectors(const Drive& drive) {
    return total(drive.badSectors);
}

std::uint64_t repairBadSectors(Drive& drive, std::uint64_t start, std::uint64_t size) {
    const std::uint64_t before = total(drive.badSectors);
    std::vector<BadSectors> kept = cut(drive.badSectors, 0, start);
    const std::vector<BadSectors> after = cut(drive.badSectors, start + size, UINT64_MAX);
    kept.insert(kept.end(), after.begin(), after.end());
    kept.resize(std::min(kept.size(), kMaxBadRanges));
    drive.badSectors = kept;
    return before - total(kept);
}

std::uint64_t addBadSectors(Drive& drive, std::uint64_t start, std::uint64_t count) {
    if (start >= drive.sectors || count == 0)
        return 0;
    const std::uint64_t before = total(drive.badSectors);
    const std::uint64_t end = start + std::min(count, drive.sectors - start);
    std::vector<BadSectors> list = cut(drive.badSectors, 0, start);
    const std::vector<BadSectors> after = cut(drive.badSectors, end, UINT64_MAX);
    if (list.size() + after.size() >= kMaxBadRanges)
        return 0;
    list.push_back({start, end - start});
    list.insert(list.end(), after.begin(), after.end());
    drive.badSectors = list;
    return total(list) - before;
}

void spreadBadSectors(Drive& drive, std::uint64_t count) {
    const std::uint64_t places = std::min(count, kMaxSpreadPlaces);
    for (std::uint64_t i = 0; i < places; i++) {
        const std::uint64_t start = drive.sectors / (2 * places) * (2 * i + 1);
        addBadSectors(drive, start, count / places + (i < count % places ? 1 : 0));
    }
}

} // namespace q5sim
