// Creation and deletion of arrays.
#include "adapter/creation.h"

#include "adapter/logdrv.h"
#include "simulator/engine/activities.h"
#include "simulator/operations/operation.h"
#include "simulator/world/array_rules.h"
#include "simulator/world/extent_alloc.h"

using namespace q5sim;

static constexpr std::uint64_t kSectorsPerGb = 1953125;                // of 10^9 bytes
static constexpr std::uint64_t kMaxRequested = std::uint64_t{1} << 47; // sectors
static constexpr std::uint8_t kRoundToGb = 1;
static constexpr std::uint8_t kRoundToTenGb = 2;

static ArrayGeometry geometryOf(const CreateArrayRequest& request) {
    ArrayGeometry geometry = {static_cast<std::uint8_t>(request.raidLevel), request.memberCount, 0, 0};
    if (geometry.level == kRaidMf)
        geometry.parity = request.parityCount;
    if (geometry.level == kRaid50)
        geometry.subArrays = request.subArrayCount;
    return geometry;
}

static bool hasKnownCodes(const CreateArrayRequest& request) {
    const bool sectorSize = request.sectorSize == 512 || request.sectorSize == 1024 ||
                            request.sectorSize == 2048 || request.sectorSize == 4096;
    const bool init = request.initialization <= 2 || request.initialization == 4;
    const bool allocation = request.allocation == kAllocateGiven || request.allocation == kAllocateByCapacity;
    return sectorSize && init && allocation && request.rounding <= kRoundToTenGb &&
           request.origin <= kOriginImport && request.constant4 == 1 && request.constant91 == 1;
}

static bool isValidShift(const CreateArrayRequest& request) {
    const int shift = static_cast<std::int16_t>(request.shift);
    return request.symmetric <= 1 && shift < request.memberCount && shift > -request.memberCount;
}

// Every member must be a working drive of its own.
static bool areValidMembers(const Controller& controller, const CreateArrayRequest& request) {
    for (std::size_t i = 0; i < request.memberCount; i++) {
        const Drive* drive = findDrive(controller, request.member[i].driveId);
        if (drive == nullptr || drive->failed)
            return false;
        for (std::size_t k = 0; k < i; k++)
            if (request.member[k].driveId == request.member[i].driveId)
                return false;
    }
    return true;
}

// Why the request is refused before its sizes are known; nullptr: it is not.
static const char* creationRefusal(const Controller& controller, const CreateArrayRequest& request) {
    if (request.raidLevel > 255 || !isValidGeometry(geometryOf(request)))
        return "the level cannot have these members, parity and subarrays";
    if (!hasKnownCodes(request) || !isValidStripe(request.stripeSize))
        return "a code, the sector size or the stripe size is unknown";
    if (!areValidMembers(controller, request))
        return "a drive is missing, has failed or is given twice";
    if (request.raidLevel == kRaidMf && !isValidShift(request))
        return "the shift or the symmetry is invalid";
    if (request.raidLevel != kJbod && request.name[0] == '\0')
        return "there is no name";
    return request.capacity == 0 && request.allocation != kAllocateGiven ? "there is no capacity" : nullptr;
}

// The requested size of the whole array; 0: out of range.
static std::uint64_t wantedSectors(const CreateArrayRequest& request) {
    const std::uint64_t unit = request.origin == kOriginTyped ? kSectorsPerMb : 1;
    return request.capacity > kMaxRequested / unit ? 0 : request.capacity * unit;
}

static std::uint64_t rounded(std::uint64_t sectors, std::uint8_t scheme) {
    const std::uint64_t unit = scheme == kRoundToGb      ? kSectorsPerGb
                               : scheme == kRoundToTenGb ? 10 * kSectorsPerGb
                                                         : 1;
    return sectors / unit * unit;
}

// The smallest given extent, in whole MB; 0 when one of them is not free.
static std::uint64_t commonSize(const Controller& controller, const CreateArrayRequest& request) {
    std::uint64_t smallest = kMaxRequested;
    for (std::size_t i = 0; i < request.memberCount; i++) {
        const Drive& drive = *findDrive(controller, request.member[i].driveId);
        const std::uint32_t index = request.member[i].extent;
        if (index >= drive.extents.size() || drive.extents[index].use != kUseFree)
            return 0;
        smallest = std::min(smallest, drive.extents[index].size);
    }
    return smallest / kSectorsPerMb * kSectorsPerMb;
}

struct Sizes {
    std::uint64_t array = 0;  // sectors of the whole array; 0: invalid
    std::uint64_t member = 0; // sectors of each member, whole MB
};

