// The fields of the records that a snapshot keeps, and access to them.
#include "snapshot/fields.h"

#include <cstring>
#include <type_traits>

#include "snapshot/snapshot.h"

// The rows of one record.
template <typename Record>
struct Rows;

template <typename Record>
static constexpr RecordType kRecordType = {Rows<Record>::name, sizeof(Record), Rows<Record>::fields};

template <typename Element>
static constexpr FieldKind kindOf(std::string_view name) {
    if (name.starts_with("reserved"))
        return FieldKind::reserved;
    if constexpr (std::is_same_v<Element, ReplyHeader>)
        return FieldKind::header;
    else if constexpr (std::is_class_v<Element>)
        return FieldKind::record;
    else if constexpr (std::is_same_v<Element, char>)
        return FieldKind::text;
    else
        return std::is_signed_v<Element> ? FieldKind::signedNumber : FieldKind::unsignedNumber;
}

template <typename Element>
static constexpr const RecordType* nestedRecord() {
    if constexpr (std::is_class_v<Element> && !std::is_same_v<Element, ReplyHeader>)
        return &kRecordType<Element>;
    else
        return nullptr;
}

template <typename Member>
static constexpr Field fieldOf(const char* name, std::size_t offset, const char* countedBy) {
    using Element = std::remove_all_extents_t<Member>;
    static_assert(std::is_class_v<Element> || std::is_integral_v<Element>);
    const FieldKind kind = kindOf<Element>(name);
    const bool whole = kind == FieldKind::text || kind == FieldKind::reserved;
    const std::size_t size = whole ? sizeof(Member) : sizeof(Element);
    const bool isArray = std::is_array_v<Member> && !whole;
    return {name, offset, size, sizeof(Member) / size, kind, isArray, nestedRecord<Element>(), countedBy};
}

// Whether the rows follow one another without a gap, from the record's first byte to its last.
template <std::size_t count>
static constexpr bool coverRecord(const Field (&fields)[count], std::size_t size) {
    std::size_t end = 0;
    for (const Field& field : fields) {
        if (field.offset != end)
            return false;
        end += field.size * field.count;
    }
    return end == size;
}

