// The record from which a logical drive is created again.
#include "tools/restore/array_record.h"

#include <algorithm>
#include <cstring>

#include "config/import_set.h"
#include "snapshot/words.h"
#include "util/result.h"

static constexpr std::uint64_t kSectorsPerGb = 1953125; // of 1,000,000,000 bytes

LogDrvConfigRecord recordOf(std::uint32_t controller, const LogicalDrive& saved) {
    LogDrvConfigRecord record = {};
    record.controller = static_cast<int>(controller);
    const std::string name(fieldText(saved.info.name));
    std::memcpy(record.name, name.data(), std::min(name.size(), sizeof record.name - 1));
    record.sectorCount = saved.info.sectorCount;
    record.sectorSize = static_cast<int>(saved.info.sectorSize);
    record.stripeSize = static_cast<int>(saved.info.stripeBlocks);
    record.raidLevel = saved.info.raidLevel;
    record.memberCount = boundedMemberCount(saved.info);
    record.parityCount = saved.info.parityCount;
    record.symmetric = saved.info.symmetric;
    record.shift = saved.info.shift;
    record.subArrayCount = saved.info.subArrayCount;
    return record;
}

bool isCreatable(const LogicalDrive& saved, const LogDrvConfigRecord& record) {
    CreateArrayRequest request = {};
    if (static_cast<std::size_t>(record.memberCount) > kMaxTypedMembers ||
        PhraseCreateOnExtents(record, &request) != Result::done)
        return false;
    const std::string_view name = fieldText(request.name);
    return name == fieldText(saved.info.name) && request.raidLevel == saved.info.raidLevel &&
           request.stripeSize == saved.info.stripeBlocks && request.sectorSize == saved.info.sectorSize &&
           request.memberCount == saved.info.diskCount &&
           (request.raidLevel == kJbod || request.capacity == saved.info.sectorCount);
}

bool isRoundedJbod(const LogicalDrive& saved, std::uint64_t size) {
    return saved.info.raidLevel == kJbod && saved.info.sectorCount % kSectorsPerGb == 0 &&
           saved.info.sectorCount < size;
}