static Sizes sizesFor(const Controller& controller, const CreateArrayRequest& request) {
    const std::uint64_t data = dataMembers(geometryOf(request));
    const bool usesWholeExtents = request.capacity == 0;
    const std::uint64_t whole =
        usesWholeExtents ? commonSize(controller, request) * data : wantedSectors(request);
    Sizes sizes;
    sizes.array = rounded(whole, request.rounding);
    const std::uint64_t share = (sizes.array + data - 1) / data;
    sizes.member = (share + kSectorsPerMb - 1) / kSectorsPerMb * kSectorsPerMb;
    return sizes;
}

static bool allocateMembers(Controller& controller, const CreateArrayRequest& request, std::uint16_t arrayId,
                            std::uint64_t sectors) {
    for (std::size_t i = 0; i < request.memberCount; i++) {
        Drive& drive = *findDrive(controller, request.member[i].driveId);
        const std::size_t index = request.allocation == kAllocateGiven ? request.member[i].extent
                                                                       : bestFitFreeExtent(drive, sectors);
        if (index >= drive.extents.size() || drive.extents[index].use != kUseFree ||
            drive.extents[index].size < sectors)
            return false;
        allocateExtent(controller, drive, index, sectors, arrayId);
    }
    return true;
}

static LogicalDrive newArray(const CreateArrayRequest& request, std::uint16_t id, const Sizes& sizes) {
    const ArrayGeometry geometry = geometryOf(request);
    LogicalDrive array;
    array.arrayId = id;
    array.logDrvId = id;
    array.name = fieldText(request.name, sizeof request.name - 1);
    array.level = geometry.level;
    array.stripe = request.stripeSize;
    array.sectorSize = request.sectorSize;
    array.sectors = sizes.array;
    array.memberSectors = sizes.member;
    array.parity = geometry.parity;
    array.subArrays = geometry.subArrays;
    if (geometry.level == kRaidMf) {
        array.symmetric = request.symmetric;
        array.shift = static_cast<std::int16_t>(request.shift);
    }
    array.synchronized = !isRedundant(geometry.level);
    array.reportedState = kOnline;
    for (std::size_t i = 0; i < request.memberCount; i++)
        array.members.push_back(static_cast<std::uint16_t>(request.member[i].driveId));
    return array;
}

static LogicalDrive& insertInOrder(Controller& controller, LogicalDrive array) {
    std::vector<LogicalDrive>& all = controller.logicalDrives;
    const auto position = std::find_if(
        all.begin(), all.end(), [&](const LogicalDrive& other) { return other.logDrvId > array.logDrvId; });
    return *all.insert(position, std::move(array));
}

int q5_addHBAArray(HbaAddress address, std::uint32_t reserved, const CreateArrayRequest* request) {
    return updateController(address, reserved, [&](Controller& controller, std::int64_t now) {
        if (request == nullptr || controller.logicalDrives.size() >= kMaxLogDrvs)
            return refuse("creation: there is no request, or there are too many logical drives");
        if (const char* reason = creationRefusal(controller, *request))
            return refuse("creation: %s", reason);
        const Sizes sizes = sizesFor(controller, *request);
        const std::uint16_t id = lowestFreeId(controller);
        if (sizes.array == 0)
            return refuse("creation: the capacity is 0 or too large, or a given extent is not free");
        if (!allocateMembers(controller, *request, id, sizes.member))
            return refuse("creation: a drive has no free extent of %llu MB",
                          static_cast<unsigned long long>(sizes.member / kSectorsPerMb));
        LogicalDrive& array = insertInOrder(controller, newArray(*request, id, sizes));
        addEvent(controller, now, "Logical drive %d created: %s with %d drives", id, levelName(array.level),
                 request->memberCount);
        if (request->initialization != 0)
            startInitialization(controller, array, request->initialization, now);
        else if (!array.synchronized)
            startSynchronization(controller, array, now);
        return kDone;
    });
}

int q5_delDiskArray(HbaAddress address, std::uint32_t reserved, const DeleteArrayRequest* request,
                    std::uint32_t size) {
    return updateController(address, reserved, [&](Controller& controller, std::int64_t now) {
        const LogicalDrive* array = request != nullptr && size == sizeof *request && request->count == 1
                                        ? findArray(controller, request->arrayId)
                                        : nullptr;
        if (array == nullptr)
            return refuse("deletion: there is no such logical drive");
        const std::uint16_t id = array->arrayId;
        addEvent(controller, now, "Logical drive %d deleted", array->logDrvId);
        freeAllOfArray(controller, id);
        std::erase_if(controller.logicalDrives, [&](const LogicalDrive& one) { return one.arrayId == id; });
        return kDone;
    });
}