#define FIELD(member) fieldOf<decltype(Self::member)>(#member, offsetof(Self, member), nullptr)
#define COUNTED_FIELD(member, counter) \
    fieldOf<decltype(Self::member)>(#member, offsetof(Self, member), FIELD(counter).name)
#define RECORD_ROWS(Record, ...)                                      \
    template <>                                                       \
    struct Rows<Record> {                                             \
        using Self = Record;                                          \
        static constexpr const char* name = #Record;                  \
        static constexpr Field fields[] = {__VA_ARGS__};              \
    };                                                                \
    static_assert(coverRecord(Rows<Record>::fields, sizeof(Record))); \
    template <>                                                       \
    const RecordType& recordType<Record>() {                          \
        return kRecordType<Record>;                                   \
    }

RECORD_ROWS(VersionNumber, FIELD(major), FIELD(minor), FIELD(third), FIELD(fourth))

RECORD_ROWS(ControllerInfo, FIELD(header), FIELD(reserved64), FIELD(biosVersion), FIELD(rebuildRate),
            FIELD(syncRate), FIELD(mpRate), FIELD(reserved319), FIELD(initRate), FIELD(migrateRate),
            FIELD(autoRebuild), FIELD(reserved323), FIELD(smartCheck), FIELD(smartPollInterval),
            FIELD(reserved326), FIELD(encPollInterval), FIELD(reserved328), FIELD(memoryType),
            FIELD(reserved330), FIELD(memorySize), FIELD(reserved336), FIELD(arrayCount), FIELD(reserved340),
            FIELD(diskCount), FIELD(reserved350), FIELD(maxExtentsPerDisk), FIELD(maxPorts),
            FIELD(reserved379))

RECORD_ROWS(ControllerVersionInfo, FIELD(header), FIELD(reserved64), FIELD(firmwareVersion))

RECORD_ROWS(ControllerSettings, FIELD(header), FIELD(reserved64), FIELD(rebuildRate), FIELD(syncRate),
            FIELD(mpRate), FIELD(reserved73), FIELD(initRate), FIELD(migrateRate), FIELD(autoRebuild),
            FIELD(reserved77), FIELD(smartPollInterval), FIELD(smartCheck), FIELD(encPollInterval),
            FIELD(reserved81), FIELD(rebuildPolicy), FIELD(reserved83))

RECORD_ROWS(DiscoverPathInfo, FIELD(header), FIELD(reserved64), FIELD(irq), FIELD(logicalSlot),
            FIELD(biosMemoryStart), FIELD(biosMemoryRange), FIELD(busMasterBase), FIELD(reserved481),
            FIELD(baseAddressAta), FIELD(baseAddressXor), FIELD(baseAddressSeq), FIELD(baseAddressMmio),
            FIELD(baseAddressSdram), FIELD(reserved504))

RECORD_ROWS(DriverInfo, FIELD(driverVersion))

RECORD_ROWS(BatteryInfo, FIELD(header), FIELD(reserved64), FIELD(temperature), FIELD(reserved102),
            FIELD(voltage), FIELD(reserved108), FIELD(status), FIELD(reserved111))

RECORD_ROWS(EnclosureEntry, FIELD(reserved0), FIELD(type), FIELD(reserved15))

RECORD_ROWS(EnclosureSensor, FIELD(type), FIELD(reserved1), FIELD(reading))

RECORD_ROWS(EnclosureStatus, FIELD(header), FIELD(reserved64), FIELD(sensor))

RECORD_ROWS(ExtentEntry, FIELD(index), FIELD(reserved2), FIELD(assignment), FIELD(maintenance), FIELD(access),
            FIELD(state), FIELD(arrayId), FIELD(reserved10), FIELD(start), FIELD(size))

RECORD_ROWS(PhyDrvInfo, FIELD(reserved0), FIELD(driveId), FIELD(reserved6), FIELD(channel), FIELD(reserved12),
            FIELD(enclosureId), FIELD(reserved16), FIELD(capacity), FIELD(reserved32), FIELD(cylinders),
            FIELD(heads), FIELD(sectorsPerTrack), FIELD(reserved60), FIELD(model), FIELD(serial),
            FIELD(firmware), FIELD(dmaMode), FIELD(reserved149), FIELD(extentCount),
            COUNTED_FIELD(extent, extentCount))

RECORD_ROWS(PhyDrvSettings, FIELD(reserved0), FIELD(pdId), FIELD(reserved6), FIELD(writeCache),
            FIELD(smartCheck), FIELD(tcqSupported), FIELD(ncqSupported), FIELD(tcqEnabled), FIELD(ncqEnabled),
            FIELD(reserved14))

RECORD_ROWS(MediaPatrolProgress, FIELD(header), FIELD(reserved64), FIELD(state), FIELD(loopCount),
            FIELD(errorCount), FIELD(progress), FIELD(reserved94))

RECORD_ROWS(LogDrvInfo, FIELD(arrayId), FIELD(raidLevel), FIELD(reserved3), FIELD(activityStatus),
            FIELD(reserved6), FIELD(functionalStatus), FIELD(writeCacheMode), FIELD(reserved12),
            FIELD(sectorCount), FIELD(reserved24), FIELD(diskCount), FIELD(reserved44), FIELD(stripeBlocks),
            FIELD(logDrvId), FIELD(reserved54), FIELD(name), COUNTED_FIELD(memberIds, diskCount),
            FIELD(parityCount), FIELD(symmetric), FIELD(shift), FIELD(subArrayCount), FIELD(reserved181),
            FIELD(sectorSize), FIELD(reserved196))

RECORD_ROWS(LogDrvSettings, FIELD(reserved0), FIELD(cacheFlags), FIELD(reserved5), FIELD(name),
            FIELD(consolidation), FIELD(reserved49), FIELD(lookahead), FIELD(reserved52))

std::int64_t numberAt(const void* record, const Field& field, std::size_t index) {
    std::uint64_t value = 0;
    std::memcpy(&value, static_cast<const std::uint8_t*>(record) + field.offset + index * field.size,
                field.size);
    if (field.kind != FieldKind::signedNumber || field.size == sizeof value)
        return static_cast<std::int64_t>(value);
    const std::uint64_t sign = std::uint64_t{1} << (8 * field.size - 1);
    return static_cast<std::int64_t>((value ^ sign) - sign);
}

void setNumberAt(void* record, const Field& field, std::size_t index, std::int64_t value) {
    std::memcpy(static_cast<std::uint8_t*>(record) + field.offset + index * field.size, &value, field.size);
}

std::string_view textAt(const void* record, const Field& field) {
    const std::string_view whole(static_cast<const char*>(record) + field.offset, field.size);
    return whole.substr(0, whole.find('\0'));
}

void setTextAt(void* record, const Field& field, std::string_view text) {
    char* target = static_cast<char*>(record) + field.offset;
    std::memset(target, 0, field.size);
    std::memcpy(target, text.data(), text.size() < field.size ? text.size() : field.size);
}

const Field* findField(const RecordType& type, std::string_view name) {
    for (const Field& field : type.fields)
        if (name == field.name)
            return &field;
    return nullptr;
}

std::size_t usedCount(const RecordType& type, const void* record, const Field& field) {
    if (field.countedBy == nullptr)
        return field.count;
    const auto used = static_cast<std::size_t>(numberAt(record, *findField(type, field.countedBy), 0));
    return used < field.count ? used : field.count;
}
